#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvane::settings {

// Applies one `:operator` or `:operator=operand` of a reference to a defined
// value, as for a string-typed setting: on the whole text. `default` is the
// caller's business (it alone applies to an undefined value and may leave
// its operand unevaluated). An operator Xcode does not have, or one used
// with or without an operand where it takes the other form, leaves the
// value unchanged.
[[nodiscard]] std::string applyOperator(std::string_view name, std::string value,
                                        const std::optional<std::string>& operand);

} // namespace kelvane::settings
