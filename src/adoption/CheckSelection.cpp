#include "adoption/CheckSelection.h"

#include <algorithm>

namespace kelvane::adoption {

namespace {

bool listed(const std::vector<std::string>& ids, const std::string& id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

} // namespace

std::optional<std::string> unknownCheck(const std::vector<std::string>& ids,
                                        const std::vector<std::string>& known) {
    for (const std::string& id : ids) {
        if (!listed(known, id)) {
            return id;
        }
    }
    return std::nullopt;
}

std::vector<AnyCheck> selectChecks(std::vector<AnyCheck> registry,
                                   const std::vector<std::string>& only,
                                   const std::vector<std::string>& skip) {
    std::erase_if(registry, [&](const AnyCheck& check) {
        const std::string id = check.id();
        return (!only.empty() && !listed(only, id)) || listed(skip, id);
    });
    return registry;
}

} // namespace kelvane::adoption
