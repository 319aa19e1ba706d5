#pragma once

#include "AppKit/Host.h"

#include <QDialog>
#include <QPointer>

class QEventLoop;
class QPushButton;
class QTextEdit;
class WindowWidget;

/// An alert as a dialog of our own: Qt's message box puts buttons in an order that depends on the desktop.
///
/// The buttons are called "alertButton0", "alertButton1" and so on, the texts "alertMessage" and
/// "alertInformativeText".
class AlertDialog final : public QDialog {
public:
    explicit AlertDialog(const HostAlert& alert);
    AlertDialog(const AlertDialog&) = delete;
    AlertDialog& operator=(const AlertDialog&) = delete;
    ~AlertDialog() override;

    /// Shows the dialog until a button is pressed or `loop` ends; returns the number of the button, or
    /// nothing.
    std::optional<std::size_t> run(QEventLoop& loop);

    /// What Escape does: presses the button that cancels, if any.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QTextEdit* addText(const NSString& text, const char* name, bool isBold);
    void addAccessory();
    void addButtons();
    QPushButton* makeButton(std::size_t number, int widest);
    void fitScreen(const QSize& available);
    void place(const QRect& available);
    bool isAnswerKey(QEvent& event) const;

    const HostAlert& _alert;
    QTextEdit* _message = nullptr;
    QTextEdit* _informativeText = nullptr;
    QPointer<WindowWidget> _accessory;
    QPointer<QWidget> _parent; ///< the active window, which the alert appears above
    QEventLoop* _loop = nullptr;
    std::optional<std::size_t> _answer;
};
