#include <KorvidAppKit/ZRAlert.h>

#include <Foundation/NSBundle.h>
#include <Foundation/NSLog.h>

#include <algorithm>

namespace {

constexpr std::size_t kMostButtons = 3;

/// The number of the button that a response stands for, of older panels too. Anything else counts as the
/// first.
NSInteger buttonIndex(NSModalResponse response)
{
    constexpr NSModalResponse kAlternateReturn = 0;
    constexpr NSModalResponse kOtherReturn = -1;
    switch (response) {
    case NSAlertSecondButtonReturn:
    case kAlternateReturn:
        return 1;
    case NSAlertThirdButtonReturn:
    case kOtherReturn:
        return 2;
    default:
        return 0;
    }
}

} // namespace

NSModalResponse ZRRunAlertPanelWithArguments(const NSString& title, const NSString& messageFormat,
    const NSString& defaultButton, const NSString& alternateButton, const NSString& otherButton,
    std::span<const NSFormatArgument> arguments)
{
    const auto alert = make<NSAlert>();
    alert->setMessageText(title);
    alert->addButtonWithTitle(defaultButton);
    alert->addButtonWithTitle(alternateButton);
    alert->addButtonWithTitle(otherButton);
    alert->setInformativeText(NSFormatString(messageFormat, arguments));
    return alert->runModal();
}

void ZRAlertBlockWithConf(const NSString& title, const NSString& message,
    const std::vector<NSString>& buttonTitles, const ZRAlertCompletion& completion,
    const NSDictionary* configuration)
{
    const auto alert = make<NSAlert>();
    alert->setMessageText(title);
    if (buttonTitles.empty())
        alert->addButtonWithTitle(NSBundle::mainBundle()->localizedStringForKey("OK", "", nullptr));
    for (std::size_t i = 0; i < std::min(buttonTitles.size(), kMostButtons); ++i)
        alert->addButtonWithTitle(buttonTitles[i]);
    if (!message.isNull())
        alert->setInformativeText(message);
    if (configuration)
        alert->setAccessoryView(dynamic_cast<NSView*>(configuration->objectForKey(kZRAlertAccessoryViewKey)));
    const NSInteger index = buttonIndex(alert->runModal());
    if (completion)
        completion(index);
}

void ZRAlertBlock(const NSString& title, const NSString& message, const std::vector<NSString>& buttonTitles,
    const ZRAlertCompletion& completion)
{
    ZRAlertBlockWithConf(title, message, buttonTitles, completion, nullptr);
}

void ZRAlertDelegate(
    const NSString& title, const NSString& message, const std::vector<NSString>& buttonTitles)
{
    ZRAlertBlockWithConf(
        title, message, buttonTitles,
        [](NSInteger) { NSLog("ZRAlertDelegate() not fully supported on Mac."); }, nullptr);
}

void ZRAlert(const NSString& title, const NSString& message)
{
    ZRAlertBlockWithConf(title, message, {}, nullptr, nullptr);
}
