#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>

/// Runs the tests in an environment that depends neither on the desktop of the user nor on the machine's
/// fonts.
int main(int argc, char** argv)
{
    // A death test re-executes the program: the child keeps the settings and folder of its parent.
    ::testing::GTEST_FLAG(death_test_style) = "threadsafe";
    ::testing::InitGoogleTest(&argc, argv);

    std::optional<TemporaryFolder> home;
    // A child that dies could not remove a folder of its own.
    if (!std::getenv("KORVID_TEST_HOME")) {
        home.emplace();
        setenv("KORVID_TEST_HOME", home->path().c_str(), 1);
        setenv("HOME", home->path().c_str(), 1);
        setenv("XDG_CONFIG_HOME", home->file("config").c_str(), 1);
        setenv("XDG_CACHE_HOME", home->file("cache").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", home->path().c_str(), 1);
    }
    setenv("FONTCONFIG_FILE", KORVID_TEST_FONTS, 1);
    unsetenv("FONTCONFIG_SYSROOT");
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 0);
    setenv("LC_ALL", "C.UTF-8", 1);
    unsetenv("QT_SCALE_FACTOR");
    return RUN_ALL_TESTS();
}
