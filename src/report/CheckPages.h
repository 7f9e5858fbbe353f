#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace kelvane::report {

// A check's documentation page, as written under docs/checks/ID.md.
struct CheckPage {
    std::string_view id;
    std::string_view markdown;
};

// Every page, compiled in at build time, sorted by id.
[[nodiscard]] std::span<const CheckPage> checkPages() noexcept;

// The page of one check; nothing for an id without one.
[[nodiscard]] std::optional<std::string_view> checkPage(std::string_view id) noexcept;

} // namespace kelvane::report
