// Alerts: buttons that open one of each kind, and a card that shows what came back. A status item in the
// desktop's tray, where there is one; a click on it opens an alert too.

#include "Icon.h"
#include "Page.h"
#include "Text.h"

#include <KorvidAppKit/ZRAlert.h>
#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRSwitchControl.h>

#include <AppKit/NSApplication.h>
#include <AppKit/NSButton.h>
#include <AppKit/NSStatusBar.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kAlertButtonGap = 12;

/// Shows what the last alert returned.
class AnswerCard : public NSView {
public:
    void setAnswer(NSString answer)
    {
        _answer = std::move(answer);
        setNeedsDisplay(true);
    }
    const NSString& answer() const { return _answer; }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "What came back");
        const NSRect above = aboveCaption(bounds());
        drawLabel(context, shortenedText(_answer, kCardText, above.size.width - 2 * kAlertButtonGap),
            {NSMidX(above), NSMidY(above)}, kCardText, LabelPlace::CentredOnPoint);
    }

protected:
    ~AnswerCard() override = default;

private:
    NSString _answer = "Nothing yet";
};

/// The buttons, one below the other.
class AlertButtonsCard : public NSView {
public:
    explicit AlertButtonsCard(RetainPtr<AnswerCard> answer)
        : _answer(std::move(answer))
    {
        addButton("Message", selector<&AlertButtonsCard::showMessage>);
        addButton("Three buttons", selector<&AlertButtonsCard::showButtons>);
        addButton("Formatted message", selector<&AlertButtonsCard::showPanel>);
        addButton("Accessory view", selector<&AlertButtonsCard::showAccessory>);
        addButton("Long text", selector<&AlertButtonsCard::showLongText>);
    }

    void showMessage()
    {
        ZRAlert("The export is complete.", "12 pictures are in the folder “Holiday”.");
        _answer->setAnswer("ZRAlert returned");
    }

    void showButtons()
    {
        ZRAlertBlock("Save the changes?", "They are lost otherwise.", {"Save", "Cancel", "Discard"},
            [this](NSInteger index) {
                _answer->setAnswer(NSString::stringWithFormat("ZRAlertBlock called back with %d", index));
            });
    }

    void showPanel()
    {
        const NSModalResponse response = ZRRunAlertPanel("Delete the album?", "%@ has %d pictures, %.1f MB.",
            "Delete", "Cancel", nullptr, "“Holiday”", 12, 34.5);
        _answer->setAnswer(NSString::stringWithFormat("ZRRunAlertPanel returned %d", response));
    }

    void showAccessory()
    {
        const auto control = make<ZRSwitchControl>(NSMakeRect(0, 0, 88, 32));
        control->setAccessibilityLabel("Notify");
        const auto configuration = make<NSMutableDictionary>();
        configuration->setObject(control, kZRAlertAccessoryViewKey);
        ZRAlertBlockWithConf(
            "Notify you of new versions?", nullptr, {"Apply", "Cancel"},
            [&](NSInteger index) {
                _answer->setAnswer(NSString::stringWithFormat(
                    "Called back with %d, the switch is %s", index, control->isOn() ? "on" : "off"));
            },
            configuration);
    }

    void showLongText()
    {
        std::string text;
        for (int i = 1; i <= 200; ++i)
            text += "Picture " + std::to_string(i) + " was copied.\n";
        ZRAlertBlock("The log of the export", NSString(text), {"Close"}, [this](NSInteger index) {
            _answer->setAnswer(NSString::stringWithFormat("ZRAlertBlock called back with %d", index));
        });
    }

    void showStatusItem()
    {
        const NSRect place = ZRAppKitAdditions::rectOnScreen(_statusItem);
        ZRAlert("You clicked the gallery's status item.",
            NSString::stringWithFormat("Its place on the screen: %g, %g.", place.origin.x, place.origin.y));
        _answer->setAnswer("The status item was clicked");
    }

    /// The status item is in the tray as long as the page is in a window on a display.
    void viewDidMoveToWindow() override
    {
        _statusItem = nullptr;
        if (!window() || !NSApplication::sharedApplication()->hasDisplay())
            return;
        _statusItem = NSStatusBar::systemStatusBar()->statusItemWithLength(NSSquareStatusItemLength);
        NSStatusBarButton* const button = _statusItem->button();
        button->setToolTip("KorvidAppKit's gallery");
        button->setImage(makeGalleryIcon(NSStatusBar::systemStatusBar()->thickness()));
        button->setTarget(this);
        button->setAction(selector<&AlertButtonsCard::showStatusItem>);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        const NSRect room = NSInsetRect(aboveCaption(bounds()), kAlertButtonGap, kAlertButtonGap);
        const auto count = CGFloat(subviews().size());
        const CGFloat height = std::min(28.0, std::floor((room.size.height - (count - 1) * 6) / count));
        const CGFloat width = std::min(room.size.width, 200.0);
        const CGFloat step =
            std::min(height + kAlertButtonGap, std::floor((room.size.height - height) / (count - 1)));
        CGFloat top = std::round(NSMidY(room) + (height + step * (count - 1)) / 2);
        for (const auto& button : subviews()) {
            button->setFrame(NSMakeRect(std::round(NSMidX(room) - width / 2), top - height, width, height));
            top -= step;
        }
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Alerts");
    }

protected:
    ~AlertButtonsCard() override = default;

private:
    void addButton(const char* title, SEL action)
    {
        addSubview(NSButton::buttonWithTitle(title, this, action));
    }

    const RetainPtr<AnswerCard> _answer;
    RetainPtr<NSStatusItem> _statusItem;
};

RetainPtr<NSView> makeAlertsPage(const GalleryOptions&)
{
    const auto answer = make<AnswerCard>();
    std::vector<RetainPtr<NSView>> cards{make<AlertButtonsCard>(answer), answer};
    return makeGalleryPage(std::move(cards), [](NSRect inside) {
        const CGFloat low = std::round(inside.size.height * 0.26);
        return std::vector<NSRect>{NSMakeRect(NSMinX(inside), NSMinY(inside) + low + kGalleryGap,
                                       inside.size.width, inside.size.height - low - kGalleryGap),
            NSMakeRect(NSMinX(inside), NSMinY(inside), inside.size.width, low)};
    });
}

const GalleryPage alertsPage{"alerts", 94, "Alerts",
    "A button opens each kind of alert, and the card below shows what came back. Return presses an alert's "
    "first button, Escape the one that cancels. Where the desktop has a tray, the gallery has a status item "
    "there; click it.",
    makeAlertsPage};

} // namespace
