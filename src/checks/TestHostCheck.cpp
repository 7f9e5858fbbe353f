#include "checks/TestHostCheck.h"

#include "checks/BuiltFindings.h"
#include "checks/CheckSupport.h"
#include "diagnostics/JoinLines.h"
#include "graph/EmbeddedContent.h"

#include <array>

namespace kelvane {
namespace {

constexpr const char* kCheckID = "test.host.missing";

constexpr const char* kFoundTitle = "Test Hosts Found";
constexpr const char* kFoundDescription =
    "Every TEST_HOST and BUNDLE_LOADER names an app the project builds, and every "
    "TEST_TARGET_NAME a target it has.";
constexpr const char* kFoundImpact = "Hosted tests can build and run.";

constexpr const char* kMissingTitle = "Test Host Not Built";
constexpr const char* kMissingHead = "Test bundles name a host app the project does not build:\n";
constexpr const char* kMissingTail =
    "\n\nTEST_HOST and BUNDLE_LOADER are paths into the products of the build; they must name "
    "the app's product as it is built in that configuration (its PRODUCT_NAME), or the test "
    "bundle fails to link against its host.";
constexpr const char* kMissingImpact =
    "The tests fail to build in the configurations named; CI runs that test there break.";
constexpr const char* kFixSummary = "Point the test host at the app's product";
constexpr const char* kFixWarning =
    "The usual value is $(BUILT_PRODUCTS_DIR)/<product>.app/$(BUNDLE_EXECUTABLE_FOLDER_PATH)/"
    "<product>, with BUNDLE_LOADER = $(TEST_HOST).";

constexpr std::array kHostSettings{"TEST_HOST", "BUNDLE_LOADER"};

bool isApplication(const TargetContext& target) {
    return target.built && (target.type == TargetType::application || target.type == TargetType::appClip ||
                            target.built->productType.find("application") != std::string::npos);
}

std::vector<BuiltFinding> builtFindings(const ProjectContext& context) {
    std::vector<BuiltFinding> findings;
    for (const TargetContext& tests : context.targets) {
        if (!tests.built || tests.built->role != TargetRole::testBundle) {
            continue;
        }
        // UI tests name the target they drive; a renamed target leaves it stale.
        if (const TracedValue* named = tests.built->setting("TEST_TARGET_NAME");
            named != nullptr && !named->value.empty() && findTarget(context, named->value) == nullptr) {
            const std::string line =
                tests.name + ": TEST_TARGET_NAME names " + named->value + ", which is no target";
            findings.push_back(BuiltFinding{.key = line,
                                            .line = line,
                                            .severity = Severity::error,
                                            .evidence = {builtSettingEvidence(tests, "TEST_TARGET_NAME")},
                                            .targets = {makeTargetRef(tests)},
                                            .steps = {}});
        }
        for (const char* setting : kHostSettings) {
            const TracedValue* value = tests.built->setting(setting);
            const std::string_view product = value ? hostProductName(value->value) : "";
            // BUNDLE_LOADER is usually $(TEST_HOST): one finding says it.
            const TracedValue* testHost = tests.built->setting("TEST_HOST");
            const bool repeatsHost = std::string_view(setting) == "BUNDLE_LOADER" &&
                                     testHost != nullptr && value != nullptr &&
                                     testHost->value == value->value;
            if (product.empty() || repeatsHost) {
                continue; // unset, unknown, or no app in the path: nothing to hold it to
            }
            std::vector<std::string> built;
            bool found = false;
            for (const TargetContext& candidate : context.targets) {
                if (isApplication(candidate) && candidate.built->platform == tests.built->platform) {
                    const std::string name = productName(candidate);
                    found = found || name == product;
                    built.push_back(name + ".app");
                }
            }
            if (found) {
                continue;
            }
            const std::string line = tests.name + ": " + setting + " names " + std::string(product) +
                                     ".app; the apps built are " +
                                     (built.empty() ? std::string("none") : join(built, ", "));
            BuiltFinding finding{.key = line,
                                 .line = line,
                                 .severity = Severity::error,
                                 .evidence = {builtSettingEvidence(tests, setting)},
                                 .targets = {makeTargetRef(tests)},
                                 .steps = {}};
            if (const TargetContext* host = hostOf(context, tests)) {
                finding.evidence.push_back(builtSettingEvidence(*host, "PRODUCT_NAME"));
            }
            findings.push_back(std::move(finding));
        }
    }
    return findings;
}

} // namespace

std::string TestHostCheck::id() const {
    return kCheckID;
}

std::optional<DoctorIssue> TestHostCheck::run(const ProjectContext& context) const {
    return runAsBuiltOnly(context,
                          BuiltCheckTexts{kCheckID, kFoundTitle, kFoundDescription, kFoundImpact, kMissingTitle, kMissingHead, kMissingTail, kMissingImpact,
                                          DoctorFix{.summary = kFixSummary,
                                .safety = FixSafety::manualOnly,
                                .warningMessage = kFixWarning}},
                          builtFindings);
}

} // namespace kelvane
