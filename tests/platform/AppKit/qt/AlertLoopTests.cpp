#include "../RecordingView.h"
#include "AlertTestSupport.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <Foundation/CFDate.h>
#include <Foundation/NSDate.h>
#include <Foundation/NSTimer.h>

// What happens around an alert that is shown, and in its accessory view.

namespace {

/// The widget that shows the accessory view of the alert on top.
QWidget* accessoryWidget()
{
    for (QWidget* child : shownAlert()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (child->objectName().isEmpty())
            return child;
    }
    return nullptr;
}

RetainPtr<NSDate> secondsFromNow(NSTimeInterval seconds)
{
    return NSDate::dateWithTimeIntervalSinceReferenceDate(CFAbsoluteTimeGetCurrent() + seconds);
}

struct Accessory {
    Log log;
    RetainPtr<RecordingView> root = make<RecordingView>(NSMakeRect(7, 9, 120, 60), "root", log);
    RetainPtr<RecordingView> view = make<RecordingView>(NSMakeRect(20, 10, 50, 30), "view", log);
    RetainPtr<NSAlert> alert = makeAlert({"One", "Two"});

    Accessory()
    {
        root->addSubview(view);
        alert->setAccessoryView(root);
    }
};

TEST(NSAlertAccessory, ItIsDrawnAndTakesClicks)
{
    Accessory accessory;
    accessory.view->color = NSColor::redColor();
    answer(*accessory.alert, [&] {
        QWidget* const widget = accessoryWidget();
        EXPECT_EQ(widget->size(), QSize(120, 60));
        EXPECT_EQ(widget->grab().toImage().pixelColor(21, 48), QColor(255, 0, 0));
        accessory.log.clear();
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(30, 35));
        EXPECT_EQ(accessory.log.size(), 2U);
        EXPECT_TRUE(accessory.log.front().starts_with("view down"));
        EXPECT_TRUE(accessory.log.back().starts_with("view up"));
        pressAlertButton(0);
    });
}

TEST(NSAlertAccessory, ItsWindowKnowsItsPlaceOnTheScreen)
{
    Accessory accessory;
    answer(*accessory.alert, [&] {
        const auto isInPlace = [&] {
            const QPoint corner = accessoryWidget()->mapToGlobal(QPoint(0, 60));
            const NSRect place = accessory.view->window()->convertRectToScreen(NSMakeRect(0, 0, 1, 1));
            return place.origin.x == corner.x()
                && place.origin.y == qApp->primaryScreen()->geometry().height() - corner.y();
        };
        EXPECT_TRUE(isInPlace());
        shownAlert()->move(shownAlert()->pos() + QPoint(15, 25));
        EXPECT_TRUE(serveUntil(isInPlace));
        pressAlertButton(0);
    });
}

TEST(NSAlertAccessory, TabGoesThroughItsViewsAndOn)
{
    class KeyView : public NSView {
    public:
        using NSView::NSView;
        bool acceptsFirstResponder() const override { return true; }

    protected:
        ~KeyView() override = default;
    };
    const auto root = make<NSView>(NSMakeRect(0, 0, 120, 60));
    const auto first = make<KeyView>(NSMakeRect(50, 10, 20, 20));
    const auto second = make<KeyView>(NSMakeRect(80, 10, 20, 20));
    root->addSubview(first);
    root->addSubview(second);
    const auto alert = makeAlert({"One", "Two"});
    alert->setAccessoryView(root);
    answer(*alert, [&] {
        EXPECT_TRUE(QTest::qWaitForWindowActive(shownAlert()));
        NSWindow* const window = first->window();
        const auto focus = [&]() -> std::string {
            QWidget* const widget = shownAlert()->focusWidget();
            if (widget == alertButton(0))
                return "One";
            if (widget == alertButton(1))
                return "Two";
            EXPECT_TRUE(window->isKeyWindow());
            return window->firstResponder() == first ? "first"
                : window->firstResponder() == second ? "second"
                                                     : "nothing";
        };
        std::string order = focus();
        for (int i = 0; i < 4; ++i) {
            QTest::keyClick(shownAlert()->focusWidget(), Qt::Key_Tab);
            order += " " + focus();
        }
        EXPECT_EQ(order, "One Two first second One");
        order.clear();
        for (int i = 0; i < 4; ++i) {
            QTest::keyClick(shownAlert()->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
            order += " " + focus();
        }
        EXPECT_EQ(order, " second first Two One");
        EXPECT_FALSE(window->isKeyWindow());
        pressAlertButton(0);
    });
}

TEST(NSAlertAccessory, ReturnAndEscapeAnswerFromWithinIt)
{
    Accessory accessory;
    accessory.view->acceptsKeys = true;
    const auto press = [&](Qt::Key key) {
        return answer(*accessory.alert, [&] {
            accessoryWidget()->setFocus();
            QTest::keyClick(accessoryWidget(), key);
        });
    };
    EXPECT_EQ(press(Qt::Key_Return), 1000);
    accessory.alert->addButtonWithTitle("Cancel");
    EXPECT_EQ(press(Qt::Key_Escape), 1002);
}

TEST(NSAlertAccessory, AnAlertCanOpenAnother)
{
    Accessory accessory;
    NSModalResponse inner = 0;
    accessory.view->onMouseDown = [&](NSEvent*) {
        QDialog* const outer = shownAlert();
        inner = answer(*makeAlert({"A", "B", "C"}), [&] {
            EXPECT_NE(shownAlert(), outer);
            pressAlertButton(2);
        });
        EXPECT_EQ(shownAlert(), outer);
    };
    EXPECT_EQ(answer(*accessory.alert,
                  [&] {
                      QTest::mouseClick(accessoryWidget(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 35));
                      EXPECT_EQ(inner, 1002);
                      pressAlertButton(1);
                  }),
        1001);
}

TEST(NSAlertAccessory, ItGetsEventsWhileACallerWaitsForOthers)
{
    Accessory accessory;
    NSModalResponse response = 0;
    NSTimer::scheduledTimerWithTimeInterval(0.001, false, [&](NSTimer*) {
        response = answer(*accessory.alert, [&] {
            accessory.log.clear();
            QTest::mouseClick(accessoryWidget(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 35));
            EXPECT_EQ(accessory.log.size(), 2U);
            pressAlertButton(1);
        });
    });
    const auto deadline = secondsFromNow(0.05);
    const auto event = NSApplication::sharedApplication()->nextEventMatchingMask(
        NSEventMaskLeftMouseUp, deadline, NSDefaultRunLoopMode, true);
    EXPECT_FALSE(event);
    EXPECT_EQ(response, 1001);
}

TEST(NSAlertLoop, TimersFire)
{
    int count = 0;
    RetainPtr<NSTimer> timer;
    answer(*makeAlert({"OK"}), [&] {
        timer = NSTimer::scheduledTimerWithTimeInterval(0.001, true, [&](NSTimer*) {
            if (++count == 3)
                pressAlertButton(0);
        });
    });
    timer->invalidate();
    EXPECT_GE(count, 3);
}

TEST(NSAlertLoop, AbortModalEndsTheAlertOnTop)
{
    NSModalResponse inner = 0;
    EXPECT_EQ(answer(*makeAlert({"One", "Two"}),
                  [&] {
                      inner = answer(*makeAlert({"OK"}), [] { NSApp->abortModal(); });
                      EXPECT_TRUE(alertButton(1));
                      pressAlertButton(1);
                  }),
        1001);
    EXPECT_EQ(inner, NSModalResponseAbort);
    NSApp->abortModal(); // without an alert
    EXPECT_EQ(answer(*makeAlert({"OK"}), [] { pressAlertButton(0); }), 1000);
}

TEST(NSAlertLoop, StopEndsTheAlertsWithinTheLoop)
{
    std::vector<NSModalResponse> responses;
    const QObject context;
    QTimer::singleShot(0, &context, [&] {
        responses.push_back(answer(*makeAlert({"OK"}),
            [&] { responses.push_back(answer(*makeAlert({"OK"}), [] { NSApp->stop(); })); }));
    });
    NSApplication::sharedApplication()->run();
    EXPECT_EQ(responses, (std::vector<NSModalResponse>{NSModalResponseAbort, NSModalResponseAbort}));
    EXPECT_EQ(answer(*makeAlert({"OK"}), [] { pressAlertButton(0); }), 1000);
}

TEST(NSAlertLoop, TheAlertThatIsShownCannotBeShownAgain)
{
    const auto alert = makeAlert({"OK"});
    answer(*alert, [&] {
        EXPECT_EQ(alert->runModal(), NSModalResponseAbort);
        pressAlertButton(0);
    });
}

TEST(NSAlertLoop, TheActiveWindowMayBeDestroyedMeanwhile)
{
    auto window = shownWindow(NSMakeRect(100, 200, 100, 100), make<NSView>().get());
    activate(*window);
    EXPECT_EQ(answer(*makeAlert({"One", "Two"}),
                  [&] {
                      window = nullptr;
                      QCoreApplication::processEvents();
                      pressAlertButton(1);
                  }),
        1001);
}

TEST(NSAlertLoop, APressInAnotherWindowEndsWithoutARelease)
{
    Log log;
    const auto view = make<RecordingView>(NSMakeRect(0, 0, 100, 100), "view", log);
    const auto window = shownWindow(NSMakeRect(100, 100, 100, 100), view);
    bool endedEarly = false;
    view->onMouseDown = [&](NSEvent*) {
        NSTimer::scheduledTimerWithTimeInterval(
            0.001, false, [](NSTimer*) { answer(*makeAlert({"OK"}), [] { pressAlertButton(0); }); });
        const auto deadline = secondsFromNow(30);
        const auto event =
            NSApp->nextEventMatchingMask(NSEventMaskLeftMouseUp, deadline, NSDefaultRunLoopMode, true);
        endedEarly = !event && deadline->timeIntervalSinceReferenceDate() - CFAbsoluteTimeGetCurrent() > 10;
    };
    QTest::mousePress(widgetOf(*window), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    EXPECT_TRUE(endedEarly);
}

void endByExit()
{
    NSApplication::sharedApplication();
    EXPECT_EQ(answer(*makeAlert({"OK"}), [] { QCoreApplication::exit(5); }), NSModalResponseAbort);
}

TEST(NSAlertLoopDeathTest, TheEndOfAllLoopsIsNoAnswer)
{
    EXPECT_EXIT((endByExit(), finish()), testing::ExitedWithCode(0), "");
}

void terminateWithAlerts()
{
    std::vector<NSModalResponse> responses;
    const QObject context;
    NSApplication::sharedApplication();
    QTimer::singleShot(0, &context, [&] {
        responses.push_back(answer(*makeAlert({"One", "Two"}),
            [&] { responses.push_back(answer(*makeAlert({"OK"}), [] { NSApp->terminate(); })); }));
    });
    NSApp->run();
    responses.push_back(makeAlert({"OK"})->runModal());
    EXPECT_EQ(responses, std::vector<NSModalResponse>(3, NSModalResponseAbort));
}

TEST(NSAlertLoopDeathTest, TerminateEndsAllAlertsAndShowsNoMore)
{
    EXPECT_EXIT((terminateWithAlerts(), finish()), testing::ExitedWithCode(0), "");
}

} // namespace
