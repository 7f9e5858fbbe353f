#pragma once

#include <string>
#include <string_view>

// Lexical path handling. Kelvane joins the paths a user gave with the texts a
// project names and shows them as they are: nothing is made absolute and no
// link is resolved.
namespace kelvane::path {

// `base` + "/" + `relative`; a leading "/" of `relative` is appended like any
// other text, with the doubled "/" written once ("ws" + "/tmp/X" = "ws/tmp/X").
[[nodiscard]] std::string join(std::string_view base, std::string_view relative);
// Everything before the last component; "." when nothing is left.
[[nodiscard]] std::string parent(std::string_view path);
// The last component ("App.xcodeproj").
[[nodiscard]] std::string_view lastComponent(std::string_view path);
// Text after the last dot of the last component; empty when there is none.
[[nodiscard]] std::string_view extension(std::string_view path);
// The last component without its extension ("App" for "a/App.xcodeproj").
[[nodiscard]] std::string_view stem(std::string_view path);
// Drops trailing "/" (but keeps a lone "/").
[[nodiscard]] std::string withoutTrailingSlash(std::string_view path);

} // namespace kelvane::path
