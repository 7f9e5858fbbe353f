#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace kelvane::testing {

// How one run of the real executable ended, as a shell or CI system sees it.
struct ProcessOutcome {
    // The exit status; -1 when the process was killed by a signal or timed out.
    int status = -1;
    bool timedOut = false;
    std::string out;
    std::string err;
    std::chrono::steady_clock::duration elapsed{};
    // Processor time, user and system: unlike the elapsed time it does not
    // grow when other work shares the machine.
    std::chrono::microseconds processorTime{};
};

// Runs `kelvane` with `arguments` (no shell, so paths need no quoting) in
// `workingDirectory` (empty: this process's own), with standard input from
// /dev/null and both output streams captured outside that folder. A process
// still running after `limit` is killed, so a hang fails the test instead of
// stalling the suite.
[[nodiscard]] ProcessOutcome runKelvane(const std::vector<std::string>& arguments,
                                        const std::string& workingDirectory = {},
                                        std::chrono::milliseconds limit = std::chrono::seconds(20));

// How much slower this build runs than an optimised one; time limits are
// scaled by it, so a sanitizer build keeps the same tests with looser clocks.
[[nodiscard]] double slowdown();

// Expects the run to have finished within `seconds` of processor time, and
// within a few times that on the clock, which also catches a process that
// sleeps or blocks, while a busy machine does not fail the test.
void expectQuick(const ProcessOutcome& run, double seconds = 1.0);

} // namespace kelvane::testing
