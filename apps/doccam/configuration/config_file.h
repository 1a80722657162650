// The configuration file: defaults of options, and named profiles of them, in TOML.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace doccam::host {

struct ConfigValue {
    enum class Kind { kFlag, kNumber, kText };

    Kind kind = Kind::kText;
    std::string text; // "true" or "false" of a flag
};

// One line's key, such as colour in the section [scan].
struct ConfigEntry {
    std::string section; // a command; empty for the keys on top
    std::string key;
    std::vector<ConfigValue> values; // one, or those of an array
    bool isArray = false;
    std::string place; // "FILE, line 3", for sentences
};

struct ConfigFile {
    std::string path;
    std::vector<ConfigEntry> defaults; // those on top first
    std::map<std::string, std::vector<ConfigEntry>> profiles;
};

// Which file and which of its profiles, as the command line says.
struct ConfigChoice {
    std::string file; // empty: the usual one, if it is there
    std::string profile;
    bool none = false;
};

// $XDG_CONFIG_HOME/doccam/config.toml, or else ~/.config/doccam/config.toml; empty without a home.
std::string usualConfigFile();

// Reads the file. Throws Failure with file and line for what is no TOML, or neither a value nor a
// table where it stands.
ConfigFile readConfigFile(const std::string& path);

} // namespace doccam::host
