#include "EmbeddedViews.h"

#include <KorvidAppKit/ZRSwitchControl.h>

#include <AppKit/NSApplication.h>
#include <AppKit/NSCursor.h>
#include <AppKit/NSTrackingArea.h>
#include <QAccessible>
#include <QDialog>
#include <QHelpEvent>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>
#include <QtTest/qtestspontaneevent.h>

namespace {

/// Takes keys, and handles none.
class Focusable : public NSView {
public:
    using NSView::NSView;
    bool acceptsFirstResponder() const override { return true; }
};

/// A program's window with a line edit, our widget, and a second line edit.
class KorvidWidgetInput : public EmbeddedViews {
protected:
    void show(const RetainPtr<NSView>& view)
    {
        layout->addWidget(before);
        widget = new KorvidWidget(view);
        layout->addWidget(widget);
        layout->addWidget(after);
        showActive(window);
        before->setFocus();
        log.clear();
    }
    RetainPtr<RecordingView> keyView(const char* name, NSRect frame)
    {
        auto made = view(name, frame);
        made->acceptsKeys = true;
        return made;
    }
    static void wheel(QWidget& target, int steps)
    {
        const QPointF place(5, 5);
        QWheelEvent event(place, target.mapToGlobal(place), {}, {0, 120 * steps}, Qt::NoButton, {},
            Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // Qt passes on only what the window system sends
        qApp->notify(&target, &event);
    }

    QDialog window;
    QVBoxLayout* const layout = new QVBoxLayout(&window);
    QLineEdit* const before = new QLineEdit;
    QLineEdit* const after = new QLineEdit;
    KorvidWidget* widget = nullptr;
};

TEST_F(KorvidWidgetInput, AClickTogglesASwitchAndQtsLoopMovesItsKnob)
{
    const auto toggle = make<ZRSwitchControl>(NSMakeRect(0, 0, 66, 24));
    show(toggle);
    QTest::mouseClick(innerOf(*widget), Qt::LeftButton, {}, {10, 10});
    EXPECT_TRUE(toggle->isOn());
    EXPECT_LT(toggle->switchPosition(), 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return toggle->switchPosition() == 1; }));
}

TEST_F(KorvidWidgetInput, AllButtonsAndDragsReachTheViews)
{
    show(view("view", NSMakeRect(0, 0, 40, 30)));
    QWidget* const inner = innerOf(*widget);
    QTest::mousePress(inner, Qt::LeftButton, {}, {10, 5});
    QTest::mouseMove(inner, {60, 5});
    QTest::mouseRelease(inner, Qt::LeftButton, {}, {60, 5});
    QTest::mouseClick(inner, Qt::RightButton, {}, {1, 1});
    QTest::mouseClick(inner, Qt::MiddleButton, {}, {2, 2});
    std::erase_if(log, [](const std::string& line) { return line.find("draws") != std::string::npos; });
    EXPECT_EQ(log,
        (Log{"view down 10 25 x1", "view dragged 60 25 x1", "view up 60 25 x1", "view right down 1 29 x1",
            "view right up 1 29 x1", "view other down 2 28 x1", "view other up 2 28 x1"}));
}

TEST_F(KorvidWidgetInput, TheWheelScrollsWhatIsAroundUnlessAViewHandlesIt)
{
    class Deaf : public NSView {
        using NSView::NSView;
    };
    QScrollArea area;
    const auto deaf = make<Deaf>(NSMakeRect(0, 0, 30, 900));
    auto* const scrolled = new KorvidWidget(deaf);
    area.setWidget(scrolled);
    area.resize(100, 100);
    showActive(area);
    ASSERT_GT(area.verticalScrollBar()->maximum(), 0);
    wheel(*innerOf(*scrolled), -1);
    EXPECT_GT(area.verticalScrollBar()->value(), 0);

    const int before = area.verticalScrollBar()->value();
    const auto deep = view("deep", NSMakeRect(0, 0, 30, 900));
    deaf->addSubview(deep);
    log.clear();
    wheel(*innerOf(*scrolled), -1);
    ASSERT_EQ(log.size(), 1U);
    EXPECT_EQ(log[0].rfind("deep scrolls 0 ", 0), 0U) << log[0];
    EXPECT_EQ(area.verticalScrollBar()->value(), before);
}

TEST_F(KorvidWidgetInput, ThePointerEntersAndLeavesTrackingAreasOfAnActiveWindow)
{
    const auto tracked = view("view", NSMakeRect(0, 0, 40, 30));
    show(tracked);
    QTest::mouseMove(innerOf(*widget), {30, 10}); // where the area begins without the pointer
    tracked->addTrackingArea(make<NSTrackingArea>(NSMakeRect(0, 0, 20, 30),
        NSTrackingMouseEnteredAndExited | NSTrackingActiveInKeyWindow, tracked, nullptr));
    QTest::mouseMove(innerOf(*widget), {31, 10});
    EXPECT_EQ(log, Log{});
    QTest::mouseMove(innerOf(*widget), {10, 10}); // while a line edit has the focus
    QTest::mouseMove(innerOf(*widget), {30, 10});
    ASSERT_EQ(log.size(), 2U);
    EXPECT_EQ(log[0].rfind("view entered", 0), 0U);
    EXPECT_EQ(log[1].rfind("view exited", 0), 0U);
}

TEST_F(KorvidWidgetInput, ACursorRectangleSetsTheCursor)
{
    class Hand : public NSView {
    public:
        using NSView::NSView;
        void resetCursorRects() override { addCursorRect(bounds(), NSCursor::pointingHandCursor()); }
    };
    const auto hand = make<Hand>(NSMakeRect(0, 0, 40, 30));
    show(hand);
    QTest::mouseMove(innerOf(*widget), {10, 10});
    EXPECT_EQ(innerOf(*widget)->cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(KorvidWidgetInput, TabEntersTheViewsAndLeavesThem)
{
    const auto root = make<NSView>(NSMakeRect(0, 0, 40, 30));
    const auto one = make<Focusable>(NSMakeRect(0, 0, 20, 30));
    const auto two = make<Focusable>(NSMakeRect(20, 0, 20, 30));
    root->addSubview(one);
    root->addSubview(two);
    show(root);
    const auto focus = [&]() -> std::string {
        QWidget* const focused = QApplication::focusWidget();
        if (focused != innerOf(*widget))
            return focused == before ? "before" : focused == after ? "after" : "nobody";
        NSResponder* const first = root->window()->firstResponder();
        EXPECT_TRUE(root->window()->isKeyWindow());
        return first == one ? "one" : first == two ? "two" : "window";
    };
    std::string path;
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        path += focus() + " ";
    }
    EXPECT_EQ(path, "one two after ");
    EXPECT_FALSE(root->window()->isKeyWindow());
    path.clear();
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        path += focus() + " ";
    }
    EXPECT_EQ(path, "two one before ");

    widget->setFocus();
    EXPECT_EQ(focus(), "one") << "the view that had it last";
}

TEST_F(KorvidWidgetInput, TabSkipsAWidgetWithoutKeyViews)
{
    show(view("root", NSMakeRect(0, 0, 40, 30)));
    auto* const second = new KorvidWidget(view("second", NSMakeRect(0, 0, 40, 30)));
    layout->insertWidget(2, second);
    QWidget::setTabOrder(widget, second);
    QWidget::setTabOrder(second, after);
    QTest::keyClick(before, Qt::Key_Tab);
    EXPECT_TRUE(after->hasFocus());
    QTest::keyClick(after, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(before->hasFocus());
    delete before;
    delete after;
    second->setFocus(Qt::TabFocusReason); // where nothing takes it, it comes to rest
    EXPECT_NE(QApplication::focusWidget(), nullptr);
}

TEST_F(KorvidWidgetInput, AClickMovesTheFocusOnlyToAViewThatTakesKeys)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    const auto key = keyView("key", NSMakeRect(20, 0, 20, 30));
    root->addSubview(key);
    show(root);
    QTest::mouseClick(innerOf(*widget), Qt::LeftButton, {}, {5, 5});
    EXPECT_TRUE(before->hasFocus());
    QTest::mouseClick(innerOf(*widget), Qt::LeftButton, {}, {25, 5});
    EXPECT_TRUE(innerOf(*widget)->hasFocus());
    EXPECT_EQ(root->window()->firstResponder(), key);
    log.clear();
    QTest::keyClick(innerOf(*widget), Qt::Key_A);
    EXPECT_EQ(log, (Log{"key key a", "key key up a"}));
}

TEST_F(KorvidWidgetInput, AKeyThatNoViewHandlesGoesToTheParent)
{
    show(make<Focusable>(NSMakeRect(0, 0, 40, 30)));
    widget->setFocus();
    QTest::keyClick(innerOf(*widget), Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible()) << "Escape closes a dialog";
}

TEST_F(KorvidWidgetInput, ShowsToolTips)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    root->setToolTip("explains");
    show(root);
    QHelpEvent event(QEvent::ToolTip, {5, 5}, innerOf(*widget)->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(innerOf(*widget), &event);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("explains"));
    QToolTip::hideText();
}

TEST_F(KorvidWidgetInput, TheViewsWindowIsWhereTheWidgetIs)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    show(root);
    NSWindow* const inside = root->window();
    ASSERT_NE(inside, nullptr);
    EXPECT_TRUE(inside->isVisible());
    const auto place = [&] {
        const QPoint corner = widget->mapToGlobal(QPoint(0, 30));
        const int screen = widget->screen()->geometry().height();
        return describe(NSMakePoint(corner.x(), screen - corner.y()));
    };
    EXPECT_EQ(describe(inside->convertPointToScreen(NSZeroPoint)), place());
    window.move(window.pos() + QPoint(31, 17));
    QCoreApplication::processEvents();
    EXPECT_EQ(describe(inside->convertPointToScreen(NSZeroPoint)), place());

    inside->setContentSize(NSMakeSize(200, 200));
    inside->orderOut();
    inside->close();
    EXPECT_TRUE(inside->isVisible());
    EXPECT_EQ(describe(root->frame()), "0 0 40 30");
    window.hide();
    EXPECT_FALSE(inside->isVisible());
}

TEST_F(KorvidWidgetInput, TheViewsAreInTheAccessibilityTree)
{
    const auto root = make<NSView>(NSMakeRect(0, 0, 100, 30));
    const auto toggle = make<ZRSwitchControl>(NSMakeRect(10, 2, 66, 24));
    toggle->setAccessibilityLabel("Lamp");
    root->addSubview(toggle);
    show(root);
    QAccessibleInterface* const outer = QAccessible::queryAccessibleInterface(widget);
    ASSERT_EQ(outer->childCount(), 1);
    QAccessibleInterface* const views = outer->child(0);
    EXPECT_EQ(views->role(), QAccessible::Grouping);
    EXPECT_EQ(views->parent()->object(), widget);
    ASSERT_EQ(views->childCount(), 1);
    QAccessibleInterface* const lamp = views->child(0);
    EXPECT_EQ(lamp->role(), QAccessible::CheckBox);
    EXPECT_EQ(lamp->text(QAccessible::Name), QStringLiteral("Lamp"));
    EXPECT_EQ(lamp->parent(), views);
    EXPECT_EQ(lamp->rect(), QRect(widget->mapToGlobal(QPoint(10, 4)), QSize(66, 24)));
    EXPECT_EQ(lamp->window(), window.windowHandle());
    lamp->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(toggle->isOn());
    EXPECT_TRUE(lamp->state().checked);
}

} // namespace
