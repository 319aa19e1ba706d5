#include "Host.h"

#include <AppKit/NSAlert.h>
#include <AppKit/NSAppearance.h>
#include <AppKit/NSWindow.h>
#include <Foundation/NSBundle.h>

#include <algorithm>
#include <utility>

namespace {

NSString localized(const char* key)
{
    return NSBundle::mainBundle()->localizedStringForKey(key, "", nullptr);
}

/// The index of the button that Escape presses.
std::optional<std::size_t> cancelButton(const std::vector<NSString>& titles)
{
    const NSString translated = localized("Cancel");
    const auto cancel = std::find_if(titles.begin(), titles.end(),
        [&](const NSString& title) { return title == "Cancel" || title == translated; });
    if (cancel != titles.end())
        return std::size_t(cancel - titles.begin());
    if (titles.size() == 1)
        return 0;
    return std::nullopt;
}

/// Sets a flag for as long as it exists.
class ScopedFlag {
public:
    explicit ScopedFlag(bool& flag)
        : _flag(flag)
    {
        _flag = true;
    }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;
    ~ScopedFlag() { _flag = false; }

private:
    bool& _flag;
};

} // namespace

NSAlert::NSAlert() = default;

NSAlert::~NSAlert() = default;

void NSAlert::addButtonWithTitle(NSString title)
{
    if (!title.isNull())
        _buttonTitles.push_back(std::move(title));
}

NSModalResponse NSAlert::runModal()
{
    if (_isRunning)
        return NSModalResponseAbort;
    const RetainPtr<NSAlert> keep = this;
    const ScopedFlag running(_isRunning);
    NSApplication* const application = NSApplication::sharedApplication();

    HostAlert alert;
    alert.message = _messageText;
    alert.informativeText = _informativeText;
    alert.buttons = _buttonTitles;
    if (alert.buttons.empty())
        alert.buttons.push_back(localized("OK"));
    alert.cancelButton = cancelButton(alert.buttons);
    alert.isDark = application->effectiveAppearance()->bestMatchFromAppearancesWithNames(
                       {NSAppearanceNameAqua, NSAppearanceNameDarkAqua})
        == NSAppearanceNameDarkAqua;

    RetainPtr<NSWindow> window;
    if (_accessoryView) {
        window = make<NSWindow>(NSRect{NSZeroPoint, _accessoryView->frame().size},
            NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
        window->setContentView(_accessoryView);
        window->willShow();
        alert.accessory = &window->host();
    }
    const NSModalResponse response = application->runModal(alert);
    if (window)
        window->setContentView(nullptr);
    return response;
}
