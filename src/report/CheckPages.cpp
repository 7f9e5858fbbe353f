#include "report/CheckPages.h"

#include <algorithm>

namespace kelvane::report {

std::optional<std::string_view> checkPage(std::string_view id) noexcept {
    const std::span<const CheckPage> pages = checkPages();
    const auto found = std::find_if(pages.begin(), pages.end(),
                                    [&](const CheckPage& page) { return page.id == id; });
    if (found == pages.end()) {
        return std::nullopt;
    }
    return found->markdown;
}

} // namespace kelvane::report
