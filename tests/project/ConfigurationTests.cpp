#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

/// The compiler's command lines of a build folder that CMake makes with these arguments.
std::string configuredCommands(std::vector<std::string> arguments, const EnvironmentChanges& environment = {})
{
    const TemporaryFolder folder;
    const std::string build = folder.file("build");
    arguments.insert(arguments.begin(), {KORVID_CMAKE, "-S", KORVID_SOURCE_FOLDER, "-B", build});
    arguments.insert(arguments.end(),
        {"-DCMAKE_CXX_COMPILER=" KORVID_COMPILER, "-DKORVID_TESTS=OFF", "-DKORVID_EXAMPLES=OFF"});
    const auto result = runProcess(arguments, environment);
    EXPECT_EQ(result.exitCode, 0) << result.error;

    std::ostringstream commands;
    commands << std::ifstream(build + "/compile_commands.json").rdbuf();
    EXPECT_NE(commands.str().find(" -Wextra "), std::string::npos) << commands.str();
    return commands.str();
}

bool makesWarningsErrors(const std::string& commands)
{
    return commands.find(" -Werror") != std::string::npos;
}

} // namespace

TEST(Configuration, DoesNotTurnWarningsIntoErrorsForUsers)
{
    EXPECT_FALSE(makesWarningsErrors(configuredCommands({"-G", "Ninja"})));
    EXPECT_FALSE(
        makesWarningsErrors(configuredCommands({"--preset", "release"}, {{"KORVID_STRICT", std::nullopt}})));
}

TEST(Configuration, TurnsWarningsIntoErrorsForDevelopers)
{
    EXPECT_TRUE(makesWarningsErrors(configuredCommands({"--preset", "debug"})));
    EXPECT_TRUE(makesWarningsErrors(configuredCommands({"--preset", "release"}, {{"KORVID_STRICT", "ON"}})));
}

TEST(Configuration, LetsAProjectThatIncludesItLinkTheInstalledTargetsName)
{
    const TemporaryFolder folder;
    folder.write("CMakeLists.txt",
        "cmake_minimum_required(VERSION 3.25)\n"
        "project(Including LANGUAGES CXX)\n"
        "add_subdirectory(\"" KORVID_SOURCE_FOLDER "\" KorvidAppKit)\n"
        "add_library(own own.cpp)\n"
        "target_link_libraries(own PRIVATE Korvid::KorvidAppKit)\n"
        "get_target_property(kind own TYPE)\n"
        "message(\"own: ${kind}\")\n");
    folder.write("own.cpp", "");
    const auto result = runProcess({KORVID_CMAKE, "-S", folder.path().string(), "-B", folder.file("build"),
        "-G", "Ninja", "-DCMAKE_CXX_COMPILER=" KORVID_COMPILER});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    EXPECT_NE(result.error.find("own: STATIC_LIBRARY\n"), std::string::npos)
        << "the project's own libraries remain of the default kind: " << result.error;
}

TEST(Configuration, MakesStaticLibrariesThatContainTheModules)
{
    const TemporaryFolder folder;
    const std::string build = folder.file("build");
    const auto configured = runProcess({KORVID_CMAKE, "-S", KORVID_SOURCE_FOLDER, "-B", build, "-G", "Ninja",
        "-DCMAKE_CXX_COMPILER=" KORVID_COMPILER, "-DKORVID_TESTS=OFF", "-DKORVID_EXAMPLES=OFF",
        "-DBUILD_SHARED_LIBS=OFF"});
    EXPECT_EQ(configured.exitCode, 0) << configured.error;

    const auto contents = [&](const std::string& library) {
        return runProcess({"ninja", "-C", build, "-t", "query", library}).output;
    };
    EXPECT_NE(contents("src/libKorvidAppKit.a").find("/ZRQRView.cpp.o\n"), std::string::npos);
    const std::string platform = contents("platform/libKorvidPlatform.a");
    for (const char* object : {"/qt/QtHost.cpp.o\n", "/qt/ColorScheme.cpp.o\n", "/pdf/PDFPages.cpp.o\n",
             "/HighwayTargets.cpp.o\n", "/LinkedModules.cpp.o\n"})
        EXPECT_NE(platform.find(object), std::string::npos) << object;
    EXPECT_EQ(platform.find("/Module.cpp.o\n"), std::string::npos) << "loads modules";
}
