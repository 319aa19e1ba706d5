#pragma once

#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

/// A program's exit code and output.
struct ProcessResult {
    int exitCode = -1; ///< 128 + the signal number when a signal ended it
    std::string output;
    std::string error;
};

/// Environment variables to set, or to remove where there is no value.
using EnvironmentChanges = std::map<std::string, std::optional<std::string>>;

/// Runs a program, found through PATH, with empty standard input, and waits until it exits. A program that
/// cannot be started gives exit code 127.
ProcessResult runProcess(const std::vector<std::string>& words, const EnvironmentChanges& environment = {});

/// A program that runs in parallel with the test. The destructor ends it with SIGTERM, after five seconds
/// with SIGKILL.
class BackgroundProcess {
public:
    explicit BackgroundProcess(
        const std::vector<std::string>& words, const EnvironmentChanges& environment = {});
    BackgroundProcess(const BackgroundProcess&) = delete;
    BackgroundProcess& operator=(const BackgroundProcess&) = delete;
    ~BackgroundProcess();

    /// The next line of standard output without the newline; empty if none arrives within `seconds`.
    std::string readLine(double seconds);
    /// The exit code; nothing if the program is still running after `seconds`.
    std::optional<int> waitForExit(double seconds);

private:
    pid_t _pid = -1;
    int _output = -1;
    std::string _pending;
    std::optional<int> _exitCode;
};
