#include "model/FilePath.h"

namespace kelvane::path {

std::string join(std::string_view base, std::string_view relative) {
    std::string result(base);
    if (relative.empty()) {
        return result;
    }
    const bool baseEndsWithSlash = !result.empty() && result.back() == '/';
    const bool relativeStartsWithSlash = relative.front() == '/';
    if (baseEndsWithSlash && relativeStartsWithSlash) {
        relative.remove_prefix(1);
    } else if (!baseEndsWithSlash && !relativeStartsWithSlash && !result.empty()) {
        result += '/';
    }
    result += relative;
    return result;
}

std::string withoutTrailingSlash(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return std::string(path);
}

std::string parent(std::string_view path) {
    const std::string trimmed = withoutTrailingSlash(path);
    const auto slash = trimmed.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    if (slash == 0) {
        return "/";
    }
    return trimmed.substr(0, slash);
}

std::string_view lastComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view extension(std::string_view path) {
    const std::string_view last = lastComponent(path);
    const auto dot = last.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : last.substr(dot + 1);
}

std::string_view stem(std::string_view path) {
    const std::string_view last = lastComponent(path);
    const auto dot = last.rfind('.');
    return dot == std::string_view::npos ? last : last.substr(0, dot);
}

} // namespace kelvane::path
