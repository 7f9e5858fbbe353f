#include "diagnostics/EvidenceSource.h"

#include "diagnostics/Overloaded.h"

namespace kelvane {

namespace {
// U+2192 with one space on each side.
constexpr std::string_view kArrow = " \u2192 ";
} // namespace

std::string originDescription(const SettingOrigin& origin) {
    if (origin.file.empty()) {
        return origin.level;
    }
    if (origin.line != 0) {
        return origin.file + ":" + std::to_string(origin.line);
    }
    return origin.file + " (" + origin.level + ")";
}

std::string locationDescription(const EvidenceSource& source) {
    auto concat = [](std::initializer_list<std::string_view> parts) {
        std::string text;
        for (auto part : parts) {
            text += part;
        }
        return text;
    };
    return std::visit(
        Overloaded{
            [&](const PlistSource& s) {
                return concat({s.targetName, kArrow, s.fileName});
            },
            [&](const EntitlementsSource& s) {
                return concat({s.targetName, kArrow, s.fileName});
            },
            [&](const BuildSettingSource& s) {
                return concat({s.targetName, kArrow, "Build Settings (", s.configName, ")"});
            },
            [&](const SchemeSource& s) {
                return concat({"Scheme: ", s.schemeName});
            },
            [&](const ProjectSettingSource& s) {
                return concat({"Project", kArrow, "Build Settings (", s.configName, ")"});
            },
            [&](const CapabilitySource& s) {
                return concat({s.targetName, kArrow, s.capabilityName, " capability"});
            },
            [&](const FrameworkReferenceSource& s) {
                return concat({s.targetName, kArrow, "Frameworks"});
            },
            [&](const WatchKitExtensionSource& s) {
                return concat({s.targetName, kArrow, "WatchKit Extension"});
            },
        },
        source);
}

std::string_view caseName(const EvidenceSource& source) noexcept {
    return std::visit([](const auto& payload) { return payload.kind; }, source);
}

} // namespace kelvane
