#include "KelvaneProcess.h"

#include "TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace kelvane::testing {

namespace {

std::string readText(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// In the child between fork and exec: only async-signal-safe calls.
[[noreturn]] void becomeKelvane(const char* directory, const char* outFile, const char* errFile,
                                char* const* argv) {
    if (directory != nullptr && chdir(directory) != 0) {
        _exit(126);
    }
    const int in = open("/dev/null", O_RDONLY);
    const int out = open(outFile, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int err = open(errFile, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (in < 0 || out < 0 || err < 0 || dup2(in, STDIN_FILENO) < 0 ||
        dup2(out, STDOUT_FILENO) < 0 || dup2(err, STDERR_FILENO) < 0) {
        _exit(126);
    }
    execv(argv[0], argv);
    _exit(127);
}

std::chrono::microseconds processorTime(const rusage& usage) {
    const auto time = [](const timeval& value) {
        return std::chrono::seconds(value.tv_sec) + std::chrono::microseconds(value.tv_usec);
    };
    return time(usage.ru_utime) + time(usage.ru_stime);
}

} // namespace

ProcessOutcome runKelvane(const std::vector<std::string>& arguments,
                          const std::string& workingDirectory, std::chrono::milliseconds limit) {
    // The captured streams live outside the folders under test, so that
    // those folders see no file appear that the program did not write.
    const TempDir capture;
    const std::string outFile = capture.file("out");
    const std::string errFile = capture.file("err");

    std::vector<std::string> words{KELVANE_EXECUTABLE};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    ProcessOutcome outcome;
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        becomeKelvane(workingDirectory.empty() ? nullptr : workingDirectory.c_str(),
                      outFile.c_str(), errFile.c_str(), argv.data());
    }
    int raw = 0;
    rusage usage{};
    auto pause = std::chrono::microseconds(200);
    while (true) {
        const pid_t done = wait4(child, &raw, WNOHANG, &usage);
        if (done == child) {
            break;
        }
        if (done < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "wait4");
        }
        if (std::chrono::steady_clock::now() - start > limit) {
            kill(child, SIGKILL);
            wait4(child, &raw, 0, &usage);
            outcome.timedOut = true;
            break;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::microseconds(20'000));
    }
    outcome.elapsed = std::chrono::steady_clock::now() - start;
    outcome.processorTime = processorTime(usage);
    outcome.status = !outcome.timedOut && WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    outcome.out = readText(outFile);
    outcome.err = readText(errFile);
    return outcome;
}

double slowdown() {
#if defined(__SANITIZE_ADDRESS__)
    return 6.0;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    return 6.0;
#else
    return 1.0;
#endif
#else
    return 1.0;
#endif
}

void expectQuick(const ProcessOutcome& run, double seconds) {
    using Seconds = std::chrono::duration<double>;
    EXPECT_FALSE(run.timedOut) << "still running after " << Seconds(run.elapsed).count() << " s";
    const double budget = seconds * slowdown();
    EXPECT_LT(Seconds(run.processorTime).count(), budget) << "processor time";
    // The clock may run a few times slower than the processor on a shared
    // machine; a process that blocks or sleeps runs over either way.
    EXPECT_LT(Seconds(run.elapsed).count(), 4 * budget) << "elapsed time";
}

} // namespace kelvane::testing
