#pragma once

#include <AppKit/NSAlert.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSFormat.h>
#include <Foundation/NSString.h>

#include <functional>
#include <initializer_list>
#include <span>
#include <vector>

/// @file
/// Functions that show an alert and return when the user has answered it. `NSAlert::runModal` describes what
/// happens meanwhile. Null titles and messages count as missing. Main thread only.

/// Called with the number of the pressed button: 0, 1 or 2.
using ZRAlertCompletion = std::function<void(NSInteger index)>;

/// The key of a configuration under which the alert's accessory view is: an NSView. Other keys, and objects
/// that are no view, are ignored.
inline constexpr const char* kZRAlertAccessoryViewKey = "accessoryView";

extern "C" {

/// `ZRRunAlertPanel` with its format's arguments in a list.
KORVID_EXPORT NSModalResponse ZRRunAlertPanelWithArguments(const NSString& title,
    const NSString& messageFormat, const NSString& defaultButton, const NSString& alternateButton,
    const NSString& otherButton, std::span<const NSFormatArgument> arguments);

/// Shows an alert with a title, an explanation, up to three buttons and an accessory view, waits for the
/// answer, and then calls `completion` once, unless it is empty.
///
/// The buttons have the first three of `buttonTitles`; further ones are ignored and null ones left out.
/// Without titles there is one button: "OK" in the main bundle's translation. `message` is shown as it is,
/// percent signs included. `configuration` may be null; see kZRAlertAccessoryViewKey.
///
/// The number of a button is its position among those that are shown. When the program ended the alert
/// (NSModalResponseAbort), it is 0 as well: a program that uses `NSApplication::abortModal`, `stop` or
/// `terminate` while alerts are shown should not put what cannot be undone on the first button.
KORVID_EXPORT void ZRAlertBlockWithConf(const NSString& title, const NSString& message,
    const std::vector<NSString>& buttonTitles, const ZRAlertCompletion& completion,
    const NSDictionary* configuration);

/// The same without a configuration:
///
///     ZRAlertBlock("Save the changes?", nullptr, {"Save", "Cancel", "Discard"},
///         [&](NSInteger index) { if (index != 1) close(index == 0); });
KORVID_EXPORT void ZRAlertBlock(const NSString& title, const NSString& message,
    const std::vector<NSString>& buttonTitles, const ZRAlertCompletion& completion);

/// The same without a callback; the answer is discarded. Once it is given, this logs "ZRAlertDelegate() not
/// fully supported on Mac.": on other platforms a delegate is notified.
KORVID_EXPORT void ZRAlertDelegate(
    const NSString& title, const NSString& message, const std::vector<NSString>& buttonTitles);

/// An alert with an "OK" button.
KORVID_EXPORT void ZRAlert(const NSString& title, const NSString& message);

} // extern "C"

/// Shows an alert whose explanation is a format with its arguments, and returns the response as it is: 1000
/// (NSAlertFirstButtonReturn) for the first button that is shown, 1001, 1002; NSModalResponseAbort when the
/// program ended it.
///
///     if (ZRRunAlertPanel("Delete?", "%@ and %d more.", "Delete", "Cancel", nullptr, name, count - 1)
///         == NSAlertFirstButtonReturn)
///
/// Null button titles are left out, so that the next one becomes the first; without any there is an "OK"
/// button. The format is that of NSFormatString, which knows the type of each argument: whatever the format
/// says, it reads nothing but the arguments. A directive without an argument prints "(missing)", one for
/// another type "(mismatch)", and "%n", like every directive that does not exist, is printed as it stands
/// and writes nothing. A null format shows no explanation.
template <class... Args>
NSModalResponse ZRRunAlertPanel(const NSString& title, const NSString& messageFormat,
    const NSString& defaultButton, const NSString& alternateButton, const NSString& otherButton,
    const Args&... args)
{
    const std::initializer_list<NSFormatArgument> arguments{NSFormatArgument(args)...};
    return ZRRunAlertPanelWithArguments(title, messageFormat, defaultButton, alternateButton, otherButton,
        {arguments.begin(), arguments.size()});
}
