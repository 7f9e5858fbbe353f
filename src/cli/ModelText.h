#pragma once

#include "model/ProjectContext.h"

#include <ostream>

namespace kelvane::cli {

// The project model for people: one table row per target with its settings,
// then the files and frameworks each target points to.
void writeProjectText(const ProjectContext& project, std::ostream& out);

} // namespace kelvane::cli
