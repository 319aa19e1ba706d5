#include "Foundation/ExecutablePath.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

TEST(ExecutablePath, IsWhereTheKernelsLinkPoints)
{
    EXPECT_EQ(executablePath(), fs::read_symlink("/proc/self/exe"));
    EXPECT_EQ(executablePath().filename(), "FoundationTests");
}

TEST(ExecutablePath, OfAReplacedFileLacksTheKernelsMark)
{
    const TemporaryFolder folder;
    const fs::path link = folder.file("exe");
    fs::create_symlink("/bin/program (deleted)", link);
    EXPECT_EQ(executablePath(link), "/bin/program");
    fs::remove(link);
    fs::create_symlink("/bin/program (deleted) indeed", link);
    EXPECT_EQ(executablePath(link), "/bin/program (deleted) indeed");
}

TEST(ExecutablePath, IsTheOneTheProgramWasStartedWithWithoutProc)
{
    const TemporaryFolder folder;
    const fs::path path = executablePath(folder.file("missing"));
    EXPECT_TRUE(path.is_absolute()) << path;
    EXPECT_TRUE(fs::equivalent(path, executablePath())) << path;
}
