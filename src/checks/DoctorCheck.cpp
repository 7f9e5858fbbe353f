#include "checks/DoctorCheck.h"

namespace kelvane {

// Anchors the interface's virtual table in this library.
AnyCheck::Interface::~Interface() = default;

} // namespace kelvane
