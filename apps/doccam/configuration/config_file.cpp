#include "configuration/config_file.h"

#include "host/failure.h"
#include "host/state_folder.h"
#include "streams/input_file.h"

// Every program would otherwise load one more library.
#define TOML_HEADER_ONLY 1
#define TOML_ENABLE_FORMATTERS 0
#include <toml++/toml.h>

#include <fstream>
#include <sstream>

namespace doccam::host {
namespace {

constexpr const char* kProfiles = "profile";
constexpr std::streamsize kLargestFile = 1 << 20;

[[noreturn]] void fail(const std::string& place, const std::string& what) {
    throw Failure(kUsage, "In " + place + ": " + what + ".");
}

std::string contentOf(const std::string& path) {
    requireInputFile(path);
    std::ifstream file(path, std::ios::binary);
    std::string text(static_cast<std::size_t>(kLargestFile) + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad() || file.gcount() > kLargestFile) {
        throw Failure(kUsage, "The configuration " + path +
                                  " cannot be read, or is larger than a "
                                  "mebibyte.");
    }
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

class Reader {
  public:
    explicit Reader(const std::string& path) { file_.path = path; }

    ConfigFile read() && {
        const toml::table root = parse();
        readSections(root, file_.defaults, true);
        return std::move(file_);
    }

  private:
    toml::table parse() const {
        try {
            return toml::parse(contentOf(file_.path), file_.path);
        } catch (const toml::parse_error& error) {
            fail(placeOf(error.source()), std::string(error.description()));
        }
    }

    std::string placeOf(const toml::source_region& source) const {
        return file_.path + ", line " + std::to_string(source.begin.line);
    }

    // The values of table, then those of the tables in it.
    void readSections(const toml::table& table, std::vector<ConfigEntry>& entries, bool top) {
        readValues(table, "", entries);
        for (const auto& [key, node] : table) {
            const toml::table* const section = node.as_table();
            if (section == nullptr) {
                continue;
            }
            if (top && key.str() == kProfiles) {
                readProfiles(*section);
            } else {
                refuseTablesIn(*section);
                readValues(*section, std::string(key.str()), entries);
            }
        }
    }

    void readProfiles(const toml::table& profiles) {
        for (const auto& [name, node] : profiles) {
            const toml::table* const profile = node.as_table();
            if (profile == nullptr) {
                fail(placeOf(node.source()), "a profile is a table, such as [profile.letters]");
            }
            readSections(*profile, file_.profiles[std::string(name.str())], false);
        }
    }

    void refuseTablesIn(const toml::table& section) const {
        for (const auto& [key, node] : section) {
            if (node.is_table()) {
                fail(placeOf(node.source()), "\"" + std::string(key.str()) +
                                                 "\" is a table where "
                                                 "a value is expected");
            }
        }
    }

    void readValues(const toml::table& table, const std::string& section,
                    std::vector<ConfigEntry>& entries) const {
        for (const auto& [key, node] : table) {
            if (node.is_table()) {
                continue;
            }
            ConfigEntry entry{section, std::string(key.str()), {}, false, placeOf(key.source())};
            if (const toml::array* const array = node.as_array()) {
                entry.isArray = true;
                for (const toml::node& element : *array) {
                    entry.values.push_back(valueOf(element, entry));
                }
            } else {
                entry.values.push_back(valueOf(node, entry));
            }
            entries.push_back(std::move(entry));
        }
    }

    static ConfigValue valueOf(const toml::node& node, const ConfigEntry& entry) {
        using Kind = ConfigValue::Kind;
        if (const auto* flag = node.as_boolean()) {
            return {Kind::kFlag, flag->get() ? "true" : "false"};
        }
        if (const auto* text = node.as_string()) {
            return {Kind::kText, text->get()};
        }
        if (const auto* number = node.as_integer()) {
            return {Kind::kNumber, std::to_string(number->get())};
        }
        if (const auto* number = node.as_floating_point()) {
            std::ostringstream text;
            text << number->get();
            return {Kind::kNumber, text.str()};
        }
        fail(entry.place, "\"" + entry.key + "\" is no text, number or boolean");
    }

    ConfigFile file_;
};

} // namespace

std::string usualConfigFile() {
    const std::filesystem::path folder = configFolder();
    return folder.empty() ? "" : (folder / "config.toml").string();
}

ConfigFile readConfigFile(const std::string& path) {
    return Reader(path).read();
}

} // namespace doccam::host
