#pragma once

#include <QDBusMessage>
#include <QObject>

#include <functional>

/// What the user has chosen for all applications, dark or light, as the desktop's settings portal tells it.
class ColorScheme : public QObject {
    Q_OBJECT

public:
    enum class Preference { None, Dark, Light };

    /// None until the portal has answered, and where there is none.
    Preference preference() const { return _preference; }

    /// Asks the portal, without waiting, and calls `changed` for its answer and for every change from then
    /// on, in the event loop.
    void follow(std::function<void()> changed);

private Q_SLOTS:
    // Takes the whole message: with the signal's own types for parameters Qt 6.4 refuses to connect.
    void settingChanged(const QDBusMessage& message);

private:
    void setValue(const QVariant& value);

    Preference _preference = Preference::None;
    std::function<void()> _changed;
};
