#pragma once

#include <QDBusMessage>
#include <QObject>

#include <functional>

/// The user's preference for dark or light applications, from the desktop's settings portal.
class ColorScheme : public QObject {
    Q_OBJECT

public:
    enum class Preference { None, Dark, Light };

    /// None until the portal has replied, and without a portal.
    Preference preference() const { return _preference; }

    /// Queries the portal without blocking. Calls `changed` from the event loop, for the reply and for every
    /// later change.
    void follow(std::function<void()> changed);

private Q_SLOTS:
    // Takes the whole message: with the signal's own types for parameters Qt 6.4 refuses to connect.
    void settingChanged(const QDBusMessage& message);

private:
    void setValue(const QVariant& value);

    Preference _preference = Preference::None;
    std::function<void()> _changed;
};
