#include "cli/FinishedScan.h"

#include "scanner/CheckTitles.h"

namespace kelvane::cli {

std::string checkDisplayTitle(const std::string& checkID) {
    return std::string(checkTitle(checkID).value_or(checkID));
}

} // namespace kelvane::cli
