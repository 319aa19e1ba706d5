#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace fs = std::filesystem;

namespace {

const std::string kScript = KORVID_SOURCE_FOLDER "/korvid";

void writeProgram(const std::string& path, const std::string& lines)
{
    std::ofstream(path) << "#!/bin/bash\n" << lines;
    fs::permissions(path, fs::perms::owner_all);
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// A copy of the script in a project folder of its own whose name has spaces, on a machine where each program
/// that the script calls only writes down how it was called.
class ScriptOnAMachine : public testing::Test {
protected:
    void SetUp() override
    {
        fs::create_directories(root() / "examples/gallery");
        fs::create_directories(programs());
        fs::copy_file(kScript, root() / "korvid");
        machine.write("a project/CMakePresets.json", "{}");

        for (const char* name :
            {"bash", "cat", "dirname", "env", "grep", "id", "mkdir", "nproc", "readlink", "touch"})
            fs::create_symlink(fs::exists(fs::path("/usr/bin") / name) ? fs::path("/usr/bin") / name
                                                                       : fs::path("/bin") / name,
                programs() / name);

        // Configuring leaves a build folder; building leaves a gallery that tells its words.
        writeProgram(program("cmake"),
            "echo \"cmake $*\" >> \"$LOG\"\n"
            "if [[ $* == *--preset* ]]; then\n"
            "    mkdir -p build/release/bin\n"
            "    echo \"CMAKE_HOME_DIRECTORY:INTERNAL=$PWD\" > build/release/CMakeCache.txt\n"
            "    touch build/release/build.ninja\n"
            "    printf '%s\\n' '#!/bin/bash' 'echo \"in $PWD:\"; printf \"<%s>\" \"$@\"; exit 5' > "
            "build/release/bin/gallery\n"
            "    /bin/chmod +x build/release/bin/gallery\n"
            "fi\n");
        writeProgram(program("ctest"), "echo \"ctest $*\" >> \"$LOG\"\nexit \"${CTEST_RESULT:-0}\"\n");
    }

    /// Gives the machine apt and the packages named; "all" are all that are asked for.
    void addApt(const std::string& present)
    {
        writeProgram(program("dpkg-query"),
            "for name in \"${@:4}\"; do [[ ' " + present + " ' == *\" $name \"* || '" + present
                + "' == all ]] && printf '%s=installed ' \"$name\"; done\nexit 1\n");
        writeProgram(program("apt-get"), "echo \"apt-get $* ($DEBIAN_FRONTEND)\" >> \"$LOG\"\n");
        writeProgram(program("sudo"), "exec \"$@\"\n");
    }

    ProcessResult korvid(std::vector<std::string> words, const EnvironmentChanges& more = {})
    {
        words.insert(words.begin(), (root() / "korvid").string());
        EnvironmentChanges environment{
            {"PATH", programs().string()}, {"LOG", log()}, {"KORVID_PACKAGES", std::nullopt}};
        for (const auto& [name, value] : more)
            environment[name] = value;
        fs::remove(log());
        return runProcess(words, environment);
    }

    std::vector<std::string> calls() const
    {
        std::vector<std::string> lines;
        std::ifstream file(log());
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }

    fs::path root() const { return machine.path() / "a project"; }
    fs::path programs() const { return machine.path() / "programs"; }
    std::string program(const std::string& name) const { return (programs() / name).string(); }
    std::string log() const { return machine.file("log"); }

    TemporaryFolder machine;
};

} // namespace

TEST(Script, ExplainsItselfAndEachCommand)
{
    const auto all = runProcess({kScript, "--help"});
    EXPECT_EQ(all.exitCode, 0);
    for (const std::string command : {"gallery", "test", "bench", "sanitize", "fuzz", "format"}) {
        EXPECT_TRUE(contains(all.output, "\n  " + command + " ")) << all.output;
        const auto one = runProcess({kScript, command, "--help"});
        EXPECT_EQ(one.exitCode, 0) << command;
        EXPECT_EQ(one.output.find("Usage: ./korvid " + command), 0u) << one.output;
        EXPECT_EQ(one.error, "");
    }
}

TEST(Script, AnswersUnknownWordsWithItsUsageAndExitCode2)
{
    const std::vector<std::vector<std::string>> mistakes{{}, {"galery"}, {"--hlep"}, {"test", "--verbose"},
        {"test", "two", "words"}, {"sanitize", "--threads"}, {"format", "--chek"}, {"format", "--check", "x"},
        {"bench", "stroke"}};
    for (auto words : mistakes) {
        words.insert(words.begin(), kScript);
        const auto result = runProcess(words);
        EXPECT_EQ(result.exitCode, 2) << words.back();
        EXPECT_EQ(result.output, "") << words.back();
        EXPECT_EQ(result.error.find("korvid: "), 0u) << result.error;
        EXPECT_TRUE(contains(result.error, "\nUsage: ./korvid ")) << result.error;
    }
}

TEST(Script, ContinuousIntegrationRunsTheTestsTheSanitizersAndTheChecks)
{
    const std::string text = readProjectFile(".ci/run");
    EXPECT_TRUE(contains(text, "\n./korvid test\n./korvid sanitize\n./korvid format --check\n")) << text;
    EXPECT_TRUE(contains(readProjectFile("README.md"), "    ./korvid test "));
}

TEST_F(ScriptOnAMachine, NamesThePackagesWhereItCannotInstallThem)
{
    const auto result = korvid({"gallery"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(contains(result.error, "no apt")) << result.error;
    EXPECT_TRUE(contains(result.error, "qt6-base-dev libcairo2-dev")) << result.error;
    EXPECT_FALSE(contains(result.error, "clang-tidy")) << "only what this command needs: " << result.error;
    EXPECT_EQ(calls(), std::vector<std::string>{});
}

TEST_F(ScriptOnAMachine, BelievesThatThePackagesAreThereWhenToldSo)
{
    EXPECT_EQ(korvid({"gallery"}, {{"KORVID_PACKAGES", "present"}}).exitCode, 5);
}

TEST_F(ScriptOnAMachine, InstallsWhatIsMissingAndNothingElse)
{
    addApt("g++ cmake ninja-build pkg-config qt6-base-dev libcairo2-dev libpango1.0-dev fonts-liberation "
           "libqrcodegen-dev libhwy-dev");
    korvid({"gallery"});
    ASSERT_GE(calls().size(), 2u);
    EXPECT_EQ(calls()[0], "apt-get -q update (noninteractive)");
    EXPECT_EQ(
        calls()[1], "apt-get -q install -y --no-install-recommends libgtest-dev libx11-dev (noninteractive)");
}

TEST_F(ScriptOnAMachine, StopsWhenAPackageCannotBeInstalled)
{
    addApt("");
    writeProgram(program("apt-get"), "echo \"apt-get $*\" >> \"$LOG\"\n[[ $* == *update* ]]\n");
    const auto result = korvid({"test"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(contains(result.error, "korvid: apt-get could not install: g++ cmake ")) << result.error;
    EXPECT_EQ(calls().size(), 2u);
}

TEST_F(ScriptOnAMachine, BuildsThenHandsTheWordsToTheGalleryInTheCallersFolder)
{
    addApt("all");
    const auto result = korvid({"gallery", "--qr", "two  words", ""});
    EXPECT_EQ(result.output, "in " + fs::current_path().string() + ":\n<--qr><two  words><>");
    EXPECT_EQ(result.exitCode, 5);
    ASSERT_EQ(calls().size(), 2u);
    EXPECT_EQ(calls()[0], "cmake --fresh --preset release --log-level=WARNING");
    EXPECT_EQ(calls()[1].find("cmake --build " + (root() / "build/release").string() + " "), 0u)
        << calls()[1];
    EXPECT_TRUE(calls()[1].ends_with(" --target gallery")) << calls()[1];
}

TEST_F(ScriptOnAMachine, ConfiguresOnlyOnceUnlessThePresetsOrThePlaceChange)
{
    addApt("all");
    const auto configures = [this] {
        korvid({"gallery"});
        return contains(calls().at(0), "--preset");
    };
    EXPECT_TRUE(configures());
    EXPECT_FALSE(configures());

    fs::last_write_time(root() / "CMakePresets.json",
        fs::last_write_time(root() / "build/release/build.ninja") + std::chrono::seconds(1));
    EXPECT_TRUE(configures());
    fs::last_write_time(root() / "CMakePresets.json",
        fs::last_write_time(root() / "build/release/build.ninja") - std::chrono::seconds(1));
    EXPECT_FALSE(configures());

    machine.write("a project/build/release/CMakeCache.txt", "CMAKE_HOME_DIRECTORY:INTERNAL=/elsewhere\n");
    EXPECT_TRUE(configures());
}

TEST_F(ScriptOnAMachine, RunsTheThreadSanitizerAtFixedAddressesWhereItMayAskForThem)
{
    addApt("all");
    fs::create_symlink("/bin/true", programs() / "true");
    const std::string call = "echo \"setarch $*\" >> \"$LOG\"\n[[ $1 == --addr-no-randomize ]] && shift && ";

    writeProgram(program("setarch"), call + "exec \"$@\"\n");
    EXPECT_EQ(korvid({"sanitize", "--thread"}).exitCode, 0);
    EXPECT_TRUE(contains(calls().at(calls().size() - 2), "setarch --addr-no-randomize ctest "));
    EXPECT_TRUE(calls().back().starts_with("ctest --preset tsan ")) << calls().back();
    EXPECT_EQ(korvid({"sanitize"}).exitCode, 0);
    for (const std::string& each : calls())
        EXPECT_FALSE(contains(each, "setarch")) << "only the thread sanitizer needs it: " << each;

    writeProgram(program("setarch"), call + "exit 1\n");
    EXPECT_EQ(korvid({"sanitize", "--thread"}).exitCode, 0);
    EXPECT_TRUE(calls().back().starts_with("ctest --preset tsan ")) << calls().back();
    EXPECT_EQ(calls().at(calls().size() - 2), "setarch --addr-no-randomize true");

    fs::remove(program("setarch"));
    EXPECT_EQ(korvid({"sanitize", "--thread"}).exitCode, 0);
    EXPECT_TRUE(calls().back().starts_with("ctest --preset tsan ")) << calls().back();
}

TEST_F(ScriptOnAMachine, FailsWhenTestsFail)
{
    addApt("all");
    EXPECT_EQ(korvid({"test", "QR"}).exitCode, 0);
    EXPECT_TRUE(calls().back().starts_with("ctest --preset release ")) << calls().back();
    EXPECT_TRUE(calls().back().ends_with(" --tests-regex QR")) << calls().back();

    const auto result = korvid({"test"}, {{"CTEST_RESULT", "8"}});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "korvid: tests failed in build/release\n");
}
