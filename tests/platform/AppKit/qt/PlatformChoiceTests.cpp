#include "QtTestSupport.h"

#include <AppKit/NSApplication.h>
#include <Foundation/NSException.h>
#include <QLibraryInfo>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

// Which window system an application opens. Each test runs in a process of its own, since Qt opens one only.

namespace {

/// Removes every variable that names a display.
void unsetDisplays()
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE"})
        unsetenv(name);
}

/// Shows a window and writes the platform that it is on. Exits with 0 if nobody can see it.
[[noreturn]] void printPlatform()
{
    NSApplication::sharedApplication();
    const auto window =
        make<NSWindow>(NSMakeRect(0, 0, 20, 20), NSWindowStyleMaskTitled, NSBackingStoreBuffered, false);
    window->makeKeyAndOrderFront();
    std::fprintf(stderr, "platform %s", qPrintable(QGuiApplication::platformName()));
    std::exit(window->isVisible() && !NSApp->hasDisplay() ? 0 : 1);
}

/// Writes why no application can be made. Exits with 3.
[[noreturn]] void printRefusal()
{
    try {
        NSApplication::sharedApplication();
    } catch (const NSException& exception) {
        std::fprintf(stderr, "<%s>", exception.reason().UTF8String().c_str());
        std::exit(3);
    }
    std::exit(0);
}

/// A TCP socket that the kernel accepts connections for, and that nobody reads from.
class SilentServer {
public:
    SilentServer()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (bind(_socket, generic, size) != 0 || listen(_socket, 8) != 0
            || getsockname(_socket, generic, &size) != 0)
            throw std::runtime_error("cannot listen on the loopback interface");
        _port = ntohs(address.sin_port);
    }
    SilentServer(const SilentServer&) = delete;
    ~SilentServer() { close(_socket); }

    /// For the variable DISPLAY.
    std::string display() const
    {
        constexpr int kFirstPort = 6000; // of X servers
        return "127.0.0.1:" + std::to_string(_port - kFirstPort);
    }

private:
    int _socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int _port = 0;
};

TEST(PlatformChoiceDeathTest, WithoutADisplayWindowsLiveInMemory)
{
    EXPECT_EXIT((unsetDisplays(), printPlatform()), testing::ExitedWithCode(0), "platform offscreen");
}

TEST(PlatformChoiceDeathTest, AnXServerThatCannotBeReachedIsNoDisplay)
{
    EXPECT_EXIT((unsetDisplays(), setenv("DISPLAY", ":4711", 1), printPlatform()), testing::ExitedWithCode(0),
        "platform offscreen");
    EXPECT_EXIT((unsetDisplays(), setenv("DISPLAY", "nonsense", 1), printPlatform()),
        testing::ExitedWithCode(0), "platform offscreen");
}

TEST(PlatformChoiceDeathTest, AnXServerThatAcceptsAConnectionAndNeverRepliesIsNoDisplay)
{
    EXPECT_EXIT(
        {
            const SilentServer server;
            unsetDisplays();
            setenv("DISPLAY", server.display().c_str(), 1);
            printPlatform();
        },
        testing::ExitedWithCode(0), "platform offscreen");
}

TEST(PlatformChoiceDeathTest, AWaylandCompositorThatCannotBeReachedIsNoDisplay)
{
    EXPECT_EXIT((unsetDisplays(), setenv("WAYLAND_DISPLAY", "wayland-4711", 1), printPlatform()),
        testing::ExitedWithCode(0), "platform offscreen");
    EXPECT_EXIT(
        (unsetDisplays(), setenv("WAYLAND_DISPLAY", std::string(200, '/').c_str(), 1), printPlatform()),
        testing::ExitedWithCode(0), "platform offscreen");
}

TEST(PlatformChoiceDeathTest, ThePlatformThatTheUserChoseIsTaken)
{
    for (const char* chosen :
        {"minimal", "MINIMAL", "minimal:enable_fonts", "nonsense;minimal", "xcb;minimal"}) {
        SCOPED_TRACE(chosen);
        EXPECT_EXIT((unsetDisplays(), setenv("QT_QPA_PLATFORM", chosen, 1), printPlatform()),
            testing::ExitedWithCode(0), "platform minimal");
    }
}

/// Leaves the user's folder as the only one that has plugins.
void usePluginsOfTheUserOnly()
{
    const auto plugins = QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms");
    setenv("QT_QPA_PLATFORM_PLUGIN_PATH", qPrintable(plugins), 1);
    QCoreApplication::setLibraryPaths({});
}

TEST(PlatformChoiceDeathTest, PluginsInTheUsersOwnFolderCount)
{
    EXPECT_EXIT((unsetDisplays(), usePluginsOfTheUserOnly(), setenv("QT_QPA_PLATFORM", "minimal", 1),
                    printPlatform()),
        testing::ExitedWithCode(0), "platform minimal");
}

TEST(PlatformChoiceDeathTest, APlatformThatQtDoesNotHaveIsRefused)
{
    EXPECT_EXIT((unsetDisplays(), setenv("QT_QPA_PLATFORM", "nonsense", 1), printRefusal()),
        testing::ExitedWithCode(3),
        "^<QT_QPA_PLATFORM is 'nonsense', but Qt has no platform 'nonsense', only [a-z, ]*offscreen[a-z, "
        "]*\\.>$");
    EXPECT_EXIT((unsetDisplays(), setenv("QT_QPA_PLATFORM", ";", 1), printRefusal()),
        testing::ExitedWithCode(3), "^<QT_QPA_PLATFORM is ';', but that names no platform\\.>$");
}

TEST(PlatformChoiceDeathTest, AnXServerThatTheUserChoseAndThatCannotBeReachedIsRefused)
{
    EXPECT_EXIT((unsetDisplays(), setenv("QT_QPA_PLATFORM", "xcb", 1), printRefusal()),
        testing::ExitedWithCode(3),
        "^<QT_QPA_PLATFORM is 'xcb', but the X server that DISPLAY names cannot be opened\\.>$");
}

} // namespace
