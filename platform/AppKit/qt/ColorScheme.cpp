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

/// Whether there is a session bus to connect to. Asked first, since the attempt would start a bus where there
/// is an X display without one.
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

    // From anybody at this path: to name the sender would mean to wait for the bus to tell who that is.
    bus.connect(QString(), QLatin1String(kPath), QLatin1String(kInterface), QStringLiteral("SettingChanged"),
        this, SLOT(settingChanged(QDBusMessage)));

    constexpr int patience = 2000; // milliseconds
    QDBusMessage question = QDBusMessage::createMethodCall(
        QLatin1String(kService), QLatin1String(kPath), QLatin1String(kInterface), QStringLiteral("Read"));
    question << QLatin1String(kNamespace) << QLatin1String(kKey);
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(question, patience), this);
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
    // Read answers a variant in a variant, and some portals one more.
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
