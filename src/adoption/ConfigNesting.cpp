#include "adoption/ConfigNesting.h"

#include "adoption/ConfigFile.h"

#include <sstream>
#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/exceptions.h>
#include <yaml-cpp/parser.h>

namespace kelvane::adoption {

namespace {

// Stops the parser at the first container that goes too deep: the event
// arrives before the parser descends into it.
class NestingGuard final : public YAML::EventHandler {
public:
    explicit NestingGuard(const std::string& displayPath) : displayPath_(displayPath) {}

    void OnDocumentStart(const YAML::Mark&) override {}
    void OnDocumentEnd() override {}
    void OnNull(const YAML::Mark&, YAML::anchor_t) override {}
    void OnAlias(const YAML::Mark&, YAML::anchor_t) override {}
    void OnScalar(const YAML::Mark&, const std::string&, YAML::anchor_t,
                  const std::string&) override {}
    void OnSequenceStart(const YAML::Mark& mark, const std::string&, YAML::anchor_t,
                         YAML::EmitterStyle::value) override {
        enter(mark);
    }
    void OnSequenceEnd() override { --depth_; }
    void OnMapStart(const YAML::Mark& mark, const std::string&, YAML::anchor_t,
                    YAML::EmitterStyle::value) override {
        enter(mark);
    }
    void OnMapEnd() override { --depth_; }

private:
    void enter(const YAML::Mark& mark) {
        if (++depth_ > kMaxConfigNesting) {
            throw ConfigError(displayPath_ + ":" + std::to_string(mark.line + 1) +
                              ": nested more than " + std::to_string(kMaxConfigNesting) +
                              " levels deep");
        }
    }

    const std::string& displayPath_;
    int depth_ = 0;
};

} // namespace

void checkConfigShape(std::string_view text, const std::string& displayPath) {
    std::istringstream input{std::string(text)};
    try {
        YAML::Parser parser(input);
        NestingGuard guard(displayPath);
        if (!parser.HandleNextDocument(guard)) {
            return;
        }
        if (parser.HandleNextDocument(guard)) {
            throw ConfigError(displayPath + ": holds more than one YAML document");
        }
    } catch (const YAML::Exception&) {
        // Reported with its line when the tree is built.
    }
}

} // namespace kelvane::adoption
