#include "QtTestSupport.h"

#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <Foundation/NSDictionary.h>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

// Each test runs in a process of its own, with a message bus of its own and, on a second connection to that,
// what a desktop's portal does.

namespace {

constexpr char kService[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kInterface[] = "org.freedesktop.portal.Settings";

/// A desktop's settings portal.
class Portal : public QDBusVirtualObject {
public:
    explicit Portal(unsigned scheme)
        : _scheme(scheme)
        , _bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal")))
    {
        if (!_bus.registerVirtualObject(QLatin1String(kPath), this)
            || !_bus.registerService(QLatin1String(kService)))
            std::_Exit(90);
    }

    void change(const QString& space, const QString& key, const QVariant& value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            QLatin1String(kPath), QLatin1String(kInterface), QStringLiteral("SettingChanged"));
        signal << space << key << QVariant::fromValue(QDBusVariant(value));
        _bus.send(signal);
    }
    void changeScheme(unsigned scheme)
    {
        change(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"), scheme);
    }
    int questions() const { return _questions; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (message.member() != QLatin1String("Read")
            || message.arguments()
                != QVariantList{QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme")})
            return false;
        ++_questions;
        // A variant in a variant, as portals reply to this call.
        const QDBusVariant inner(QVariant::fromValue(_scheme));
        bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
        return true;
    }
    QString introspect(const QString&) const override { return {}; }

private:
    unsigned _scheme;
    int _questions = 0;
    QDBusConnection _bus;
};

/// Writes down each new effective appearance: D or L.
class Watcher : public NSObject {
public:
    std::string seen;
    void observeValueForKeyPath(NSString, NSObject*, NSDictionary*, void*) override
    {
        seen += NSApp->effectiveAppearance()->name() == NSAppearanceNameDarkAqua ? 'D' : 'L';
    }

protected:
    ~Watcher() override = default;
};

/// A message bus for this process alone.
class PrivateBus {
public:
    PrivateBus()
        : _daemon({"dbus-daemon", "--session", "--nofork", "--print-address"})
    {
        const std::string address = _daemon.readLine(10);
        if (address.empty()) {
            std::fputs("dbus-daemon does not start: install the package dbus-daemon\n", stderr);
            std::_Exit(91);
        }
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    }

private:
    BackgroundProcess _daemon;
};

RetainPtr<Watcher> watchApplication()
{
    auto watcher = make<Watcher>();
    NSApplication::sharedApplication()->addObserver(watcher, "effectiveAppearance");
    return watcher;
}

void followChanges()
{
    const PrivateBus bus;
    // The portal needs Qt's application before ours queries it.
    makeQApplication();
    Portal portal(1);
    const auto watcher = watchApplication();
    const auto sees = [&](const char* expected) {
        const bool seen = serveUntil([&] { return watcher->seen == expected; });
        EXPECT_TRUE(seen) << expected << ", not " << watcher->seen;
    };
    // Nothing has waited for the reply.
    EXPECT_EQ(portal.questions(), 0);
    EXPECT_EQ(NSApp->effectiveAppearance()->name(), NSAppearanceNameAqua);
    sees("D");
    EXPECT_EQ(portal.questions(), 1);

    portal.changeScheme(2);
    sees("DL");
    portal.changeScheme(1);
    sees("DLD");
    // Other settings, and the same value again, change nothing; to have no preference does: the palette is
    // light.
    portal.change(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("accent-color"), 2U);
    portal.change(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("color-scheme"), 2U);
    portal.changeScheme(1);
    portal.changeScheme(0);
    sees("DLDL");
    portal.changeScheme(1);
    sees("DLDLD");
    // A value that makes no sense is no preference.
    portal.change(
        QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"), QStringLiteral("pink"));
    sees("DLDLDL");

    // What the application chooses goes before what the desktop says.
    NSApp->setAppearance(NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua));
    sees("DLDLDLD");
    portal.changeScheme(1);
    portal.changeScheme(2);
    portal.changeScheme(1);
    // The bus preserves the order: with its reply to this, all messages above have arrived.
    QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/"), QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
    QCoreApplication::processEvents();
    EXPECT_EQ(watcher->seen, "DLDLDLD");
    NSApp->setAppearance(nullptr);
    EXPECT_EQ(watcher->seen, "DLDLDLD");
    portal.changeScheme(2);
    sees("DLDLDLDL");
}

TEST(ColorSchemeDeathTest, TheDesktopsSchemeIsFollowedLive)
{
    EXPECT_EXIT((followChanges(), finish()), testing::ExitedWithCode(0), "");
}

void askABusWithoutPortal()
{
    const PrivateBus bus;
    const auto watcher = watchApplication();
    // The bus replies at once that there is no such service.
    QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/"), QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
    QCoreApplication::processEvents();
    EXPECT_EQ(watcher->seen, "");
    EXPECT_EQ(NSApp->effectiveAppearance()->name(), NSAppearanceNameAqua);

    // A portal that comes later is heard.
    Portal portal(0);
    portal.changeScheme(1);
    EXPECT_TRUE(serveUntil([&] { return watcher->seen == "D"; }));
}

TEST(ColorSchemeDeathTest, WithoutAPortalThePaletteDecides)
{
    EXPECT_EXIT((askABusWithoutPortal(), finish()), testing::ExitedWithCode(0), "");
}

TEST(ColorSchemeDeathTest, WithoutABusNoneIsStarted)
{
    EXPECT_EXIT(
        {
            // With a display but no bus, Qt's D-Bus would start one. It asks for that by running this
            // program.
            const TemporaryFolder folder;
            const std::string trace = folder.file("started");
            const std::string launcher = folder.write("dbus-launch", "#!/bin/sh\ntouch " + trace + "\n");
            std::filesystem::permissions(launcher, std::filesystem::perms::owner_all);
            setenv("PATH", (folder.path().string() + ":" + getenv("PATH")).c_str(), 1);
            setenv("DISPLAY", ":4711", 1);
            unsetenv("DBUS_SESSION_BUS_ADDRESS");
            setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
            NSApplication::sharedApplication();
            QCoreApplication::processEvents();
            EXPECT_FALSE(std::filesystem::exists(trace));
            EXPECT_EQ(NSApp->effectiveAppearance()->name(), NSAppearanceNameAqua);
            finish();
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
