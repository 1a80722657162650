#include "configuration/configured_options.h"

#include "host/failure.h"
#include "host/texts.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <string_view>
#include <vector>

namespace doccam::host {
namespace {

using Kind = ConfigValue::Kind;

// What replaces, removes or adds something, or gives up a protection, is said each time.
constexpr std::array<std::string_view, 13> kCommandLineOnly{
    "help",     "version", "config", "no-config", "profile", "no-confinement", "force",
    "in-place", "add",     "all",    "as",        "resume",  "watch"};

template <typename Range, typename Element>
bool contains(const Range& range, const Element& element) {
    return std::find(range.begin(), range.end(), element) != range.end();
}

[[noreturn]] void fail(const ConfigEntry& entry, const std::string& what) {
    throw Failure(kUsage, "In " + entry.place + ": " + what + ".");
}

CLI::App* commandOf(CLI::App& app, const ConfigEntry& entry) {
    if (entry.section.empty()) {
        return &app;
    }
    const auto commands = app.get_subcommands({});
    const auto command = std::find_if(commands.begin(), commands.end(), [&](const CLI::App* one) {
        return one->get_name() == entry.section;
    });
    if (command == commands.end()) {
        fail(entry, "there is no command \"" + entry.section + "\"");
    }
    return *command;
}

CLI::Option* optionIn(CLI::App& command, const std::string& key) {
    const auto options = command.get_options();
    const auto option = std::find_if(options.begin(), options.end(), [&](const CLI::Option* one) {
        return contains(one->get_lnames(), key);
    });
    return option == options.end() ? nullptr : *option;
}

// Options of all commands may also have a default for one.
CLI::Option& optionOf(CLI::App& app, const ConfigEntry& entry) {
    if (contains(kCommandLineOnly, entry.key)) {
        fail(entry, "\"" + entry.key + "\" is for the command line alone");
    }
    CLI::App* const command = commandOf(app, entry);
    CLI::Option* option = optionIn(*command, entry.key);
    if (option == nullptr && command != &app) {
        option = optionIn(app, entry.key);
    }
    if (option == nullptr) {
        fail(entry, "there is no option \"" + entry.key + "\"" +
                        (entry.section.empty() ? " of all commands" : " of " + entry.section));
    }
    return *option;
}

bool isFlag(const CLI::Option& option) {
    return option.get_expected_min() == 0;
}

bool takesNumber(const CLI::Option& option) {
    constexpr std::array<std::string_view, 3> kNumbers{"N", "SECONDS", "PORT"};
    return contains(kNumbers, option.get_type_name());
}

void refuseWrongType(const CLI::Option& option, const ConfigEntry& entry) {
    if (entry.isArray && option.get_items_expected_max() < 2) {
        fail(entry, "\"" + entry.key + "\" takes one value, not an array");
    }
    for (const ConfigValue& value : entry.values) {
        if (isFlag(option) && value.kind != Kind::kFlag &&
            (value.kind != Kind::kText || option.get_option_text().empty())) {
            fail(entry, "\"" + entry.key + "\" takes true or false");
        }
        if (!isFlag(option) && value.kind == Kind::kFlag) {
            fail(entry, "\"" + entry.key + "\" takes no true or false");
        }
        if (takesNumber(option) && value.kind != Kind::kNumber) {
            fail(entry, "\"" + entry.key + "\" takes a number");
        }
    }
}

// The option stores its value as if the command line had given it, and forgets that it has.
void give(CLI::Option& option, const ConfigEntry& entry) {
    try {
        for (const ConfigValue& value : entry.values) {
            option.add_result(value.text);
        }
        option.run_callback();
        option.clear();
    } catch (const CLI::ParseError& error) {
        fail(entry, error.what());
    }
}

class Configuration {
  public:
    explicit Configuration(CLI::App& app)
      : app_(app) {}

    // Later entries win.
    void add(const std::vector<ConfigEntry>& entries) {
        for (const ConfigEntry& entry : entries) {
            CLI::Option& option = check(entry);
            const bool ofAllCommands = contains(app_.get_options(), &option);
            if (!ofAllCommands || entry.section.empty() || app_.got_subcommand(entry.section)) {
                chosen_[&option] = &entry;
            }
        }
    }

    CLI::Option& check(const ConfigEntry& entry) {
        CLI::Option& option = optionOf(app_, entry);
        refuseWrongType(option, entry);
        return option;
    }

    void apply() {
        for (const auto& [option, entry] : chosen_) {
            if (option->count() == 0 && !isOverruled(*option)) {
                give(*option, *entry);
            }
        }
    }

  private:
    // Whether the command line says the same in another way.
    bool isOverruled(const CLI::Option& option) const {
        static const std::map<std::string, std::string> kOtherWays{{"--dpi", "--paper"},
                                                                   {"--paper", "--dpi"},
                                                                   {"--crop", "--whole-frame"},
                                                                   {"--whole-frame", "--crop"}};
        const auto other = kOtherWays.find(option.get_name());
        if (other == kOtherWays.end()) {
            return false;
        }
        const auto commands = app_.get_subcommands();
        return std::any_of(commands.begin(), commands.end(), [&](const CLI::App* command) {
            const CLI::Option* const said = command->get_option_no_throw(other->second);
            return said != nullptr && said->count() > 0;
        });
    }

    CLI::App& app_;
    std::map<CLI::Option*, const ConfigEntry*> chosen_;
};

std::string fileOf(const ConfigChoice& choice) {
    if (choice.none) {
        return "";
    }
    if (!choice.file.empty()) {
        return choice.file;
    }
    std::string file = usualConfigFile();
    std::error_code ignored;
    return !file.empty() && std::filesystem::exists(file, ignored) ? file : "";
}

void refuseContradictions(const ConfigChoice& choice) {
    if (choice.none && !(choice.file.empty() && choice.profile.empty())) {
        throw Failure(kUsage, "--no-config does not go with --config and --profile; leave out one "
                              "of them.");
    }
}

} // namespace

void applyConfiguration(CLI::App& app, const ConfigChoice& choice) {
    refuseContradictions(choice);
    const std::string path = fileOf(choice);
    if (path.empty() && !choice.profile.empty()) {
        throw Failure(kUsage, "There is no profile \"" + choice.profile +
                                  "\", as there is no file " + usualConfigFile() + ".");
    }
    if (path.empty()) {
        return;
    }
    const ConfigFile file = readConfigFile(path);
    Configuration configuration(app);
    configuration.add(file.defaults);
    for (const auto& [name, entries] : file.profiles) {
        for (const ConfigEntry& entry : entries) {
            configuration.check(entry);
        }
    }
    if (!choice.profile.empty()) {
        const auto profile = file.profiles.find(choice.profile);
        if (profile == file.profiles.end()) {
            throw Failure(
                kUsage, "There is no profile \"" + choice.profile + "\" in " + path +
                            (file.profiles.empty() ? "" : "; it has ") +
                            listed(file.profiles, [](const auto& one) { return one.first; }) + ".");
        }
        configuration.add(profile->second);
    }
    configuration.apply();
}

} // namespace doccam::host
