#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDisplay.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

namespace fs = std::filesystem;

namespace {

void expectSuccess(const std::vector<std::string>& words, const EnvironmentChanges& environment = {})
{
    const auto result = runProcess(words, environment);
    ASSERT_EQ(result.exitCode, 0) << result.output << result.error;
}

/// An installation in a temporary folder whose name has a space.
class Installation : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        folder = std::make_unique<TemporaryFolder>();
        expectSuccess({KORVID_CMAKE, "--install", KORVID_BUILD_FOLDER, "--prefix", prefix()});
    }
    static void TearDownTestSuite() { folder.reset(); }

    static std::string prefix() { return folder->file("an installation"); }

    static std::vector<std::string> installedHeaders()
    {
        std::vector<std::string> headers;
        for (const auto& entry : fs::recursive_directory_iterator(prefix() + "/include")) {
            if (entry.is_regular_file())
                headers.push_back(entry.path().lexically_relative(prefix()).string());
        }
        std::sort(headers.begin(), headers.end());
        return headers;
    }

    /// Whether the CMake package lets a program that asks for this version use it.
    static bool isCompatibleWith(const std::string& version)
    {
        const std::string script = folder->write("version.cmake",
            "set(PACKAGE_FIND_NAME KorvidAppKit)\n"
            "set(PACKAGE_FIND_VERSION "
                + version
                + ")\n"
                  "string(REPLACE . \";\" parts ${PACKAGE_FIND_VERSION}.0)\n"
                  "list(GET parts 0 PACKAGE_FIND_VERSION_MAJOR)\n"
                  "list(GET parts 1 PACKAGE_FIND_VERSION_MINOR)\n"
                  "include(\""
                + prefix()
                + "/lib/cmake/KorvidAppKit/KorvidAppKitConfigVersion.cmake\")\n"
                  "message(\"${PACKAGE_VERSION}: ${PACKAGE_VERSION_COMPATIBLE}\")\n");
        const auto result = runProcess({KORVID_CMAKE, "-P", script});
        EXPECT_TRUE(result.error.starts_with(KORVID_VERSION ": ")) << result.error;
        return result.error == KORVID_VERSION ": TRUE\n";
    }

    static std::unique_ptr<TemporaryFolder> folder;
};

std::unique_ptr<TemporaryFolder> Installation::folder;

/// The version with its last number increased by `step`.
std::string changedBy(int step, const std::string& version)
{
    const auto last = version.rfind('.') + 1; // 0 where there is no dot
    return version.substr(0, last) + std::to_string(std::stoi(version.substr(last)) + step);
}

/// What KorvidVersion.cmake makes of the first two numbers of a version.
std::string compatibilityOf(const std::string& major, const std::string& minor)
{
    const TemporaryFolder folder;
    const std::string script = folder.write("version.cmake",
        "include(" KORVID_SOURCE_FOLDER "/cmake/KorvidVersion.cmake)\n"
        "message(\"${KORVID_SOVERSION} ${KORVID_COMPATIBILITY}\")\n");
    return runProcess(
        {KORVID_CMAKE, "-DPROJECT_VERSION_MAJOR=" + major, "-DPROJECT_VERSION_MINOR=" + minor, "-P", script})
        .error;
}

} // namespace

TEST_F(Installation, ContainsExactlyThePublicHeaders)
{
    std::vector<std::string> expected = filesBelow("include", ".h");
    for (const auto& header : filesBelow("qt/include", ".h"))
        expected.push_back(header.substr(std::string("qt/").size()));
    for (const auto& header : filesBelow("platform", ".h")) {
        if (const auto at = header.find("/include/"); at != std::string::npos)
            expected.push_back(
                "include/KorvidPlatform/" + header.substr(at + std::string("/include/").size()));
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(installedHeaders(), expected);
}

TEST_F(Installation, ContainsTheLicences)
{
    for (const std::string name : {"LICENSE", "THIRD-PARTY.md"}) {
        const auto shown = runProcess({"cat", prefix() + "/share/doc/KorvidAppKit/" + name});
        EXPECT_EQ(shown.output, readProjectFile(name)) << shown.error;
    }
}

TEST_F(Installation, DrawsThePictureOfAProgramBuiltWithCMake)
{
    expectSuccess(
        {KORVID_SOURCE_FOLDER "/tests/project/consumer/check.sh", folder->file("with CMake"), "cmake"},
        {{"CC", KORVID_C_COMPILER}, {"CXX", KORVID_COMPILER}, {"CMAKE_PREFIX_PATH", prefix()}});
}

TEST_F(Installation, DrawsThePictureOfAQtProgramBuiltWithCMake)
{
    expectSuccess({KORVID_SOURCE_FOLDER "/tests/project/consumer/check.sh", "--qt",
                      folder->file("with Qt and CMake"), "cmake"},
        {{"CXX", KORVID_COMPILER}, {"CMAKE_PREFIX_PATH", prefix()}});
}

TEST_F(Installation, DrawsThePicturesOfProgramsBuiltWithPkgConfigAfterItWasMoved)
{
    const std::string moved = folder->file("moved"); // the shell splits what pkg-config prints at spaces
    fs::rename(prefix(), moved);
    const EnvironmentChanges environment{
        {"CC", KORVID_C_COMPILER}, {"CXX", KORVID_COMPILER}, {"PKG_CONFIG_PATH", moved + "/lib/pkgconfig"}};
    const std::string check = KORVID_SOURCE_FOLDER "/tests/project/consumer/check.sh";
    expectSuccess({check, folder->file("with pkg-config"), "pkg-config"}, environment);
    expectSuccess({check, "--qt", folder->file("with Qt and pkg-config"), "pkg-config"}, environment);
    fs::rename(moved, prefix());
}

TEST_F(Installation, ContainsTheGallery)
{
    expectSuccess({prefix() + "/bin/korvid-gallery", "--snapshot", folder->file("pictures"), "--scale", "1",
                      "--page", "pdf"},
        {{"DISPLAY", std::nullopt}, {"KORVID_RESOURCES", std::nullopt}, {"LD_LIBRARY_PATH", std::nullopt}});
    EXPECT_TRUE(fs::exists(folder->file("pictures/pdf.png")));
}

TEST_F(Installation, IsUsedOnlyByProgramsThatAskForACompatibleVersion)
{
    EXPECT_TRUE(isCompatibleWith(KORVID_VERSION));
    EXPECT_TRUE(isCompatibleWith(KORVID_SOVERSION)) << "what the libraries are named after";
    EXPECT_FALSE(isCompatibleWith(changedBy(1, KORVID_VERSION))) << "a later release";
    EXPECT_FALSE(isCompatibleWith(changedBy(1, KORVID_SOVERSION)));
    EXPECT_FALSE(isCompatibleWith(changedBy(-1, KORVID_SOVERSION)));
}

TEST_F(Installation, TellsWhichComponentItDoesNotHave)
{
    folder->write("components/CMakeLists.txt",
        "cmake_minimum_required(VERSION 3.25)\n"
        "project(Components LANGUAGES NONE)\n"
        "find_package(KorvidAppKit REQUIRED)\n"
        "find_package(KorvidAppKit REQUIRED COMPONENTS Sound)\n");
    const auto result = runProcess({KORVID_CMAKE, "-S", folder->file("components"), "-B",
        folder->file("components/build"), "-DCMAKE_PREFIX_PATH=" + prefix()});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_NE(result.error.find("CMakeLists.txt:4 (find_package)"), std::string::npos) << result.error;
    EXPECT_NE(result.error.find("has no component Sound\n"), std::string::npos) << result.error;
}

TEST(Version, NamesTheLibrariesAfterTheVersionsThatMayReplaceEachOther)
{
    EXPECT_EQ(compatibilityOf("0", "1"), "0.1 SameMinorVersion\n");
    EXPECT_EQ(compatibilityOf("0", "12"), "0.12 SameMinorVersion\n");
    EXPECT_EQ(compatibilityOf("1", "0"), "1 SameMajorVersion\n");
    EXPECT_EQ(compatibilityOf("2", "5"), "2 SameMajorVersion\n");
}

TEST_F(Installation, BuildsTheFirstProgramOfTheReadme)
{
    const std::string readme = readProjectFile("README.md");
    folder->write("program/CMakeLists.txt", codeBlock(readme, "cmake"));
    folder->write("program/main.cpp", codeBlock(readme, "cpp"));
    const std::string build = folder->file("program/build");
    ASSERT_NO_FATAL_FAILURE(expectSuccess({KORVID_CMAKE, "-S", folder->file("program"), "-B", build, "-G",
        "Ninja", "-DCMAKE_CXX_COMPILER=" KORVID_COMPILER, "-DCMAKE_PREFIX_PATH=" + prefix()}));
    ASSERT_NO_FATAL_FAILURE(expectSuccess({KORVID_CMAKE, "--build", build}));

    VirtualDisplay display;
    auto environment = display.environment();
    environment["LD_LIBRARY_PATH"] = std::nullopt;
    BackgroundProcess program({build + "/first-program"}, environment);
    const auto window = display.waitForWindow("A first program");
    ASSERT_TRUE(window.has_value());
    display.requestClose(*window);
    EXPECT_EQ(program.waitForExit(20), 0);
}
