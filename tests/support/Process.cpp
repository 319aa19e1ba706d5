#include "support/Process.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

struct Pipe {
    int reading = -1;
    int writing = -1;

    Pipe()
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("cannot make a pipe");
        reading = ends[0];
        writing = ends[1];
    }
};

/// The environment of this process with the changes applied, as "NAME=value" strings.
std::vector<std::string> changedEnvironment(const EnvironmentChanges& changes)
{
    std::vector<std::string> result;
    for (char** entry = environ; *entry; ++entry) {
        const std::string variable = *entry;
        if (!changes.contains(variable.substr(0, variable.find('='))))
            result.push_back(variable);
    }
    for (const auto& [name, value] : changes) {
        if (value)
            result.push_back(name + "=" + *value);
    }
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& strings)
{
    std::vector<char*> result;
    for (auto& string : strings)
        result.push_back(string.data());
    result.push_back(nullptr);
    return result;
}

/// Starts a program with standard output and error redirected to the descriptors; a negative one leaves the
/// stream as it is.
pid_t start(std::vector<std::string> words, const EnvironmentChanges& changes, int output, int error)
{
    // Allocate before the fork: in the child, a lock held by another thread is never released.
    auto environment = changedEnvironment(changes);
    const auto arguments = pointers(words);
    const auto variables = pointers(environment);
    const pid_t pid = fork();
    if (pid != 0)
        return pid;
    const int input = open("/dev/null", O_RDONLY);
    dup2(input, STDIN_FILENO);
    if (output >= 0)
        dup2(output, STDOUT_FILENO);
    if (error >= 0)
        dup2(error, STDERR_FILENO);
    // Inherited copies of other pipes would keep those open, and their readers waiting.
    close_range(3, ~0U, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    execvpe(arguments[0], arguments.data(), variables.data());
    _exit(127);
}

int exitCodeOf(int status)
{
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Appends what can be read now; false at the end of the stream.
bool readSome(int descriptor, std::string& text)
{
    std::array<char, 4096> buffer;
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count > 0)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

} // namespace

ProcessResult runProcess(const std::vector<std::string>& words, const EnvironmentChanges& environment)
{
    const Pipe output;
    const Pipe error;
    const pid_t pid = start(words, environment, output.writing, error.writing);
    close(output.writing);
    close(error.writing);

    ProcessResult result;
    std::array<pollfd, 2> sources{pollfd{output.reading, POLLIN, 0}, pollfd{error.reading, POLLIN, 0}};
    while (sources[0].fd >= 0 || sources[1].fd >= 0) {
        poll(sources.data(), sources.size(), -1);
        if (sources[0].revents && !readSome(output.reading, result.output))
            sources[0].fd = -1;
        if (sources[1].revents && !readSome(error.reading, result.error))
            sources[1].fd = -1;
    }
    close(output.reading);
    close(error.reading);
    int status = 0;
    waitpid(pid, &status, 0);
    result.exitCode = exitCodeOf(status);
    return result;
}

BackgroundProcess::BackgroundProcess(
    const std::vector<std::string>& words, const EnvironmentChanges& environment)
{
    const Pipe output;
    _pid = start(words, environment, output.writing, -1);
    close(output.writing);
    _output = output.reading;
}

BackgroundProcess::~BackgroundProcess()
{
    if (!_exitCode) {
        kill(_pid, SIGTERM);
        if (!waitForExit(5)) {
            kill(_pid, SIGKILL);
            waitpid(_pid, nullptr, 0);
        }
    }
    close(_output);
}

std::string BackgroundProcess::readLine(double seconds)
{
    const auto deadline = Clock::now() + std::chrono::duration<double>(seconds);
    for (;;) {
        if (const auto end = _pending.find('\n'); end != std::string::npos) {
            std::string line = _pending.substr(0, end);
            _pending.erase(0, end + 1);
            return line;
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd source{_output, POLLIN, 0};
        if (left <= 0 || poll(&source, 1, static_cast<int>(left)) <= 0 || !readSome(_output, _pending))
            return {};
    }
}

std::optional<int> BackgroundProcess::waitForExit(double seconds)
{
    const auto deadline = Clock::now() + std::chrono::duration<double>(seconds);
    while (!_exitCode) {
        int status = 0;
        if (waitpid(_pid, &status, WNOHANG) == _pid)
            _exitCode = exitCodeOf(status);
        else if (Clock::now() >= deadline)
            return std::nullopt;
        else
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return _exitCode;
}
