#include "settings/XcconfigReader.h"

#include "model/FilePath.h"
#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"
#include "settings/XcconfigStatements.h"

#include <filesystem>
#include <optional>
#include <system_error>

namespace kelvane::settings {
namespace {

// Real projects nest includes three or four deep, hold a few thousand
// assignments and a few hundred kilobytes of configuration; the bounds leave
// room for generated files while keeping a hostile include graph (a file
// including itself under another name, a diamond of includes doubling at
// every level) from taking more than a moment.
constexpr std::size_t kMaxIncludeDepth = 32;
constexpr std::size_t kMaxAssignments = 100'000;
constexpr std::size_t kMaxBytes = std::size_t{64} << 20;
constexpr std::size_t kMaxFiles = 10'000;

// CocoaPods writes these files at `pod install`; they set search paths, flags
// and a few bookkeeping settings, never what names or signs a bundle.
constexpr std::string_view kCocoaPodsFolder = "Pods/Target Support Files/";

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

// The same file reached through different relative paths compares equal, so
// a cycle cannot hide behind `./` or `..`.
std::string identityOf(const std::string& path) {
    std::error_code error;
    const auto canonical = std::filesystem::weakly_canonical(path, error);
    return error ? std::filesystem::path(path).lexically_normal().string() : canonical.string();
}

class XcconfigLoader {
public:
    XcconfigLoader(const std::string& level, const std::string& projectDir)
        : level_(level), projectDir_(projectDir) {}

    void loadFile(const std::string& path) {
        if (!exists(path)) {
            addPlaceholder({path, 0, level_}, lastOf(path) + " is not in the repository",
                           path.find(kCocoaPodsFolder) != std::string::npos);
            return;
        }
        readAndLoad(path, {path, 0, level_});
    }

    void loadText(std::string_view text, const std::string& path) {
        if (!fits(text.size())) {
            stopForBytes({path, 0, level_});
            return;
        }
        bytesRead_ += text.size();
        chain_.push_back({path, identityOf(path)});
        XcconfigStatements statements(text);
        while (!stopped_) {
            auto statement = statements.next();
            if (!statement) {
                break;
            }
            const SettingOrigin origin{path, statement->line, level_, statement->column};
            switch (statement->kind) {
            case XcconfigStatement::Kind::problem:
                note(origin, statement->problem);
                break;
            case XcconfigStatement::Kind::include:
                include(statement->path, origin);
                break;
            case XcconfigStatement::Kind::assignment:
                assign(std::move(*statement), origin);
                break;
            }
        }
        chain_.pop_back();
    }

    XcconfigContents take() { return std::move(contents_); }

private:
    struct OpenFile {
        std::string path;
        std::string identity;
    };

    static std::string lastOf(const std::string& path) {
        return std::string(kelvane::path::lastComponent(path));
    }

    void note(const SettingOrigin& origin, const std::string& what) {
        contents_.notes.push_back(origin.file + ":" + std::to_string(origin.line) + ": " + what);
    }

    void addPlaceholder(const SettingOrigin& origin, std::string reason, bool sparesIdentity) {
        Assignment placeholder;
        placeholder.origin = origin;
        placeholder.unknownReason = std::move(reason);
        placeholder.sparesIdentity = sparesIdentity;
        contents_.assignments.push_back(std::move(placeholder));
    }

    // Past a bound nothing more is read: what the rest would have set is
    // unknown, which the placeholder says, rather than silently missing.
    void stop(const SettingOrigin& origin, const std::string& reason) {
        note(origin, reason + "; the rest is not read");
        addPlaceholder(origin, reason, false);
        stopped_ = true;
    }

    [[nodiscard]] bool fits(std::uintmax_t bytes) const noexcept {
        return bytes <= kMaxBytes - bytesRead_;
    }

    void stopForBytes(const SettingOrigin& origin) {
        stop(origin, "the configuration files exceed " + std::to_string(kMaxBytes >> 20) + " MiB");
    }

    void assign(XcconfigStatement&& statement, const SettingOrigin& origin) {
        if (contents_.assignments.size() >= kMaxAssignments) {
            stop(origin, "more than " + std::to_string(kMaxAssignments) + " assignments");
            return;
        }
        // The SDK is chosen from SDKROOT before [sdk=…] can be matched.
        if (statement.name == "SDKROOT") {
            for (const Condition& condition : statement.conditions) {
                if (condition.parameter == "sdk") {
                    note(origin, "SDKROOT cannot depend on the SDK; Xcode ignores this line");
                    return;
                }
            }
        }
        Assignment assignment;
        assignment.name = std::move(statement.name);
        assignment.conditions = std::move(statement.conditions);
        assignment.value = std::move(statement.value);
        assignment.origin = origin;
        contents_.assignments.push_back(std::move(assignment));
    }

    // Relative paths are looked up beside the including file, then beside
    // each file that included it, innermost first, then in the project
    // folder; a path without an extension may name `<path>.xcconfig`.
    std::vector<std::string> candidates(const std::string& written) const {
        std::vector<std::string> folders;
        if (written.starts_with('/')) {
            folders.emplace_back();
        } else {
            for (auto open = chain_.rbegin(); open != chain_.rend(); ++open) {
                folders.push_back(kelvane::path::parent(open->path));
            }
            folders.push_back(projectDir_);
        }
        const bool bare = kelvane::path::extension(written).empty();
        std::vector<std::string> paths;
        for (const std::string& folder : folders) {
            const std::string path =
                folder.empty() ? written : kelvane::path::join(folder, written);
            paths.push_back(path);
            if (bare) {
                paths.push_back(path + ".xcconfig");
            }
        }
        return paths;
    }

    void include(const std::string& written, const SettingOrigin& origin) {
        if (written.starts_with("<DEVELOPER_DIR>")) {
            addPlaceholder(origin, written + " lies inside Xcode, which Kelvane does not read",
                           false);
            return;
        }
        const std::vector<std::string> paths = candidates(written);
        std::optional<std::string> found;
        for (const std::string& path : paths) {
            if (exists(path)) {
                found = path;
                break;
            }
        }
        if (!found) {
            addPlaceholder(origin,
                           written + (written.starts_with('/') ? " does not exist"
                                                               : " is not in the repository"),
                           paths.front().find(kCocoaPodsFolder) != std::string::npos);
            return;
        }
        const std::string identity = identityOf(*found);
        for (const OpenFile& open : chain_) {
            if (open.identity == identity) {
                note(origin, "#include \"" + written + "\" skipped: " + lastOf(*found) +
                                 " would include itself");
                return;
            }
        }
        if (chain_.size() >= kMaxIncludeDepth) {
            note(origin, "#include \"" + written + "\" skipped: includes nest deeper than " +
                             std::to_string(kMaxIncludeDepth) + " files");
            addPlaceholder(
                origin, "includes nest deeper than " + std::to_string(kMaxIncludeDepth) + " files",
                false);
            return;
        }
        readAndLoad(*found, origin);
    }

    void readAndLoad(const std::string& path, const SettingOrigin& origin) {
        if (++filesRead_ > kMaxFiles) {
            stop(origin, "more than " + std::to_string(kMaxFiles) + " included files");
            return;
        }
        // Refuse before reading what could not fit anyway.
        std::error_code error;
        if (const auto size = std::filesystem::file_size(path, error); !error && !fits(size)) {
            stopForBytes(origin);
            return;
        }
        std::string text;
        try {
            text = plist::readFile(path);
        } catch (const plist::FileReadError& failure) {
            addPlaceholder(origin, failure.what(), false);
            return;
        }
        if (!fits(text.size())) { // the file grew since its size was asked
            stopForBytes(origin);
            return;
        }
        loadText(text, path);
    }

    std::string level_;
    std::string projectDir_;
    XcconfigContents contents_;
    std::vector<OpenFile> chain_;
    std::size_t bytesRead_ = 0;
    std::size_t filesRead_ = 0;
    bool stopped_ = false;
};

} // namespace

XcconfigContents readXcconfig(const std::string& path, const std::string& level,
                              const std::string& projectDir) {
    XcconfigLoader loader(level, projectDir);
    loader.loadFile(path);
    return loader.take();
}

XcconfigContents parseXcconfig(std::string_view text, const std::string& path,
                               const std::string& level, const std::string& projectDir) {
    XcconfigLoader loader(level, projectDir);
    loader.loadText(text, path);
    return loader.take();
}

} // namespace kelvane::settings
