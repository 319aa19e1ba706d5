// User defaults that several processes write, or one that is killed.

#include "NSUserDefaultsTest.h"

#include "Foundation/testing/NSLogCapture.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

/// A DefaultsWriter at work, whose output can be read.
class Writer {
public:
    explicit Writer(std::vector<std::string> arguments)
    {
        int ends[2];
        if (pipe(ends) != 0)
            throw std::runtime_error("no pipe");
        const std::string program =
            (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "DefaultsWriter").string();
        std::vector<char*> argv{const_cast<char*>(program.c_str())};
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        const int failure = posix_spawn(&_process, program.c_str(), &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        _output = fdopen(ends[0], "r");
        if (failure != 0)
            throw std::runtime_error("cannot start " + program);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { std::fclose(_output); }

    std::string readLine()
    {
        char line[256] = "";
        return std::fgets(line, sizeof line, _output) ? line : "";
    }
    std::string readAll()
    {
        std::string all;
        for (std::string line = readLine(); !line.empty(); line = readLine())
            all += line;
        return all;
    }
    void kill() { ::kill(_process, SIGKILL); }
    /// How the process ended, as `waitpid` tells it.
    int wait()
    {
        int status = 0;
        waitpid(_process, &status, 0);
        return status;
    }

private:
    pid_t _process = 0;
    std::FILE* _output = nullptr;
};

} // namespace

TEST_F(NSUserDefaultsTest, EveryTypeComesBackInAFreshProcess)
{
    Writer writer({path, "typed"});
    EXPECT_EQ(writer.wait(), 0);
    Writer reader({path, "describe"});
    EXPECT_EQ(reader.readAll(), R"(yes = bool true
no = bool false
one = integer 1
least = integer -9223372036854775808
most = integer 9223372036854775807
real one = double 0x1p+0
inexact = double 0x1.3333333333334p-2
minus zero = double -0x0p+0
tiny = double 0x0.0000000000001p-1022
huge = double 0x1.fffffffffffffp+1023
infinite = double -inf
nan = double nan
empty text = text
text = text 20 61 20 3c 62 3e 20 26 20 22 63 22 9 a e9 20
controls = text 0 1 1b d a
half a character = text d800 20 ffff
date = date 0x1.d6f3454p+26
fine date = date -0x1.3333333333333p-2
far date = date 0x1.c6bf52634p+49
data = data 0 ff 7f
no data = data
no array = []
nested = [{list:[integer 7,text 78,],none:{},},]
odd key = text 76 61 6c 75 65
)");
    EXPECT_EQ(reader.wait(), 0);
}

TEST_F(NSUserDefaultsTest, ProcessThatIsKilledRightAfterSettingLosesNothing)
{
    for (int i = 0; i < 20; ++i) {
        Writer writer({path, "die", "key" + std::to_string(i), std::to_string(i)});
        const int status = writer.wait();
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    }
    startAnew();
    for (int i = 0; i < 20; ++i) {
        const auto number = defaults().objectForKey(NSString("key" + std::to_string(i)));
        ASSERT_TRUE(number) << i;
        EXPECT_TRUE(number->isEqual(NSNumber::numberWithInteger(i).get()));
    }
}

TEST_F(NSUserDefaultsTest, ProcessThatIsKilledWhileWritingDamagesNothing)
{
    const std::string text(8'000, 'x'); // long enough to be caught writing
    std::string prefix = "k";
    for (int round = 0; round < 10; ++round) {
        prefix += 'k';
        Writer writer({path, "set", prefix, "40", text});
        for (int i = 0; i <= round; ++i)
            writer.readLine();
        std::this_thread::sleep_for(std::chrono::microseconds(137 * round)); // somewhere in the next one
        writer.kill();
        writer.wait();
        startAnew();
        const NSLogCapture log;
        for (int i = 0; i <= round; ++i)
            EXPECT_TRUE(defaults().dictionaryForKey(NSString(prefix + std::to_string(i))))
                << round << " " << i;
        EXPECT_TRUE(log.messages().empty());
    }
    defaults().setInteger(1, "last");
    EXPECT_EQ(otherFiles(folder), std::vector<std::string>());
}

TEST_F(NSUserDefaultsTest, TemporaryFileOfAKilledProcessIsTidied)
{
    folder.write("app.plist.tmp", "<plist><dict><key>half");
    defaults().setInteger(1, "key");
    EXPECT_EQ(otherFiles(folder), std::vector<std::string>());
    startAnew();
    EXPECT_EQ(defaults().integerForKey("key"), 1);
}

TEST_F(NSUserDefaultsTest, TwoProcessesThatWriteDifferentKeysLoseNothing)
{
    Writer a({path, "set", "a", "200", ""});
    Writer b({path, "set", "b", "200", ""});
    a.readAll();
    b.readAll();
    EXPECT_EQ(a.wait(), 0);
    EXPECT_EQ(b.wait(), 0);
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(defaults().objectForKey(NSString("a" + std::to_string(i)))) << i;
        EXPECT_TRUE(defaults().objectForKey(NSString("b" + std::to_string(i)))) << i;
    }
}

TEST_F(NSUserDefaultsTest, ThreadsThatWriteDifferentKeysLoseNothing)
{
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 20; ++i) {
                defaults().setInteger(i, NSString(std::to_string(t) + "/" + std::to_string(i)));
                defaults().objectForKey("0/0");
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    startAnew();
    for (int t = 0; t < 4; ++t) {
        for (int i = 0; i < 20; ++i)
            EXPECT_TRUE(defaults().objectForKey(NSString(std::to_string(t) + "/" + std::to_string(i))));
    }
}

TEST_F(NSUserDefaultsTest, ChangesOfAnotherProcessShowAfterSynchronizing)
{
    defaults().setInteger(1, "mine");
    Writer other({path, "set", "theirs", "1", "hello"});
    EXPECT_EQ(other.wait(), 0);
    EXPECT_FALSE(defaults().objectForKey("theirs0"));
    EXPECT_TRUE(defaults().synchronize());
    EXPECT_TRUE(defaults().objectForKey("theirs0"));
    EXPECT_EQ(defaults().integerForKey("mine"), 1);
}

TEST_F(NSUserDefaultsTest, SettingMergesWhatAnotherProcessWrote)
{
    defaults().setInteger(1, "mine");
    Writer other({path, "set", "theirs", "1", "hello"});
    EXPECT_EQ(other.wait(), 0);
    defaults().setInteger(2, "mine");
    EXPECT_TRUE(defaults().objectForKey("theirs0"));
    startAnew();
    EXPECT_TRUE(defaults().objectForKey("theirs0"));
    EXPECT_EQ(defaults().integerForKey("mine"), 2);
}

TEST_F(NSUserDefaultsTest, FileThatWasRemovedCountsAsEmpty)
{
    defaults().setInteger(1, "old");
    std::filesystem::remove(path);
    defaults().setInteger(2, "new");
    EXPECT_FALSE(defaults().objectForKey("old"));
    EXPECT_EQ(defaults().integerForKey("new"), 2);
}

TEST_F(NSUserDefaultsTest, ChangeInPlaceIsNoticed)
{
    defaults().setObject("before", "key");
    std::string content = contentOf(path);
    content.replace(content.find("before"), 6, "AFTER!");
    std::ofstream(path, std::ios::binary) << content; // the same file, the same size
    struct timespec times[2] = {{}, {12345, 678}};
    utimensat(AT_FDCWD, path.c_str(), times, 0); // whatever the clock of the file system
    EXPECT_TRUE(defaults().synchronize());
    EXPECT_EQ(defaults().stringForKey("key"), NSString("AFTER!"));
}
