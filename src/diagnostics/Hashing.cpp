#include "diagnostics/DoctorIssue.h"

#include <string_view>

// All records hash the same way: fields in declaration order, an optional as
// "present?" then its value, a list as its length then its elements, a
// variant as its case index then its payload, and an enumeration with text
// values as that text. Equal records therefore always hash equal.
namespace kelvane {

namespace {

class Hasher {
public:
    Hasher& add(std::size_t value) noexcept {
        // boost::hash_combine's mixing, widened to 64 bits.
        seed_ ^= value + 0x9e3779b97f4a7c15ULL + (seed_ << 6) + (seed_ >> 2);
        return *this;
    }
    Hasher& add(bool flag) noexcept { return add(static_cast<std::size_t>(flag ? 1 : 0)); }
    Hasher& add(std::string_view text) noexcept { return add(std::hash<std::string_view>{}(text)); }
    Hasher& add(const std::string& text) noexcept { return add(std::string_view{text}); }
    Hasher& add(Severity severity) noexcept { return add(rawValue(severity)); }
    Hasher& add(FixSafety safety) noexcept { return add(rawValue(safety)); }
    Hasher& add(TargetType type) noexcept { return add(rawValue(type)); }
    template <class T> Hasher& add(const std::optional<T>& value) noexcept {
        add(value.has_value());
        if (value) {
            add(*value);
        }
        return *this;
    }
    template <class T> Hasher& add(const std::vector<T>& values) noexcept {
        add(values.size());
        for (const auto& value : values) {
            add(value);
        }
        return *this;
    }
    // Nested records.
    template <class T>
    requires requires(const T& record) {
        { hashValue(record) } -> std::same_as<std::size_t>;
    }
    Hasher& add(const T& record) noexcept { return add(hashValue(record)); }
    template <class... Fields> Hasher& fields(const Fields&... values) noexcept {
        (add(values), ...);
        return *this;
    }

    [[nodiscard]] std::size_t value() const noexcept { return seed_; }

private:
    std::size_t seed_ = 0;
};

template <class Variant, class HashPayload>
std::size_t hashVariant(const Variant& variant, HashPayload hashPayload) noexcept {
    Hasher hasher;
    hasher.add(variant.index());
    std::visit([&](const auto& payload) { hashPayload(hasher, payload); }, variant);
    return hasher.value();
}

} // namespace

std::size_t hashValue(const EntitlementValue& value) noexcept {
    return hashVariant(value.value, [](Hasher& h, const auto& payload) { h.add(payload); });
}

std::size_t hashValue(const FixAction& action) noexcept {
    struct Payload {
        Hasher& h;
        void operator()(const UpdatePlistKey& a) {
            h.fields(a.targetName, a.fileName, a.key, a.newValue);
        }
        void operator()(const SetBuildSetting& a) {
            h.fields(a.targetName, a.configName, a.settingName, a.value);
        }
        void operator()(const UpdateEntitlement& a) {
            h.fields(a.targetName, a.fileName, a.key, a.newValue);
        }
        void operator()(const UpdateSchemeSetting& a) {
            h.fields(a.schemeName, a.buildConfiguration);
        }
        void operator()(const AddFrameworkReference& a) { h.fields(a.targetName, a.frameworkName); }
        void operator()(const ManualInstruction& a) { h.fields(a.steps); }
    };
    return hashVariant(action, [](Hasher& h, const auto& payload) { Payload{h}(payload); });
}

std::size_t hashValue(const FixStep& step) noexcept {
    return Hasher{}.fields(step.description, step.action).value();
}

std::size_t hashValue(const DoctorFix& fix) noexcept {
    return Hasher{}.fields(fix.summary, fix.safety, fix.steps, fix.warningMessage).value();
}

std::size_t hashValue(const EvidenceSource& source) noexcept {
    struct Payload {
        Hasher& h;
        void operator()(const PlistSource& s) { h.fields(s.targetName, s.fileName); }
        void operator()(const EntitlementsSource& s) { h.fields(s.targetName, s.fileName); }
        void operator()(const BuildSettingSource& s) { h.fields(s.targetName, s.configName); }
        void operator()(const SchemeSource& s) { h.fields(s.schemeName); }
        void operator()(const ProjectSettingSource& s) { h.fields(s.configName); }
        void operator()(const CapabilitySource& s) { h.fields(s.targetName, s.capabilityName); }
        void operator()(const FrameworkReferenceSource& s) { h.fields(s.targetName); }
        void operator()(const WatchKitExtensionSource& s) { h.fields(s.targetName); }
    };
    return hashVariant(source, [](Hasher& h, const auto& payload) { Payload{h}(payload); });
}

std::size_t hashValue(const EvidenceItem& item) noexcept {
    Hasher hasher;
    hasher.fields(item.source, item.key, item.value, item.expectedValue);
    if (item.origin) {
        hasher.fields(item.origin->file, item.origin->line, item.origin->level);
    }
    return hasher.value();
}

std::size_t hashValue(const TargetRef& target) noexcept {
    return Hasher{}.fields(target.name, target.type, target.bundleID).value();
}

std::size_t hashValue(const DoctorIssue& issue) noexcept {
    return Hasher{}
        .fields(issue.id, issue.severity, issue.title, issue.description, issue.impact,
                issue.evidence, issue.affectedTargets, issue.fix, issue.configurations)
        .value();
}

} // namespace kelvane
