#include "PlatformChoice.h"

#include "Conversions.h"

#include <Foundation/NSException.h>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>

#include <algorithm>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// Whether a process listens at a local socket.
bool canConnect(const QByteArray& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0)
        return false;
    const bool connects =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    return connects;
}

/// Whether the Wayland compositor that WAYLAND_DISPLAY names accepts connections.
bool canConnectToWayland()
{
    const QByteArray name = qgetenv("WAYLAND_DISPLAY");
    return !name.isEmpty()
        && canConnect(name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name);
}

/// The names of the platforms that Qt has plugins for, in lower case.
QStringList installedPlatforms()
{
    QStringList folders = QCoreApplication::libraryPaths();
    // Qt looks beside the executable as well, once there is an application.
    folders += QFileInfo(QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget()).path();
    for (QString& folder : folders)
        folder += QStringLiteral("/platforms");
    folders += qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH").split(u':', Qt::SkipEmptyParts);

    QStringList names;
    for (const QString& folder : folders) {
        for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files)) {
            const QJsonObject plugin = QPluginLoader(file.filePath()).metaData();
            for (const auto& key : plugin[u"MetaData"].toObject()[u"Keys"].toArray())
                names += key.toString().toLower();
        }
    }
    names.removeDuplicates();
    return names;
}

/// The names in a list like "wayland;xcb:argument", in lower case.
QStringList namesIn(const QString& platforms)
{
    QStringList names;
    for (const QString& platform : platforms.split(u';', Qt::SkipEmptyParts))
        names += platform.section(u':', 0, 0, QString::SectionSkipEmpty).toLower();
    return names;
}

/// The first platform of the user's list that can be opened is the one that Qt opens too.
PlatformChoice choiceFrom(const QString& platforms)
{
    const QStringList installed = installedPlatforms();
    QStringList reasons;
    for (const QString& name : namesIn(platforms)) {
        PlatformChoice choice;
        if (!installed.contains(name))
            reasons += QStringLiteral("Qt has no platform '%1', only %2")
                           .arg(name, installed.join(QStringLiteral(", ")));
        else if (name == u"xcb" && !(choice.connection = openXConnection()))
            reasons += QStringLiteral("the X server that DISPLAY names cannot be opened");
        else if (name.startsWith(u"wayland") && !canConnectToWayland())
            reasons += QStringLiteral("the compositor that WAYLAND_DISPLAY names cannot be opened");
        else
            return choice;
    }
    if (reasons.isEmpty())
        reasons += QStringLiteral("that names no platform");
    NSException::raise(NSInternalInconsistencyException,
        fromQt(QStringLiteral("QT_QPA_PLATFORM is '%1', but %2.")
                   .arg(platforms, reasons.join(QStringLiteral("; ")))));
}

/// Whether Qt can open the Wayland compositor that WAYLAND_DISPLAY names.
bool canOpenWayland()
{
    return canConnectToWayland() && installedPlatforms().contains(QStringLiteral("wayland"));
}

} // namespace

PlatformChoice choosePlatform()
{
    const QString platforms = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (!platforms.isEmpty())
        return choiceFrom(platforms);
    if (XConnection connection = openXConnection())
        return {{}, std::move(connection)};
    // Left to itself Qt may try X first, and abort.
    return {canOpenWayland() ? "wayland" : "offscreen", nullptr};
}
