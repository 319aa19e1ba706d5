#include <Foundation/NSLog.h>

#include "Foundation/testing/NSLogCapture.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>
#include <optional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr const char* kJournalSocket = "/run/systemd/journal/socket";

/// Receives messages; guarded by `logMutex`.
struct LogState {
    std::string journalSocket = kJournalSocket;
    std::optional<std::vector<std::string>> captured;
};

std::mutex logMutex;

LogState& logState()
{
    // Never destroyed: objects that are destroyed as the process ends may still log.
    static LogState* const state = new LogState;
    return *state;
}

/// "2026-01-31 12:00:00.123456 program[pid:thread] "
std::string linePrefix()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    std::tm fields{};
    localtime_r(&now.tv_sec, &fields);
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &fields);
    char prefix[320];
    std::snprintf(prefix, sizeof prefix, "%s.%06ld %s[%d:%d] ", date, now.tv_nsec / 1000,
        program_invocation_short_name, getpid(), gettid());
    return prefix;
}

void writeToStandardError(const std::string& message)
{
    // One write, so that the lines of several processes do not mix.
    const std::string line = linePrefix() + message + "\n";
    const char* at = line.data();
    std::size_t left = line.size();
    while (left > 0) {
        const ssize_t count = write(STDERR_FILENO, at, left);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return; // nowhere to report it
        at += count;
        left -= static_cast<std::size_t>(count);
    }
}

/// True when standard error is the journal itself, which sets a variable in the environment.
bool journalTakesStandardError()
{
    const char* stream = std::getenv("JOURNAL_STREAM");
    struct stat info { };
    if (!stream || fstat(STDERR_FILENO, &info) != 0)
        return false;
    return std::to_string(info.st_dev) + ":" + std::to_string(info.st_ino) == stream;
}

/// A field of the journal's datagrams. Values may hold newlines, so their length precedes them.
void appendField(std::string& datagram, const char* name, const std::string& value)
{
    datagram += name;
    datagram += '\n';
    for (std::size_t i = 0, length = value.size(); i < 8; ++i, length >>= 8)
        datagram += static_cast<char>(length & 0xFF);
    datagram += value;
    datagram += '\n';
}

void writeToJournal(const std::string& socketPath, const std::string& message)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketPath.size() >= sizeof address.sun_path || journalTakesStandardError())
        return;
    std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size() + 1);
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        return;
    std::string datagram;
    appendField(datagram, "MESSAGE", message);
    appendField(datagram, "PRIORITY", "6");
    appendField(datagram, "SYSLOG_IDENTIFIER", program_invocation_short_name);
    // A journal that is missing or busy costs the program nothing: the message is on standard error.
    sendto(descriptor, datagram.data(), datagram.size(), MSG_NOSIGNAL,
        reinterpret_cast<const sockaddr*>(&address), sizeof address);
    close(descriptor);
}

} // namespace

void NSLogMessage(const NSString& message)
{
    if (message.isNull())
        return;
    std::string text = message.UTF8String();
    const std::lock_guard guard(logMutex);
    LogState& state = logState();
    if (state.captured) {
        state.captured->push_back(std::move(text));
        return;
    }
    writeToStandardError(text);
    writeToJournal(state.journalSocket, text);
}

NSLogCapture::NSLogCapture()
{
    const std::lock_guard guard(logMutex);
    logState().captured.emplace();
}

NSLogCapture::~NSLogCapture()
{
    const std::lock_guard guard(logMutex);
    logState().captured.reset();
}

std::vector<std::string> NSLogCapture::messages() const
{
    const std::lock_guard guard(logMutex);
    return *logState().captured;
}

JournalSocketPath::JournalSocketPath(std::string path)
{
    const std::lock_guard guard(logMutex);
    logState().journalSocket = std::move(path);
}

JournalSocketPath::~JournalSocketPath()
{
    const std::lock_guard guard(logMutex);
    logState().journalSocket = kJournalSocket;
}
