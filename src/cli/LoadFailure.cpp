#include "cli/LoadFailure.h"

#include "cli/CommandIO.h"

namespace kelvane::cli {

int reportLoadFailure(const std::exception& error, std::ostream& err) {
    err << "kelvane: " << error.what() << '\n';
    return kExitNotLoaded;
}

} // namespace kelvane::cli
