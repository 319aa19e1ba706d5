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
