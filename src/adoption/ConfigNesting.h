#pragma once

#include <string>
#include <string_view>

namespace kelvane::adoption {

// Walks the YAML text's events without building a tree and throws
// ConfigError past kMaxConfigNesting levels or at a second document, so the
// tree built afterwards is small and shallow. Syntax errors are left to that
// build, which reports them the same way.
void checkConfigShape(std::string_view text, const std::string& displayPath);

} // namespace kelvane::adoption
