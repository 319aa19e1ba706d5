#include "DisplayChoice.h"

#include <QCoreApplication>
#include <QDir>

#include <cstring>
#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// Whether the X server that DISPLAY names lets us in. The library that Qt's own plugin uses is asked, so
/// that address and authority are read as they will be then; without it, the plugin does not work either.
bool canOpenX()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return false;
    struct xcb_connection_t;
    void* const library = dlopen("libxcb.so.1", RTLD_LAZY | RTLD_LOCAL);
    if (!library)
        return false;
    const auto connect =
        reinterpret_cast<xcb_connection_t* (*)(const char*, int*)>(dlsym(library, "xcb_connect"));
    const auto hasError =
        reinterpret_cast<int (*)(xcb_connection_t*)>(dlsym(library, "xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<void (*)(xcb_connection_t*)>(dlsym(library, "xcb_disconnect"));
    bool opens = false;
    if (connect && hasError && disconnect) {
        xcb_connection_t* const connection = connect(nullptr, nullptr);
        opens = hasError(connection) == 0;
        disconnect(connection);
    }
    dlclose(library);
    return opens;
}

/// Whether a process listens at a local socket.
bool canConnect(const QByteArray& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    const bool connects =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    return connects;
}

/// Whether the Wayland compositor that WAYLAND_DISPLAY names answers, and Qt's plugin for it is installed.
bool canOpenWayland()
{
    const QByteArray name = qgetenv("WAYLAND_DISPLAY");
    if (name.isEmpty())
        return false;
    const QByteArray path = name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name;
    if (!canConnect(path))
        return false;
    const QStringList folders = QCoreApplication::libraryPaths();
    return std::any_of(folders.begin(), folders.end(), [](const QString& folder) {
        return !QDir(folder + QStringLiteral("/platforms"))
                    .entryList({QStringLiteral("libqwayland*")})
                    .isEmpty();
    });
}

} // namespace

QString platformForDisplay()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || canOpenX())
        return {};
    // Left to itself Qt may try X first, which does not answer.
    return canOpenWayland() ? QStringLiteral("wayland") : QStringLiteral("offscreen");
}
