#pragma once

#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

/// How a program ended, and what it wrote.
struct ProcessResult {
    int exitCode = -1; ///< 128 + the signal's number when one ended it
    std::string output;
    std::string error;
};

/// Changes of the environment: a value, or nothing to take the variable out.
using EnvironmentChanges = std::map<std::string, std::optional<std::string>>;

/// Runs a program, looked for as a shell does, with standard input empty, and waits for its end. A program
/// that cannot be started gives exit code 127.
ProcessResult runProcess(const std::vector<std::string>& words, const EnvironmentChanges& environment = {});

/// A program that runs on while the test does; it is ended with SIGTERM, then SIGKILL, when this goes.
class BackgroundProcess {
public:
    explicit BackgroundProcess(
        const std::vector<std::string>& words, const EnvironmentChanges& environment = {});
    BackgroundProcess(const BackgroundProcess&) = delete;
    BackgroundProcess& operator=(const BackgroundProcess&) = delete;
    ~BackgroundProcess();

    /// The next line of its standard output without the newline; empty when there is none within `seconds`.
    std::string readLine(double seconds);
    /// The exit code once it has ended, nothing when it is still running after `seconds`.
    std::optional<int> waitForExit(double seconds);

private:
    pid_t _pid = -1;
    int _output = -1;
    std::string _pending;
    std::optional<int> _exitCode;
};
