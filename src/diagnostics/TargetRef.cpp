#include "diagnostics/TargetRef.h"

namespace kelvane {

TargetRef makeTargetRef(const TargetContext& target) {
    return TargetRef{target.name, target.type, target.bundleIdentifier};
}

} // namespace kelvane
