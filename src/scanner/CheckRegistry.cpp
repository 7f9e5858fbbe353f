#include "scanner/CheckRegistry.h"

namespace kelvane {

std::vector<AnyCheck> makeCheckRegistry() {
    // One line per check, in the order of kCheckTitles; a test holds the two
    // lists to the same ids and order.
    return {};
}

} // namespace kelvane
