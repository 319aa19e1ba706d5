#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

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

/// A copy of the script in a project folder whose name has spaces, on a machine where each program that the
/// script calls only logs its call.
class ScriptOnAMachine : public testing::Test {
protected:
    void SetUp() override
    {
        fs::create_directories(root() / "examples/gallery");
        fs::create_directories(programs());
        fs::copy_file(kScript, root() / "korvid");
        machine.write("a project/CMakePresets.json", "{}");

        for (const char* name : {"bash", "cat", "dirname", "env", "find", "grep", "id", "mkdir", "nproc",
                 "readlink", "sed", "touch", "xargs"})
            fs::create_symlink(fs::exists(fs::path("/usr/bin") / name) ? fs::path("/usr/bin") / name
                                                                       : fs::path("/bin") / name,
                programs() / name);

        // Configuring leaves a build folder with a gallery that prints its arguments.
        writeProgram(program("cmake"),
            "echo \"cmake $*\" >> \"$LOG\"\n"
            "if [[ $* == *--preset* ]]; then\n"
            "    mkdir -p build/release/bin\n"
            "    [[ $3 == gallery ]] && tests=OFF || tests=ON\n"
            "    printf '%s\\n' \"CMAKE_HOME_DIRECTORY:INTERNAL=$PWD\" KORVID_TESTS:BOOL=$tests"
            " > build/release/CMakeCache.txt\n"
            "    touch build/release/build.ninja\n"
            "    printf '%s\\n' '#!/bin/bash' 'echo \"in $PWD:\"; printf \"<%s>\" \"$@\"; exit 5' > "
            "build/release/bin/korvid-gallery\n"
            "    /bin/chmod +x build/release/bin/korvid-gallery\n"
            "fi\n");
        writeProgram(program("ctest"), "echo \"ctest $*\" >> \"$LOG\"\nexit \"${CTEST_RESULT:-0}\"\n");
    }

    /// Gives the machine apt and these packages; "all" are all that the script asks for.
    void addApt(const std::string& present)
    {
        writeProgram(program("dpkg-query"),
            "for name in \"${@:4}\"; do [[ ' " + present + " ' == *\" $name \"* || '" + present
                + "' == all ]] && printf '%s=installed ' \"$name\"; done\nexit 1\n");
        writeProgram(program("apt-get"),
            "echo \"apt-get $* ($DEBIAN_FRONTEND)\" >> \"$LOG\"\n"
            "[[ $* == *--assume-no* ]] || exit 0\n"
            "echo 'Need to get 1,234 kB/2,345 kB of archives.'\n"
            "echo 'After this operation, 5.6 MB of additional disk space will be used.'\n"
            "exit 1\n");
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

    /// Gives the machine the tools of the command format, one source, and a git that prints `changes`.
    void addFormatter(const std::string& version, const std::string& changes = "")
    {
        for (const char* folder : {"include", "src", "platform", "qt", "examples", "tests", "benchmarks"})
            fs::create_directories(root() / folder);
        machine.write("a project/src/source file.cpp", "int main() { }\n");
        const std::string call = "echo \"${0##*/} $*\" >> \"$LOG\"\n";
        writeProgram(program("clang-format"),
            "[[ $1 == --version ]] && echo 'Debian clang-format version " + version + "' || " + call);
        writeProgram(program("git"), call + "echo -n '" + changes + "'\n[[ -z '" + changes + "' ]]\n");
        writeProgram(program("shellcheck"), call);
    }

    /// Redirects a system path in the script to another one.
    void moveSystemPath(const std::string& path, const std::string& newPath)
    {
        std::string text = readProjectFile("korvid");
        const auto at = text.find(path);
        ASSERT_NE(at, std::string::npos);
        machine.write("a project/korvid", text.replace(at, path.size(), newPath));
    }

    fs::path root() const { return machine.path() / "a project"; }
    fs::path programs() const { return machine.path() / "programs"; }
    std::string program(const std::string& name) const { return (programs() / name).string(); }
    std::string log() const { return machine.file("log"); }

    TemporaryFolder machine;
};

} // namespace

TEST(Script, PrintsHelpForItselfAndEachCommand)
{
    const auto all = runProcess({kScript, "--help"});
    EXPECT_EQ(all.exitCode, 0);
    for (const std::string command : {"gallery", "pictures", "test", "bench", "sanitize", "fuzz", "soak",
             "format", "docs", "packages", "symbols"}) {
        EXPECT_TRUE(contains(all.output, "\n  " + command + " ")) << all.output;
        const auto one = runProcess({kScript, command, "--help"});
        EXPECT_EQ(one.exitCode, 0) << command;
        EXPECT_EQ(one.output.find("Usage: ./korvid " + command), 0u) << one.output;
        EXPECT_EQ(one.error, "");
    }
}

TEST(Script, PrintsItsUsageAndExitsWith2OnUnknownArguments)
{
    const std::vector<std::vector<std::string>> mistakes{{}, {"galery"}, {"--hlep"}, {"test", "--verbose"},
        {"test", "two", "words"}, {"sanitize", "--threads"}, {"format", "--chek"}, {"format", "--check", "x"},
        {"packages", "bookworm"}, {"packages", "--check"}, {"docs", "--chek"}, {"pictures", "qr"},
        {"symbols", "--wite"}, {"fuzz", "pats"}, {"fuzz", "paths", "long"}, {"soak", "--seed"},
        {"soak", "1", "2"}, {"bench", "stroke"}, {"bench", "--write", "--benchmark_filter=stroke"}};
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
    EXPECT_TRUE(contains(
        text, "\n./korvid test\n./korvid sanitize\n./korvid format --check\n./korvid docs --check\n"))
        << text;
    EXPECT_TRUE(contains(readProjectFile("README.md"), "    ./korvid test "));
}

TEST_F(ScriptOnAMachine, ListsThePackagesWhereItCannotInstallThem)
{
    const auto result = korvid({"gallery"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(contains(result.error, "no apt")) << result.error;
    EXPECT_TRUE(contains(result.error, "qt6-base-dev libcairo2-dev")) << result.error;
    EXPECT_FALSE(contains(result.error, "clang-tidy")) << "only what this command needs: " << result.error;
    EXPECT_EQ(calls(), std::vector<std::string>{});
}

TEST_F(ScriptOnAMachine, SkipsTheInstallationWhenThePackagesAreDeclaredPresent)
{
    EXPECT_EQ(korvid({"gallery"}, {{"KORVID_PACKAGES", "present"}}).exitCode, 5);
}

TEST_F(ScriptOnAMachine, InstallsOnlyMissingPackages)
{
    addApt("g++ cmake ninja-build pkg-config qt6-base-dev libcairo2-dev libpango1.0-dev libqpdf-dev "
           "libfreetype-dev libjpeg-dev libpng-dev libqrcodegen-dev fonts-liberation fonts-dejavu-core "
           "fonts-noto-color-emoji");
    korvid({"gallery"});
    ASSERT_GE(calls().size(), 3u);
    const std::string install = "--no-install-recommends libhwy-dev fonts-droid-fallback (noninteractive)";
    EXPECT_EQ(calls()[0], "apt-get -q update (noninteractive)");
    EXPECT_EQ(calls()[1], "apt-get -q install --assume-no " + install);
    EXPECT_EQ(calls()[2], "apt-get -q install -y " + install);
}

TEST_F(ScriptOnAMachine, ListsThePackagesAndTheirSizeBeforeInstallingThem)
{
    addApt("");
    const auto result = korvid({"gallery"});
    EXPECT_TRUE(contains(result.error, "korvid: missing packages: g++ cmake ninja-build ")) << result.error;
    EXPECT_TRUE(contains(result.error, "download 1,234 kB/2,345 kB, on disk 5.6 MB\n")) << result.error;
}

TEST_F(ScriptOnAMachine, InstallsEvenIfAptReportsNoSize)
{
    addApt("");
    writeProgram(program("apt-get"), "echo \"apt-get $*\" >> \"$LOG\"\n");
    const auto result = korvid({"gallery"});
    EXPECT_TRUE(contains(result.error, "download unknown, on disk unknown\n")) << result.error;
    EXPECT_TRUE(contains(calls().at(2), "install -y ")) << calls()[2];
}

TEST_F(ScriptOnAMachine, NeedsNoLibraryOfTheTestsForTheGallery)
{
    addApt("");
    korvid({"gallery"});
    EXPECT_FALSE(contains(calls().at(2), "libgtest-dev")) << calls()[2];
    EXPECT_FALSE(contains(calls().at(2), "libx11-dev")) << calls()[2];
    korvid({"test"});
    EXPECT_TRUE(contains(calls().at(2), "libgtest-dev libx11-dev")) << calls()[2];
}

TEST_F(ScriptOnAMachine, ExplainsWhatAptReportsWhereDevPtsIsNotMounted)
{
    addApt("");
    moveSystemPath("/dev/pts/ptmx", machine.file("ptmx"));
    EXPECT_TRUE(contains(korvid({"gallery"}).error, "korvid: /dev/pts is not mounted: apt will report"));
    machine.write("ptmx", "");
    EXPECT_FALSE(contains(korvid({"gallery"}).error, "/dev/pts"));
}

TEST_F(ScriptOnAMachine, StopsWhenAPackageCannotBeInstalled)
{
    addApt("");
    writeProgram(program("apt-get"), "echo \"apt-get $*\" >> \"$LOG\"\n[[ $* == *update* ]]\n");
    const auto result = korvid({"test"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(contains(result.error, "korvid: apt-get could not install: g++ cmake ")) << result.error;
    EXPECT_EQ(calls().size(), 3u);
}

TEST_F(ScriptOnAMachine, BuildsAndRunsTheGalleryWithItsArgumentsInTheCallersFolder)
{
    addApt("all");
    const auto result = korvid({"gallery", "--qr", "two  words", ""});
    EXPECT_EQ(result.output, "in " + fs::current_path().string() + ":\n<--qr><two  words><>");
    EXPECT_EQ(result.exitCode, 5);
    ASSERT_EQ(calls().size(), 2u);
    EXPECT_EQ(calls()[0], "cmake --fresh --preset gallery --log-level=WARNING");
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

TEST_F(ScriptOnAMachine, UsesOneBuildFolderForTheGalleryAndTheTests)
{
    addApt("all");
    const std::string folder = "cmake --build " + (root() / "build/release").string() + " ";
    korvid({"gallery"});
    EXPECT_TRUE(calls().at(1).starts_with(folder)) << calls()[1];

    korvid({"test"}); // configured without the tests so far
    EXPECT_EQ(calls().at(0), "cmake --fresh --preset release --log-level=WARNING");
    EXPECT_TRUE(calls().at(1).starts_with(folder)) << calls()[1];

    korvid({"gallery"});
    EXPECT_TRUE(calls().at(0).starts_with(folder)) << calls()[0];
    korvid({"test"});
    EXPECT_TRUE(calls().at(0).starts_with(folder)) << calls()[0];
}

TEST_F(ScriptOnAMachine, RunsNoTestsWithoutProc)
{
    addApt("all");
    moveSystemPath("/proc/self/exe", machine.file("exe"));
    const auto result = korvid({"test"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(
        contains(result.error, "korvid: /proc is not mounted, and tests need it; as root, run: mount "))
        << result.error;
    EXPECT_EQ(calls(), std::vector<std::string>{}) << "told before anything is installed or built";
    machine.write("exe", "");
    EXPECT_EQ(korvid({"test"}).exitCode, 0);
}

TEST_F(ScriptOnAMachine, RunsTheThreadSanitizerAtFixedAddressesWherePermitted)
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

TEST_F(ScriptOnAMachine, BuildsThePagesOfTheDocumentationAndChecksThem)
{
    addApt("all");
    fs::create_directories(root() / "docs/api");
    writeProgram(
        (root() / "docs/api/pages.sh").string(), "echo \"pages $*\" >> \"$LOG\"\n[[ $1 != $FAULTY ]]\n");
    EXPECT_EQ(korvid({"docs"}, {{"FAULTY", "none"}}).exitCode, 0);
    EXPECT_EQ(calls(), std::vector<std::string>{"pages build"});
    EXPECT_EQ(korvid({"docs", "--check"}, {{"FAULTY", "none"}}).exitCode, 0);
    EXPECT_EQ(calls(), (std::vector<std::string>{"pages build", "pages check"}));

    const auto unbuilt = korvid({"docs", "--check"}, {{"FAULTY", "build"}});
    EXPECT_EQ(unbuilt.exitCode, 1);
    EXPECT_TRUE(contains(unbuilt.error, "korvid: could not build the pages ")) << unbuilt.error;
    EXPECT_EQ(calls(), std::vector<std::string>{"pages build"});
    const auto faulty = korvid({"docs", "--check"}, {{"FAULTY", "check"}});
    EXPECT_EQ(faulty.exitCode, 1);
    EXPECT_TRUE(contains(faulty.error, "korvid: the pages in build/docs have faults\n")) << faulty.error;
}

TEST_F(ScriptOnAMachine, FormatsAndChecksAllSourcesWithTheVersionThatFormatsThem)
{
    addApt("all");
    addFormatter("14.0.6");
    const std::string source = (root() / "src/source file.cpp").string();
    EXPECT_EQ(korvid({"format"}).exitCode, 0);
    EXPECT_EQ(calls(), std::vector<std::string>{"clang-format -i " + source});

    EXPECT_EQ(korvid({"format", "--check"}).exitCode, 0);
    EXPECT_EQ(calls().at(0), "clang-format --dry-run --Werror " + source);
    EXPECT_TRUE(contains(calls().at(1), "shellcheck ")) << calls()[1];
    EXPECT_TRUE(contains(calls().back(), "cmake --build")) << calls().back();
}

TEST_F(ScriptOnAMachine, FormatsAndChecksOnlyChangedLinesWithAnotherVersion)
{
    addApt("all");
    addFormatter("19.1.7 (3+b1)");
    const auto result = korvid({"format"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(contains(result.error, "version 19, not 14")) << result.error;
    EXPECT_EQ(calls(), std::vector<std::string>{"git clang-format HEAD"});

    EXPECT_EQ(korvid({"format", "--check"}).exitCode, 0);
    EXPECT_EQ(calls().at(0), "git clang-format --diff --quiet HEAD");

    addFormatter("19.1.7 (3+b1)", "-int  x;");
    const auto changed = korvid({"format", "--check"});
    EXPECT_EQ(changed.exitCode, 1);
    EXPECT_TRUE(contains(changed.error, "\n-int  x;\n")) << changed.error;
    EXPECT_TRUE(contains(changed.error, "checks failed: clang-format (./korvid format corrects it)\n"))
        << changed.error;
}

TEST_F(ScriptOnAMachine, MakesPackagesInABuildFolderOfTheirOwn)
{
    addApt("all");
    fs::create_symlink("/bin/rm", programs() / "rm");
    machine.write("a project/build/packages/old_0.0.9_amd64.deb", "of an earlier version");
    writeProgram(program("cpack"), "echo \"cpack in $PWD\" >> \"$LOG\"\ntouch new_0.1.0_amd64.deb\n");
    const fs::path folder = root() / "build/packages";

    const auto result = korvid({"packages"});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(result.output, (folder / "new_0.1.0_amd64.deb").string() + "\n");
    ASSERT_EQ(calls().size(), 3u);
    EXPECT_EQ(calls()[0], "cmake --fresh --preset packages --log-level=WARNING");
    EXPECT_TRUE(calls()[1].starts_with("cmake --build " + folder.string() + " ")) << calls()[1];
    EXPECT_EQ(calls()[2], "cpack in " + folder.string());

    writeProgram(program("cpack"), "exit 1\n");
    EXPECT_EQ(korvid({"packages"}).exitCode, 1);
}

TEST_F(ScriptOnAMachine, FailsToCheckPackagesWhereItCannotMakeANewSystem)
{
    fs::create_directories(root() / "tests/project");
    fs::copy_file(
        KORVID_SOURCE_FOLDER "/tests/project/check-packages.sh", root() / "tests/project/check-packages.sh");
    const auto result = korvid({"packages", "--check", "bookworm"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(contains(result.error, geteuid() == 0 ? "debootstrap is missing" : "only root can make"))
        << result.error;
}
