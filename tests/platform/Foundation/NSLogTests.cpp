#include <Foundation/Foundation.h>

#include "Foundation/testing/NSLogCapture.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <regex>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

/// A datagram socket that takes messages in the journal's place.
class FakeJournal {
public:
    explicit FakeJournal(const std::string& path)
        : _descriptor(socket(AF_UNIX, SOCK_DGRAM, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(bind(_descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    FakeJournal(const FakeJournal&) = delete;
    FakeJournal& operator=(const FakeJournal&) = delete;
    ~FakeJournal() { close(_descriptor); }

    std::string receive() const
    {
        char datagram[4096];
        const ssize_t length = recv(_descriptor, datagram, sizeof datagram, MSG_DONTWAIT);
        return length < 0 ? std::string() : std::string(datagram, static_cast<std::size_t>(length));
    }

private:
    int _descriptor;
};

} // namespace

TEST(NSLog, FormatsAndCanBeCaptured)
{
    const NSLogCapture capture;
    NSLog("%@ is %d", "answer", 42);
    NSLog("plain");
    NSLog(nullptr);
    EXPECT_EQ(capture.messages(), (std::vector<std::string>{"answer is 42", "plain"}));
}

TEST(NSLog, WritesALineToStandardErrorBehindDateProgramAndThread)
{
    testing::internal::CaptureStderr();
    NSLog("Grüße %d", 7);
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(std::regex_match(
        line, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{6} \S+\[\d+:\d+\] Grüße 7\n)")))
        << line;
}

TEST(NSLog, WritesToTheJournalWhereThereIsOne)
{
    const TemporaryFolder folder;
    const FakeJournal journal(folder.file("socket"));
    const JournalSocketPath path(folder.file("socket"));
    testing::internal::CaptureStderr();
    NSLog("two\nlines");
    testing::internal::GetCapturedStderr();
    const std::string length("\x09\0\0\0\0\0\0\0", 8);
    const std::string datagram = journal.receive();
    EXPECT_EQ(datagram.substr(0, 26), "MESSAGE\n" + length + "two\nlines\n");
    EXPECT_NE(datagram.find("PRIORITY\n"), std::string::npos);
    EXPECT_NE(datagram.find("SYSLOG_IDENTIFIER\n"), std::string::npos);
}

TEST(NSLog, MessagesOfSeveralThreadsStayWhole)
{
    const NSLogCapture capture;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([i] {
            for (int k = 0; k < 100; ++k)
                NSLog("%d %d", i, k);
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(capture.messages().size(), 400U);
}

TEST(NSLog, AMissingJournalIsSilent)
{
    const TemporaryFolder folder;
    const JournalSocketPath path(folder.file("missing"));
    testing::internal::CaptureStderr();
    NSLog("alone");
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 1);
    EXPECT_TRUE(written.ends_with(" alone\n"));
}

TEST(NSLog, DoesNotWriteToTheJournalTwice)
{
    const TemporaryFolder folder;
    const FakeJournal journal(folder.file("socket"));
    const JournalSocketPath path(folder.file("socket"));
    testing::internal::CaptureStderr();
    struct stat info { };
    ASSERT_EQ(fstat(STDERR_FILENO, &info), 0);
    // This is how a service learns that its standard error is the journal.
    setenv("JOURNAL_STREAM", (std::to_string(info.st_dev) + ":" + std::to_string(info.st_ino)).c_str(), 1);
    NSLog("once");
    setenv("JOURNAL_STREAM", "1:1", 1); // another stream's
    NSLog("twice");
    unsetenv("JOURNAL_STREAM");
    testing::internal::GetCapturedStderr();
    EXPECT_NE(journal.receive().find("twice"), std::string::npos);
    EXPECT_EQ(journal.receive(), "");
}

TEST(NSLog, WritesMessagesOfAnyLengthToStandardError)
{
    const TemporaryFolder folder;
    const FakeJournal journal(folder.file("socket"));
    const JournalSocketPath path(folder.file("socket"));
    testing::internal::CaptureStderr();
    NSLog("%@", NSString(std::string(1 << 20, 'x'))); // longer than a datagram can be
    EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with(std::string(1 << 20, 'x') + "\n"));
    EXPECT_EQ(journal.receive(), "");
}
