#include "graph/EmbeddedContent.h"

#include "graph/TargetKind.h"
#include "parser/ObjectTable.h"

#include <string_view>
#include <unordered_map>

namespace kelvane {

namespace {

// Destinations inside the copying product's bundle. "Products Directory"
// (16) counts only with a path into a bundle folder such as
// $(CONTENTS_FOLDER_PATH)/Watch; "Absolute Path" (0) never does.
bool copiesIntoBundle(const plist::Dictionary& phase) {
    const std::string* folder = plist::findString(phase, "dstSubfolderSpec");
    if (folder == nullptr || *folder == "0") {
        return false;
    }
    if (*folder == "16") {
        const std::string* destination = plist::findString(phase, "dstPath");
        return destination != nullptr && destination->find("FOLDER_PATH)") != std::string::npos;
    }
    return true;
}

} // namespace

std::string_view hostProductName(std::string_view hostPath) {
    const std::size_t app = hostPath.find(".app/");
    const std::size_t end = app != std::string_view::npos
                                ? app
                                : (hostPath.ends_with(".app") ? hostPath.size() - 4
                                                              : std::string_view::npos);
    if (end == std::string_view::npos) {
        return {};
    }
    const std::size_t slash = hostPath.rfind('/', end);
    return hostPath.substr(slash == std::string_view::npos ? 0 : slash + 1,
                           end - (slash == std::string_view::npos ? 0 : slash + 1));
}

std::string productName(const TargetContext& target) {
    const TracedValue* name = target.built->setting("PRODUCT_NAME");
    return name && !name->value.empty() ? name->value : target.name;
}

void connectTargets(std::vector<TargetContext>& targets,
                    const std::vector<const plist::Dictionary*>& objects,
                    const plist::Dictionary& objectTable) {
    std::unordered_map<std::string, std::size_t> byProduct;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        if (const std::string* product = plist::findString(*objects[i], "productReference")) {
            byProduct.emplace(*product, i);
        }
    }

    for (std::size_t i = 0; i < targets.size(); ++i) {
        const plist::Array* phases = findTextList(*objects[i], "buildPhases");
        if (phases == nullptr) {
            continue;
        }
        for (const plist::Value& phaseID : *phases) {
            const plist::Dictionary* phase = findObject(objectTable, phaseID.asString());
            if (phase == nullptr || isaOf(*phase) != "PBXCopyFilesBuildPhase" ||
                !copiesIntoBundle(*phase)) {
                continue;
            }
            const plist::Array* files = findTextList(*phase, "files");
            for (std::size_t f = 0; files != nullptr && f < files->size(); ++f) {
                const plist::Dictionary* buildFile = findObject(objectTable, (*files)[f].asString());
                const std::string* reference =
                    buildFile ? plist::findString(*buildFile, "fileRef") : nullptr;
                const auto embedded = reference ? byProduct.find(*reference) : byProduct.end();
                if (embedded == byProduct.end() || embedded->second == i) {
                    continue;
                }
                TargetContext& content = targets[embedded->second];
                targets[i].built->embeds.push_back(content.name);
                if (!content.built->host) {
                    content.built->host = targets[i].name;
                }
            }
        }
    }

    for (TargetContext& target : targets) {
        BuiltFacts& facts = *target.built;
        facts.role = intrinsicRole(facts.productType);
        if (facts.host && facts.role != TargetRole::testBundle) {
            facts.role = TargetRole::embedded;
        }
        if (facts.role != TargetRole::testBundle) {
            continue;
        }
        // UI tests name their app; unit tests run inside the app TEST_HOST
        // names, or load into BUNDLE_LOADER's.
        std::string hostName;
        if (const TracedValue* named = facts.setting("TEST_TARGET_NAME"); named && !named->value.empty()) {
            hostName = named->value;
        } else {
            for (const std::string_view key : {"TEST_HOST", "BUNDLE_LOADER"}) {
                const TracedValue* host = facts.setting(key);
                const std::string_view product = host ? hostProductName(host->value) : "";
                for (const TargetContext& candidate : targets) {
                    if (hostName.empty() && !product.empty() && &candidate != &target &&
                        productName(candidate) == product &&
                        candidate.built->productType.find("application") != std::string::npos) {
                        hostName = candidate.name;
                    }
                }
            }
        }
        if (!hostName.empty()) {
            facts.host = hostName;
        }
    }

    // The main app of a platform: the app a developer ships, which embeds
    // the others' content, over a sibling or variant that embeds nothing;
    // the first in the project's order when that does not decide.
    std::unordered_map<int, std::pair<TargetContext*, int>> best;
    for (TargetContext& target : targets) {
        BuiltFacts& facts = *target.built;
        if (facts.role != TargetRole::app) {
            continue;
        }
        const int score = facts.embeds.empty() ? 0 : 1;
        auto& current = best[static_cast<int>(facts.platform)];
        if (current.first == nullptr || score > current.second) {
            current = {&target, score};
        }
    }
    for (auto& [platform, chosen] : best) {
        chosen.first->built->mainApp = true;
    }
}

} // namespace kelvane
