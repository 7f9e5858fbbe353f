#pragma once

#include <string>
#include <string_view>

// The path operators of build-setting expressions. They work on the text
// alone, `/` separating components; the file system is never consulted.
namespace kelvane::settings::paths {

// `:dir`: everything up to the last "/", kept ("/tmp/P/A.framework" →
// "/tmp/P/"); "./" when there is no "/".
[[nodiscard]] std::string directory(std::string_view path);
// `:file`: the last component.
[[nodiscard]] std::string file(std::string_view path);
// `:base`: the last component without its last extension ("a.tar.gz" → "a.tar").
[[nodiscard]] std::string base(std::string_view path);
// `:suffix`: the last extension with its dot, or empty.
[[nodiscard]] std::string suffix(std::string_view path);
// `:standardizepath`: no "." components, no doubled or trailing "/"; ".."
// resolved only in an absolute path.
[[nodiscard]] std::string standardized(std::string_view path);

// `:dir=D`, `:file=F`, `:base=B`, `:suffix=S`: the path with that part replaced.
[[nodiscard]] std::string withDirectory(std::string_view path, std::string_view directory);
[[nodiscard]] std::string withFile(std::string_view path, std::string_view file);
[[nodiscard]] std::string withBase(std::string_view path, std::string_view base);
[[nodiscard]] std::string withSuffix(std::string_view path, std::string_view suffix);

// `:relativeto=P`: P relative to `path`, both absolute ("/usr/bin" with
// "/usr/lib" → "../lib"); `path` unchanged when either is relative.
[[nodiscard]] std::string relativeTo(std::string_view path, std::string_view target);
// `:isancestor=P`: whether P is a folder above `path` ("YES" or "NO").
[[nodiscard]] bool isAncestor(std::string_view path, std::string_view candidate);

} // namespace kelvane::settings::paths
