#include "AppKit/testing/AccessibilityListener.h"
#include "QtTestSupport.h"

#include <AppKit/NSTextField.h>
#include <Foundation/NSNumber.h>
#include <QAccessible>
#include <gtest/gtest.h>
#include <optional>

// What Qt's bridges to assistive technology see of a window's views.

namespace {

/// A check box without a look.
class Lamp : public NSControl {
public:
    using NSControl::NSControl;
    bool isLit = false;
    std::function<void()> onClick;

    bool acceptsFirstResponder() const override { return isEnabled(); }
    NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityCheckBoxRole; }
    RetainPtr<NSObject> accessibilityValue() const override { return NSNumber::numberWithBool(isLit); }
    void performClick(NSObject*) override
    {
        isLit = !isLit;
        NSAccessibilityPostNotification(this, NSAccessibilityValueChangedNotification);
        if (onClick)
            onClick();
    }
};

/// An element with others inside, and a value in words.
class Panel : public NSView {
public:
    using NSView::NSView;
    NSString words;
    bool isAccessibilityElement() const override { return true; }
    NSString accessibilityValueDescription() const override { return words; }
};

/// The notifications that reached Qt, as "event name": the name of the element they are about.
std::vector<std::string>* events = nullptr;

std::string nameOf(QAccessible::Event event)
{
    switch (event) {
    case QAccessible::Focus:
        return "focus";
    case QAccessible::NameChanged:
        return "name";
    case QAccessible::ValueChanged:
        return "value";
    case QAccessible::DescriptionChanged:
        return "description";
    case QAccessible::ObjectCreated:
        return "created";
    case QAccessible::ObjectDestroyed:
        return "destroyed";
    default:
        return "other";
    }
}

void recordEvent(QAccessibleEvent* event)
{
    const QAccessibleInterface* const interface = event->accessibleInterface();
    if (!events || !interface || interface->role() == QAccessible::Window || interface->object())
        return;
    std::string name = nameOf(event->type());
    if (event->type() == QAccessible::StateChanged) {
        const auto changed = static_cast<QAccessibleStateChangeEvent*>(event)->changedStates();
        name = changed.checked ? (interface->state().checked ? "checked" : "unchecked")
            : changed.disabled ? (interface->state().disabled ? "disabled" : "enabled")
                               : "other state";
    }
    if (event->type() == QAccessible::ValueChanged)
        name +=
            " '" + static_cast<QAccessibleValueChangeEvent*>(event)->value().toString().toStdString() + "'";
    events->push_back(name + " " + interface->text(QAccessible::Name).toStdString());
}

/// A window of 200 x 100 points with, from the left, a lamp in two plain views, and a panel with a lamp.
class Accessibility : public testing::Test {
protected:
    Accessibility()
    {
        window = shownWindow(NSMakeRect(100, 100, 200, 100), root);
        lamp->setAccessibilityLabel("Lamp");
        panel->setAccessibilityLabel("Panel");
        inner->setAccessibilityLabel("Inner");
        const auto plain = make<NSView>(NSMakeRect(10, 10, 80, 80));
        plain->addSubview(lamp);
        root->addSubview(plain);
        panel->addSubview(inner);
        root->addSubview(panel);
        EXPECT_TRUE(serveUntil([&] { return window->isKeyWindow() && widgetOf(*window)->hasFocus(); }));
        events = &recorded;
        listener.emplace(recordEvent);
    }
    ~Accessibility() override { events = nullptr; }

    QAccessibleInterface* top() const { return QAccessible::queryAccessibleInterface(widgetOf(*window)); }
    QAccessibleInterface* lampInterface() const { return top()->child(0); }
    QAccessibleInterface* panelInterface() const { return top()->child(1); }

    RetainPtr<NSView> root = make<NSView>();
    RetainPtr<Lamp> lamp = make<Lamp>(NSMakeRect(5, 20, 60, 24));
    RetainPtr<Panel> panel = make<Panel>(NSMakeRect(100, 0, 100, 100));
    RetainPtr<Lamp> inner = make<Lamp>(NSMakeRect(0, 0, 50, 50));
    RetainPtr<NSWindow> window;
    std::vector<std::string> recorded;
    std::optional<AccessibilityListener> listener;
    using Events = std::vector<std::string>;
};

TEST_F(Accessibility, AWindowHasTheElementsInsideAsItsChildren)
{
    ASSERT_NE(top(), nullptr);
    EXPECT_EQ(top()->role(), QAccessible::Window);
    EXPECT_EQ(top()->text(QAccessible::Name).toStdString(), window->title().UTF8String());
    ASSERT_EQ(top()->childCount(), 2);
    EXPECT_EQ(lampInterface()->text(QAccessible::Name), "Lamp");
    EXPECT_EQ(panelInterface()->text(QAccessible::Name), "Panel");
    EXPECT_EQ(top()->indexOfChild(panelInterface()), 1);
    EXPECT_EQ(top()->indexOfChild(top()), -1);
    EXPECT_EQ(top()->child(2), nullptr);
    EXPECT_EQ(top()->child(-1), nullptr);
    EXPECT_EQ(top()->child(0), lampInterface()); // the same one each time
}

TEST_F(Accessibility, ElementsHaveTheElementsInsideAsTheirChildren)
{
    ASSERT_EQ(panelInterface()->childCount(), 1);
    QAccessibleInterface* const child = panelInterface()->child(0);
    EXPECT_EQ(child->text(QAccessible::Name), "Inner");
    EXPECT_EQ(child->parent(), panelInterface());
    EXPECT_EQ(panelInterface()->indexOfChild(child), 0);
    EXPECT_EQ(panelInterface()->indexOfChild(lampInterface()), -1);
    EXPECT_EQ(panelInterface()->parent(), top());
    EXPECT_EQ(lampInterface()->parent(), top());
    EXPECT_EQ(lampInterface()->childCount(), 0);
}

TEST_F(Accessibility, RolesAreQtsOwn)
{
    EXPECT_EQ(lampInterface()->role(), QAccessible::CheckBox);
    EXPECT_EQ(panelInterface()->role(), QAccessible::Grouping);
    root->addSubview(make<NSControl>(NSMakeRect(0, 0, 5, 5)));
    EXPECT_EQ(top()->child(2)->role(), QAccessible::Button);
}

TEST_F(Accessibility, RectanglesAreOnTheScreenWithYDown)
{
    const QPoint corner = widgetOf(*window)->mapToGlobal(QPoint(0, 0));
    // In the window from (15, 30) to (75, 54), y upward.
    EXPECT_EQ(lampInterface()->rect(), QRect(15, 46, 60, 24).translated(corner));
    EXPECT_EQ(panelInterface()->rect(), QRect(100, 0, 100, 100).translated(corner));
}

TEST_F(Accessibility, TheElementUnderAPointIsTheInnermostOne)
{
    const QPoint corner = widgetOf(*window)->mapToGlobal(QPoint(0, 0));
    const auto elementAt = [&](int x, int y) { return top()->childAt(corner.x() + x, corner.y() + y); };
    EXPECT_EQ(elementAt(15, 46), lampInterface());
    EXPECT_EQ(elementAt(74, 69), lampInterface());
    EXPECT_EQ(elementAt(75, 69), nullptr); // in plain views only
    EXPECT_EQ(elementAt(150, 10), panelInterface());
    EXPECT_EQ(elementAt(110, 90), panelInterface()->child(0));
    EXPECT_EQ(panelInterface()->childAt(corner.x() + 110, corner.y() + 90), panelInterface()->child(0));
    EXPECT_EQ(panelInterface()->childAt(corner.x() + 150, corner.y() + 10), nullptr);
    EXPECT_EQ(panelInterface()->childAt(corner.x() + 15, corner.y() + 46), nullptr);
}

TEST_F(Accessibility, ACheckBoxIsCheckedByItsValue)
{
    EXPECT_TRUE(lampInterface()->state().checkable);
    EXPECT_FALSE(lampInterface()->state().checked);
    lamp->isLit = true;
    EXPECT_TRUE(lampInterface()->state().checked);
    EXPECT_FALSE(panelInterface()->state().checkable);
}

TEST_F(Accessibility, StatesFollowTheView)
{
    EXPECT_TRUE(lampInterface()->state().focusable);
    EXPECT_FALSE(lampInterface()->state().disabled);
    EXPECT_FALSE(lampInterface()->state().invisible);
    EXPECT_FALSE(lampInterface()->state().offscreen);
    EXPECT_FALSE(panelInterface()->state().focusable);
    lamp->setEnabled(false);
    EXPECT_TRUE(lampInterface()->state().disabled);
    EXPECT_FALSE(lampInterface()->state().focusable);
    lamp->setFrameOrigin(NSMakePoint(500, 500));
    EXPECT_TRUE(lampInterface()->state().offscreen);
    EXPECT_EQ(recorded, Events{"disabled Lamp"});
}

TEST_F(Accessibility, AHiddenViewIsNoChild)
{
    QAccessibleInterface* const hidden = lampInterface();
    lamp->superview()->setHidden(true);
    ASSERT_EQ(top()->childCount(), 1);
    EXPECT_EQ(top()->child(0)->text(QAccessible::Name), "Panel");
    EXPECT_TRUE(hidden->state().invisible);
    lamp->superview()->setHidden(false);
    EXPECT_EQ(top()->childCount(), 2);
    EXPECT_EQ(recorded, (Events{"destroyed Lamp", "created Lamp"}));
}

TEST_F(Accessibility, WithoutALabelTheToolTipIsTheName)
{
    lamp->setToolTip("Lights the room");
    EXPECT_EQ(lampInterface()->text(QAccessible::Name), "Lamp");
    EXPECT_EQ(lampInterface()->text(QAccessible::Description), "Lights the room");
    lamp->setAccessibilityLabel(nullptr);
    EXPECT_EQ(lampInterface()->text(QAccessible::Name), "Lights the room");
    EXPECT_EQ(lampInterface()->text(QAccessible::Description), "");
}

TEST_F(Accessibility, TheNameOfStaticTextIsTheText)
{
    const auto field = NSTextField::labelWithString("Ready");
    root->addSubview(field);
    QAccessibleInterface* const interface = top()->child(2);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->role(), QAccessible::StaticText);
    EXPECT_EQ(interface->text(QAccessible::Name), "Ready");
    EXPECT_EQ(interface->text(QAccessible::Value), "Ready");
    recorded.clear();
    field->setStringValue("Done");
    EXPECT_EQ(interface->text(QAccessible::Name), "Done");
    EXPECT_EQ(recorded, (Events{"value 'Done' Done", "name Done"}));
    field->setAttributedStringValue(make<NSAttributedString>("Done"));
    EXPECT_EQ(recorded.size(), 2U) << "the same text";

    field->setAccessibilityLabel("State");
    EXPECT_EQ(interface->text(QAccessible::Name), "State");
    EXPECT_EQ(interface->text(QAccessible::Value), "Done");
}

TEST_F(Accessibility, AValueInWordsIsAlsoTheDescription)
{
    EXPECT_EQ(panelInterface()->text(QAccessible::Value), "");
    panel->words = "half full";
    EXPECT_EQ(panelInterface()->text(QAccessible::Value), "half full");
    EXPECT_EQ(panelInterface()->text(QAccessible::Description), "half full");
    EXPECT_EQ(panelInterface()->text(QAccessible::Help), "");
    NSAccessibilityPostNotification(panel, NSAccessibilityValueChangedNotification);
    EXPECT_EQ(recorded, (Events{"value 'half full' Panel", "description Panel"}));
}

TEST_F(Accessibility, ChangesAreReported)
{
    lamp->performClick(nullptr);
    lamp->performClick(nullptr);
    lamp->setEnabled(false);
    lamp->setEnabled(true);
    lamp->setEnabled(true);
    lamp->setAccessibilityLabel("Light");
    EXPECT_EQ(
        recorded, (Events{"checked Lamp", "unchecked Lamp", "disabled Lamp", "enabled Lamp", "name Light"}));
}

TEST_F(Accessibility, ViewsThatAreNoElementsReportNothing)
{
    NSAccessibilityPostNotification(lamp->superview(), NSAccessibilityValueChangedNotification);
    NSAccessibilityPostNotification(root, NSAccessibilityTitleChangedNotification);
    NSAccessibilityPostNotification(lamp, "AXUnknown");
    EXPECT_EQ(recorded, Events{});
}

TEST_F(Accessibility, TheToggleActionPerformsAClick)
{
    QAccessibleActionInterface* const actions = lampInterface()->actionInterface();
    ASSERT_NE(actions, nullptr);
    EXPECT_EQ(actions->actionNames(),
        (QStringList{
            QAccessibleActionInterface::toggleAction(), QAccessibleActionInterface::setFocusAction()}));
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(lamp->isLit);
    actions->doAction(QAccessibleActionInterface::pressAction());
    actions->doAction({});
    EXPECT_TRUE(lamp->isLit);
    lamp->setEnabled(false);
    EXPECT_EQ(actions->actionNames(), QStringList{});
    EXPECT_EQ(panelInterface()->actionInterface()->actionNames(), QStringList{});
}

TEST_F(Accessibility, TheFocusFollowsTheFirstResponder)
{
    EXPECT_EQ(top()->focusChild(), nullptr);
    lampInterface()->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(window->firstResponder(), lamp.get());
    EXPECT_EQ(top()->focusChild(), lampInterface());
    EXPECT_TRUE(lampInterface()->state().focused);
    EXPECT_FALSE(top()->state().focused);

    window->makeFirstResponder(inner);
    EXPECT_FALSE(lampInterface()->state().focused);
    EXPECT_EQ(top()->focusChild(), panelInterface()->child(0));
    EXPECT_EQ(panelInterface()->focusChild(), panelInterface()->child(0));
    EXPECT_EQ(lampInterface()->focusChild(), nullptr);
    EXPECT_EQ(recorded, (Events{"focus Lamp", "focus Inner"}));
}

TEST_F(Accessibility, TheFocusIsReportedWhenTheWindowBecomesKey)
{
    window->makeFirstResponder(lamp);
    const auto other = shownWindow(NSMakeRect(0, 0, 50, 50), make<NSView>().get());
    EXPECT_TRUE(serveUntil([&] { return other->isKeyWindow(); }));
    EXPECT_FALSE(lampInterface()->state().focused);
    recorded.clear();
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(serveUntil([&] { return !recorded.empty(); }));
    EXPECT_EQ(recorded, Events{"focus Lamp"});
}

TEST_F(Accessibility, ViewsThatComeAndGoAreReported)
{
    const auto superview = RetainPtr<NSView>(lamp->superview());
    const QAccessible::Id identifier = QAccessible::uniqueId(lampInterface());
    superview->removeFromSuperview();
    EXPECT_EQ(recorded, Events{"destroyed Lamp"});
    EXPECT_EQ(top()->childCount(), 1);
    EXPECT_EQ(QAccessible::accessibleInterface(identifier), nullptr);
    root->addSubview(superview);
    EXPECT_EQ(recorded.at(recorded.size() - 1), "created Lamp");
    EXPECT_EQ(top()->childCount(), 2);

    recorded.clear();
    root->addSubview(superview); // only moves within the window
    EXPECT_EQ(recorded, Events{});
}

TEST_F(Accessibility, ANewContentViewReplacesTheElements)
{
    const QAccessible::Id identifier = QAccessible::uniqueId(panelInterface());
    const auto lonely = make<Lamp>();
    lonely->setAccessibilityLabel("Lonely");
    window->setContentView(lonely);
    EXPECT_EQ(QAccessible::accessibleInterface(identifier), nullptr);
    ASSERT_EQ(top()->childCount(), 1);
    EXPECT_EQ(lampInterface()->text(QAccessible::Name), "Lonely");
    window->setContentView(nullptr);
    EXPECT_EQ(top()->childCount(), 0);
    EXPECT_EQ(top()->childAt(150, 150), nullptr);
}

TEST_F(Accessibility, AViewMayLeaveInItsOwnAction)
{
    lamp->onClick = [this] {
        lamp->removeFromSuperview();
        lamp = nullptr;
    };
    const QAccessible::Id identifier = QAccessible::uniqueId(lampInterface());
    lampInterface()->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(QAccessible::accessibleInterface(identifier), nullptr);
    EXPECT_EQ(top()->childCount(), 1);
}

TEST_F(Accessibility, TheWindowMayGoInAnAction)
{
    const QAccessible::Id identifier = QAccessible::uniqueId(panelInterface());
    lamp->onClick = [this] { window = nullptr; };
    lampInterface()->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(QAccessible::accessibleInterface(identifier), nullptr);
}

} // namespace
