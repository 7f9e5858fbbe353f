#include "settings/PathOperators.h"

#include "model/FilePath.h"

#include <algorithm>
#include <vector>

namespace kelvane::settings::paths {
namespace {

std::vector<std::string_view> components(std::string_view path) {
    std::vector<std::string_view> parts;
    const bool absolute = path.starts_with('/');
    while (!path.empty()) {
        const auto slash = path.find('/');
        const std::string_view part = path.substr(0, slash);
        if (part == "..") {
            if (absolute) {
                if (!parts.empty()) {
                    parts.pop_back();
                }
            } else {
                parts.push_back(part);
            }
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
    }
    return parts;
}

// The text up to and including the last "/" of the path without trailing
// slashes; empty when there is none.
std::string_view folderPrefix(std::string_view path) {
    const std::string trimmed = kelvane::path::withoutTrailingSlash(path);
    const auto slash = trimmed.rfind('/');
    return slash == std::string::npos ? std::string_view() : path.substr(0, slash + 1);
}

} // namespace

std::string directory(std::string_view path) {
    const std::string_view prefix = folderPrefix(path);
    return prefix.empty() ? "./" : std::string(prefix);
}

std::string file(std::string_view path) {
    return std::string(kelvane::path::lastComponent(path));
}

std::string base(std::string_view path) {
    return std::string(kelvane::path::stem(path));
}

std::string suffix(std::string_view path) {
    const std::string_view extension = kelvane::path::extension(path);
    std::string out;
    if (!extension.empty()) {
        out += '.';
        out += extension;
    }
    return out;
}

std::string standardized(std::string_view path) {
    const bool absolute = path.starts_with('/');
    std::string out;
    for (const std::string_view part : components(path)) {
        if (absolute || !out.empty()) {
            out += '/';
        }
        out += part;
    }
    if (out.empty()) {
        return absolute ? "/" : (path.empty() ? "" : ".");
    }
    return out;
}

std::string withDirectory(std::string_view path, std::string_view directory) {
    return kelvane::path::join(directory, kelvane::path::lastComponent(path));
}

std::string withFile(std::string_view path, std::string_view file) {
    return std::string(folderPrefix(path)) + std::string(file);
}

std::string withBase(std::string_view path, std::string_view base) {
    std::string out(folderPrefix(path));
    out += base;
    out += '.';
    out += kelvane::path::extension(path);
    return out;
}

std::string withSuffix(std::string_view path, std::string_view suffix) {
    const std::string trimmed = kelvane::path::withoutTrailingSlash(path);
    const std::string_view extension = kelvane::path::extension(trimmed);
    std::string out = extension.empty() && !trimmed.ends_with('.')
                          ? trimmed
                          : trimmed.substr(0, trimmed.size() - extension.size() - 1);
    if (suffix.starts_with('.')) {
        suffix.remove_prefix(1);
    }
    out += '.';
    out += suffix;
    return out;
}

std::string relativeTo(std::string_view path, std::string_view target) {
    if (!path.starts_with('/') || !target.starts_with('/')) {
        return std::string(path);
    }
    const auto from = components(path);
    const auto to = components(target);
    std::size_t common = 0;
    while (common < from.size() && common < to.size() && from[common] == to[common]) {
        ++common;
    }
    std::string out;
    const auto add = [&out](std::string_view part) {
        if (!out.empty()) {
            out += '/';
        }
        out += part;
    };
    for (std::size_t i = common; i < from.size(); ++i) {
        add("..");
    }
    for (std::size_t i = common; i < to.size(); ++i) {
        add(to[i]);
    }
    return out.empty() ? "." : out;
}

bool isAncestor(std::string_view path, std::string_view candidate) {
    if (path.starts_with('/') != candidate.starts_with('/')) {
        return false;
    }
    const auto inner = components(path);
    const auto outer = components(candidate);
    return outer.size() < inner.size() && std::equal(outer.begin(), outer.end(), inner.begin());
}

} // namespace kelvane::settings::paths
