#pragma once

#include "model/ProjectContext.h"

#include <nlohmann/json.hpp>

namespace kelvane::report {

// An optional text as every JSON document shows it: the text, or null.
[[nodiscard]] nlohmann::ordered_json textOrNull(const std::optional<std::string>& text);

// The project model as the JSON documents show it: record field names, fields
// in record order, absent optionals as null, target types as raw values.
[[nodiscard]] nlohmann::ordered_json toJson(const TargetContext& target);
[[nodiscard]] nlohmann::ordered_json toJson(const ProjectContext& project);

// One JSON document as the terminal prints it. Text that is not UTF-8 (a path
// given on the command line, say) is written with replacement characters
// rather than failing the whole report.
[[nodiscard]] std::string toDocument(const nlohmann::ordered_json& json);

} // namespace kelvane::report
