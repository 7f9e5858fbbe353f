#include "adoption/ConfigFile.h"

#include "adoption/ConfigNesting.h"

#include <algorithm>
#include <array>
#include <yaml-cpp/yaml.h>

namespace kelvane::adoption {

namespace {

constexpr std::array<std::string_view, 6> kKnownKeys{"skip",     "only",    "exclude",
                                                     "baseline", "reading", "configuration"};

class Reader {
public:
    explicit Reader(const std::string& displayPath) : displayPath_(displayPath) {}

    [[noreturn]] void fail(const YAML::Mark& mark, const std::string& text) const {
        if (mark.is_null()) {
            throw ConfigError(displayPath_ + ": " + text);
        }
        throw ConfigError(displayPath_ + ":" + std::to_string(mark.line + 1) + ": " + text);
    }

    ScanConfig read(const YAML::Node& root) {
        ScanConfig config;
        if (!root.IsDefined() || root.IsNull()) {
            return config; // empty, or nothing but comments
        }
        if (!root.IsMap()) {
            fail(root.Mark(), "expected options as 'key: value' lines, like 'skip: [check.id]'");
        }
        std::vector<std::string> seen;
        for (const auto& entry : root) {
            const YAML::Node& key = entry.first;
            const YAML::Node& value = entry.second;
            if (!key.IsScalar()) {
                fail(key.Mark(), "an option's name must be a plain word");
            }
            const std::string& name = key.Scalar();
            if (std::find(kKnownKeys.begin(), kKnownKeys.end(), name) == kKnownKeys.end()) {
                fail(key.Mark(), "unknown key '" + name +
                                     "' (known: skip, only, exclude, baseline, reading, "
                                     "configuration)");
            }
            if (std::find(seen.begin(), seen.end(), name) != seen.end()) {
                fail(key.Mark(), "'" + name + "' is set twice");
            }
            seen.push_back(name);
            readOption(config, name, key, value);
        }
        return config;
    }

private:
    void readOption(ScanConfig& config, const std::string& name, const YAML::Node& key,
                    const YAML::Node& value) const {
        if (name == "skip") {
            config.skip = list(name, value);
        } else if (name == "only") {
            config.only = list(name, value);
        } else if (name == "exclude") {
            for (ConfigValue& folder : list(name, value)) {
                config.exclude.push_back(excludedFolder(folder));
            }
        } else if (name == "baseline") {
            config.baseline = word(name, key, value, "a file, like 'baseline: kelvane-baseline.json'");
        } else if (name == "reading") {
            const ConfigValue reading = word(name, key, value, "literal or as-built");
            if (reading.text != "literal" && reading.text != "as-built") {
                fail(value.Mark(), "reading must be literal or as-built, not '" + reading.text + "'");
            }
            config.asBuilt = reading.text == "as-built";
        } else {
            config.configuration = word(name, key, value, "a build configuration's name");
        }
    }

    // A non-empty scalar; `what` says what the option takes.
    ConfigValue word(const std::string& name, const YAML::Node& key, const YAML::Node& value,
                     const std::string& what) const {
        const YAML::Mark& mark = value.IsNull() ? key.Mark() : value.Mark();
        if (!value.IsScalar() || value.Scalar().empty()) {
            fail(mark, "'" + name + "' takes " + what);
        }
        return ConfigValue{value.Scalar(), mark.line + 1};
    }

    // A list of words; an empty value is an empty list.
    std::vector<ConfigValue> list(const std::string& name, const YAML::Node& value) const {
        std::vector<ConfigValue> items;
        if (value.IsNull()) {
            return items;
        }
        if (!value.IsSequence()) {
            fail(value.Mark(), "'" + name + "' takes a list, like '" + name + ": [" +
                                   (name == "exclude" ? "Pods" : "check.id") + "]'");
        }
        for (const YAML::Node& item : value) {
            if (!item.IsScalar() || item.Scalar().empty()) {
                fail(item.IsNull() ? value.Mark() : item.Mark(),
                     "each item of '" + name + "' must be a single word");
            }
            items.push_back(ConfigValue{item.Scalar(), item.Mark().line + 1});
        }
        return items;
    }

    // Exclusions are folders inside the one the file sits in, compared by
    // their path components; anything reaching outside could never match.
    std::string excludedFolder(const ConfigValue& folder) const {
        std::string path = folder.text;
        while (path.size() > 1 && path.back() == '/') {
            path.pop_back();
        }
        if (path.starts_with("./")) {
            path.erase(0, 2);
        }
        const bool climbs = path == ".." || path.starts_with("../") ||
                            path.find("/../") != std::string::npos || path.ends_with("/..");
        if (path.empty() || path == "." || path.front() == '/' || climbs) {
            throw ConfigError(displayPath_ + ":" + std::to_string(folder.line) +
                              ": exclude takes folders inside this one, not '" + folder.text +
                              "'");
        }
        return path;
    }

    const std::string& displayPath_;
};

} // namespace

ScanConfig parseScanConfig(std::string_view text, const std::string& displayPath) {
    if (text.size() > kMaxConfigSize) {
        throw ConfigError(displayPath + ": larger than " + std::to_string(kMaxConfigSize / 1024) +
                          " KiB; a configuration file is a few lines");
    }
    checkConfigShape(text, displayPath);
    Reader reader(displayPath);
    YAML::Node root;
    try {
        root = YAML::Load(std::string(text));
    } catch (const YAML::Exception& error) {
        reader.fail(error.mark, error.msg);
    }
    try {
        return reader.read(root);
    } catch (const YAML::Exception& error) {
        // A conversion the checks above did not foresee.
        reader.fail(error.mark, error.msg);
    }
}

} // namespace kelvane::adoption
