#pragma once

#include <AppKit/NSApplication.h>
#include <AppKit/NSView.h>

#include <vector>

/// The first, second and third button of an alert; further ones follow on.
inline constexpr NSModalResponse NSAlertFirstButtonReturn = 1000;
inline constexpr NSModalResponse NSAlertSecondButtonReturn = 1001; ///< the second button
inline constexpr NSModalResponse NSAlertThirdButtonReturn = 1002; ///< the third button; further ones count on

/// A dialog with a message and buttons, which blocks the application's windows until the user answers it.
///
///     auto alert = make<NSAlert>();
///     alert->setMessageText("Delete “Holiday”?");
///     alert->setInformativeText("The album's pictures stay in the library.");
///     alert->addButtonWithTitle("Delete");
///     alert->addButtonWithTitle("Cancel");
///     if (alert->runModal() == NSAlertFirstButtonReturn)
///         album->remove();
///
/// The first button is the default one, which Return presses. Escape, and closing the dialog, press the
/// button whose title is "Cancel" or the main bundle's translation of it, or else the only button; with
/// several buttons and no such title they do nothing. Tab moves between the buttons and the accessory view,
/// the space bar presses the button with the focus.
///
/// Texts are plain text. They are broken into lines; long ones scroll, so that the dialog fits the screen. It
/// is dark or light by the application's effective appearance at the time when it appears. Main thread only.
class KORVID_EXPORT NSAlert : public NSObject {
public:
    /// An alert without texts and buttons.
    NSAlert();

    /// The question or message, in bold. Default empty; null counts as empty.
    NSString messageText() const { return _messageText; }
    /// Takes effect at the next `runModal`, like all setters here.
    void setMessageText(NSString text) { _messageText = std::move(text); }
    /// The explanation below the message. Default empty; null counts as empty.
    NSString informativeText() const { return _informativeText; }
    /// Takes effect at the next `runModal`.
    void setInformativeText(NSString text) { _informativeText = std::move(text); }

    /// The titles of the buttons, in the order in which they were added. An alert without any shows one: "OK"
    /// in the main bundle's translation.
    const std::vector<NSString>& buttonTitles() const { return _buttonTitles; }
    /// Adds a button to the left of the others, or below them where the titles are long. A null title is
    /// ignored.
    ///
    /// Differs: Apple's returns the button.
    void addButtonWithTitle(NSString title);

    /// A view between the texts and the buttons, in the size of its frame, that works as in any window while
    /// the alert is shown. Default null. Borrowed.
    NSView* accessoryView() const { return _accessoryView.get(); }
    /// Retains the view. It leaves its superview or window when the alert is shown.
    void setAccessoryView(RetainPtr<NSView> view) { _accessoryView = std::move(view); }

    /// Shows the alert and waits for the answer: NSAlertFirstButtonReturn for the first button, one more for
    /// each one after it. NSModalResponseAbort when `NSApplication::abortModal`, `stop` or `terminate` ended
    /// it, at once after `terminate`, and at once while this alert is already shown.
    ///
    /// Events are dispatched meanwhile: timers fire, windows are drawn and animations go on, and a view in
    /// the accessory view may show another alert. The run loop stays in its default mode. Other windows get
    /// no events from mouse and keyboard, and a press in one of them ends without a release. Where there is
    /// no display nobody can answer.
    ///
    /// Differs: Apple's run loop only fires timers of NSModalPanelRunLoopMode.
    NSModalResponse runModal();

protected:
    ~NSAlert() override;

private:
    NSString _messageText;
    NSString _informativeText;
    std::vector<NSString> _buttonTitles;
    RetainPtr<NSView> _accessoryView;
    bool _isRunning = false;
};
