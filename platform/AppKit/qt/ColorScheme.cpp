#include "ColorScheme.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>

namespace {

constexpr char kService[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kInterface[] = "org.freedesktop.portal.Settings";
constexpr char kNamespace[] = "org.freedesktop.appearance";
constexpr char kKey[] = "color-scheme";

/// Whether there is a session bus. Connecting without one would start a bus for the X display.
bool hasSessionBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")
        || (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")
            && QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus")));
}

} // namespace

void ColorScheme::follow(std::function<void()> changed)
{
    _changed = std::move(changed);
    if (!hasSessionBus())
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;

    // From any sender: with the service's name this would block until the bus has looked up its owner.
    bus.connect(QString(), QLatin1String(kPath), QLatin1String(kInterface), QStringLiteral("SettingChanged"),
        this, SLOT(settingChanged(QDBusMessage)));

    constexpr int kTimeout = 2000; // milliseconds
    QDBusMessage request = QDBusMessage::createMethodCall(
        QLatin1String(kService), QLatin1String(kPath), QLatin1String(kInterface), QStringLiteral("Read"));
    request << QLatin1String(kNamespace) << QLatin1String(kKey);
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(request, kTimeout), this);
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
            finished->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *finished;
            if (!reply.isError())
                setValue(reply.value().variant());
        });
}

void ColorScheme::settingChanged(const QDBusMessage& message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() == 3 && arguments[0].toString() == QLatin1String(kNamespace)
        && arguments[1].toString() == QLatin1String(kKey))
        setValue(arguments[2]);
}

void ColorScheme::setValue(const QVariant& value)
{
    // The reply to Read is a variant in a variant; some portals nest one more.
    QVariant plain = value;
    while (plain.canConvert<QDBusVariant>())
        plain = plain.value<QDBusVariant>().variant();
    switch (plain.toUInt()) {
    case 1:
        _preference = Preference::Dark;
        break;
    case 2:
        _preference = Preference::Light;
        break;
    default:
        _preference = Preference::None;
        break;
    }
    _changed();
}
