#include "EmbeddedViews.h"

#include <AppKit/NSApplication.h>
#include <QLocale>
#include <QPointer>
#include <QStyle>
#include <QVBoxLayout>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>

#include <memory>

namespace {

class KorvidWidgetLife : public EmbeddedViews { };

/// A program that has settings of its own when it makes its first widget.
void useSettings()
{
    makeApplicationOnce();
    qApp->setStyleSheet(QStringLiteral("QLabel { color: red }"));
    QLocale::setDefault(QLocale(QLocale::German));
    const QByteArray style = QApplication::style()->metaObject()->className();
    const auto* const application = QCoreApplication::instance();
    const KorvidWidget widget(make<NSView>(NSMakeRect(0, 0, 10, 10)));
    EXPECT_EQ(QCoreApplication::instance(), application);
    EXPECT_EQ(qApp->styleSheet(), QStringLiteral("QLabel { color: red }"));
    EXPECT_TRUE(QApplication::quitOnLastWindowClosed());
    EXPECT_EQ(QLocale().language(), QLocale::German);
    EXPECT_EQ(QByteArray(QApplication::style()->metaObject()->className()), style);
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

TEST(KorvidWidgetLifeDeathTest, ChangesNothingOfTheProgramsApplication)
{
    EXPECT_EXIT(useSettings(), testing::ExitedWithCode(0), "");
}

TEST_F(KorvidWidgetLife, TheWidgetEndsFirst)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    {
        KorvidWidget widget(root);
        showActive(widget);
        EXPECT_EQ(widget.view(), root);
        EXPECT_EQ(root->window()->contentView(), root->superview());
        log.clear();
    }
    EXPECT_EQ(log, Log{"root leaves"});
    EXPECT_EQ(root->window(), nullptr);
    EXPECT_EQ(root->superview(), nullptr);
    root->setNeedsDisplay(true);
    root->invalidateIntrinsicContentSize();
    QCoreApplication::processEvents();
}

TEST_F(KorvidWidgetLife, TheViewEndsFirst)
{
    auto root = view("root", NSMakeRect(0, 0, 40, 30));
    const WeakPtr<RecordingView> weak(root);
    KorvidWidget widget(root);
    showActive(widget);
    root->removeFromSuperview();
    EXPECT_EQ(widget.view(), nullptr);
    EXPECT_EQ(widget.sizeHint(), QSize(0, 0));
    root = nullptr;
    EXPECT_EQ(weak.lock(), nullptr);
    widget.resize(70, 80);
    QTest::mouseClick(innerOf(widget), Qt::LeftButton, {}, {5, 5});
    QCoreApplication::processEvents();
}

TEST_F(KorvidWidgetLife, AViewMovesFromOneWidgetToAnother)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30), NSColor::redColor());
    QWidget window;
    QVBoxLayout layout(&window);
    KorvidWidget first(root);
    layout.addWidget(&first);
    showActive(window);
    KorvidWidget second(root);
    layout.addWidget(&second);
    EXPECT_EQ(first.view(), nullptr);
    EXPECT_EQ(second.view(), root);
    EXPECT_EQ(second.sizeHint(), QSize(40, 30));
    QCoreApplication::processEvents();
    EXPECT_EQ(second.grab().toImage().pixelColor(5, 5), QColor(255, 0, 0));
}

TEST_F(KorvidWidgetLife, SeveralWidgetsHaveWindowsOfTheirOwn)
{
    const auto one = view("one", NSMakeRect(0, 0, 40, 30));
    const auto two = view("two", NSMakeRect(0, 0, 40, 30));
    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const first = new KorvidWidget(one);
    auto* const second = new KorvidWidget(two);
    layout->addWidget(first);
    layout->addWidget(second);
    showActive(window);
    EXPECT_NE(one->window(), two->window());
    log.clear();
    QTest::mouseClick(innerOf(*second), Qt::LeftButton, {}, {5, 5});
    two->setNeedsDisplay(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(log, (Log{"two down 5 25 x1", "two up 5 25 x1", "two draws 0 0 40 30"}));

    delete first;
    log.clear();
    QTest::mouseClick(innerOf(*second), Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(log, (Log{"two down 5 25 x2", "two up 5 25 x2"}));
}

TEST_F(KorvidWidgetLife, AViewMayEndItsWidgetInAnEvent)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    QWidget window;
    const QPointer<KorvidWidget> widget = new KorvidWidget(root, &window);
    widget->setGeometry(0, 0, 40, 30);
    showActive(window);
    const QPointer<QWidget> inner = innerOf(*widget);
    root->onMouseDown = [&](NSEvent*) { delete widget; };
    QTest::mousePress(inner, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(widget, nullptr);
    EXPECT_EQ(root->window(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(inner, nullptr);
}

TEST_F(KorvidWidgetLife, AWindowThatOutlivesItsWidgetDoesNothing)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    auto widget = std::make_unique<KorvidWidget>(root);
    showActive(*widget);
    const RetainPtr<NSWindow> window = root->window();
    widget.reset();
    window->makeKeyAndOrderFront();
    window->orderFront();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(window->isKeyWindow());
    window->displayIfNeeded();
}

} // namespace
