#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

/// The script that records the exported symbols, on copies of the record.
class SymbolRecord : public testing::Test {
protected:
    static std::string committed() { return readProjectFile("tests/project/symbols.txt"); }

    /// The committed record as if it were of `version`, without its last symbol, or with one more.
    static std::string recordOf(const std::string& version, bool lacksLast, bool hasOneMore)
    {
        std::string text = committed();
        text.replace(0, text.find('\n'), version);
        if (lacksLast)
            text.erase(text.rfind('\n', text.size() - 2) + 1);
        if (hasOneMore)
            text += "KorvidPlatform: zzzRemoved(int)\n";
        return text;
    }

    ProcessResult compare(const std::string& text, const std::string& version = KORVID_VERSION)
    {
        return run({}, text, version);
    }

    ProcessResult write(const std::string& text, const std::string& version)
    {
        return run({"--write"}, text, version);
    }

    std::string written() const { return runProcess({"cat", record}).output; }

    TemporaryFolder folder;
    std::string record = folder.file("symbols.txt");

private:
    ProcessResult run(std::vector<std::string> words, const std::string& text, const std::string& version)
    {
        folder.write("symbols.txt", text);
        words.insert(words.begin(), KORVID_SOURCE_FOLDER "/tests/project/symbols.sh");
        words.insert(words.end(), {KORVID_BUILD_FOLDER "/lib", version, record});
        return runProcess(words);
    }
};

} // namespace

TEST_F(SymbolRecord, IsThatOfTheLibraries)
{
    const auto result = compare(committed());
    EXPECT_EQ(result.exitCode, 0) << result.error;
}

TEST_F(SymbolRecord, BeginsWithTheVersionAndListsFunctionsClassesAndConstants)
{
    const std::string text = committed();
    EXPECT_TRUE(text.starts_with(KORVID_VERSION "\n"));
    for (const char* symbol : {"KorvidAppKit: perlin2d", "KorvidAppKit: vtable for ZRQRView",
             "KorvidPlatform: NSView::setNeedsDisplay(bool)", "KorvidPlatform: NSFontAttributeName"})
        EXPECT_NE(text.find("\n" + std::string(symbol) + "\n"), std::string::npos) << symbol;
}

TEST_F(SymbolRecord, LacksWhatIsExportedForTestsOnly)
{
    EXPECT_EQ(committed().find("setApplicationAppearance"), std::string::npos);
}

TEST_F(SymbolRecord, RefusesSymbolsThatComeOrGoWithoutANewVersion)
{
    const auto more = compare(recordOf(KORVID_VERSION, true, false));
    EXPECT_EQ(more.exitCode, 1);
    EXPECT_TRUE(more.error.starts_with("+ KorvidQt: ")) << more.error;
    EXPECT_NE(more.error.find("raise the version"), std::string::npos) << more.error;

    const auto fewer = compare(recordOf(KORVID_VERSION, false, true));
    EXPECT_EQ(fewer.exitCode, 1);
    EXPECT_TRUE(fewer.error.starts_with("- KorvidPlatform: zzzRemoved(int)\n")) << fewer.error;
}

TEST_F(SymbolRecord, IsRecordedAnewForEachVersion)
{
    const auto result = compare(committed(), "9.0.0");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error,
        "symbols: the record is of version '" KORVID_VERSION
        "', not 9.0.0: './korvid symbols --write' records it anew\n");

    EXPECT_EQ(write(committed(), "9.0.0").exitCode, 0);
    EXPECT_TRUE(written() == recordOf("9.0.0", false, false));
}

TEST_F(SymbolRecord, TakesNewSymbolsWithAnyNewVersion)
{
    const std::string old = recordOf("0.3.4", true, false);
    EXPECT_EQ(write(old, "0.3.4").exitCode, 1);
    EXPECT_EQ(write(old, "0.3.3").exitCode, 1);
    EXPECT_TRUE(written() == old);
    EXPECT_EQ(write(old, "0.3.5").exitCode, 0);
    EXPECT_TRUE(written() == recordOf("0.3.5", false, false));
    EXPECT_EQ(write(recordOf("1.9.0", true, false), "1.10.0").exitCode, 0);
}

TEST_F(SymbolRecord, LosesSymbolsOnlyWithAVersionThatChangesTheLibrariesNames)
{
    const std::string early = recordOf("0.3.4", false, true);
    const auto refused = write(early, "0.3.5");
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.error.find("raise the second number"), std::string::npos) << refused.error;
    EXPECT_TRUE(written() == early);
    EXPECT_EQ(write(early, "0.4.0").exitCode, 0);

    const std::string late = recordOf("1.3.4", false, true);
    const auto refusedLate = write(late, "1.4.0");
    EXPECT_EQ(refusedLate.exitCode, 1);
    EXPECT_NE(refusedLate.error.find("raise the first number"), std::string::npos) << refusedLate.error;
    EXPECT_EQ(write(late, "2.0.0").exitCode, 0);
}

TEST_F(SymbolRecord, RefusesFoldersWithoutTheLibraries)
{
    folder.write("symbols.txt", committed());
    const auto result =
        runProcess({KORVID_SOURCE_FOLDER "/tests/project/symbols.sh", folder.path(), KORVID_VERSION, record});
    EXPECT_NE(result.exitCode, 0);
}
