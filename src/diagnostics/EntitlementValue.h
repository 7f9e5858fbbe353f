#pragma once

#include "diagnostics/RecordHash.h"

#include <cstddef>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace kelvane {

// The value a fix would write under an entitlement key. Cases in order:
// boolean, string, array. Build it through the named factories: a bare
// string literal would otherwise be free to become the boolean case.
struct EntitlementValue {
    std::variant<bool, std::string, std::vector<std::string>> value{};

    [[nodiscard]] static EntitlementValue boolean(bool flag) { return {flag}; }
    [[nodiscard]] static EntitlementValue string(std::string text) { return {std::move(text)}; }
    [[nodiscard]] static EntitlementValue array(std::vector<std::string> texts) {
        return {std::move(texts)};
    }

    friend bool operator==(const EntitlementValue&, const EntitlementValue&) = default;
};

// The case name: "boolean", "string" or "array".
[[nodiscard]] std::string_view caseName(const EntitlementValue& value) noexcept;

[[nodiscard]] std::size_t hashValue(const EntitlementValue& value) noexcept;

} // namespace kelvane

template <>
struct std::hash<kelvane::EntitlementValue> : kelvane::RecordHash<kelvane::EntitlementValue> {};
