#pragma once

#include "diagnostics/DoctorIssue.h"
#include "model/ProjectContext.h"

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace kelvane {

// What every check is: a small copyable value holding only its
// configuration, with a constant id and a run that reads the project (and
// the property lists it points to) and reports at most one issue. A run may
// throw; the scanner reports the failure and goes on with the next check.
template <class T>
concept DoctorCheck = std::copy_constructible<T> &&
    requires(const T& check, const ProjectContext& context) {
    { check.id() } -> std::convertible_to<std::string>;
    { check.run(context) } -> std::same_as<std::optional<DoctorIssue>>;
};

class AnyCheck;

// What AnyCheck wraps. AnyCheck itself is ruled out first: asking whether it
// is a DoctorCheck while deciding how to copy it would make the concept
// depend on itself.
template <class T>
concept WrappableCheck = !std::same_as<std::remove_cvref_t<T>, AnyCheck> && DoctorCheck<T>;

// Any DoctorCheck behind one type, so the registry can be a plain list.
// Copies share the wrapped check, which is safe because checks are
// immutable: `run` is const and a check keeps nothing between runs.
class AnyCheck {
public:
    template <WrappableCheck Check>
    AnyCheck(Check check) // NOLINT(google-explicit-constructor): a check is an AnyCheck
        : check_(std::make_shared<const Holder<Check>>(std::move(check))) {}

    [[nodiscard]] std::string id() const { return check_->id(); }
    [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const {
        return check_->run(context);
    }

private:
    class Interface {
    public:
        virtual ~Interface();
        [[nodiscard]] virtual std::string id() const = 0;
        [[nodiscard]] virtual std::optional<DoctorIssue> run(const ProjectContext&) const = 0;
    };

    template <class Check> class Holder final : public Interface {
    public:
        explicit Holder(Check check) : check_(std::move(check)) {}
        [[nodiscard]] std::string id() const override { return check_.id(); }
        [[nodiscard]] std::optional<DoctorIssue> run(const ProjectContext& context) const override {
            return check_.run(context);
        }

    private:
        Check check_;
    };

    std::shared_ptr<const Interface> check_;
};

static_assert(DoctorCheck<AnyCheck>);

} // namespace kelvane
