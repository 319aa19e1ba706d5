#include "EmbeddedViews.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>

#include <cstdlib>

namespace {

/// The program's window.
class YellowWindow : public QWidget {
public:
    YellowWindow() { setPalette(QPalette(Qt::yellow)); }
};

class KorvidWidgetDrawing : public EmbeddedViews {
protected:
    static QColor at(QWidget& window, int x, int y) { return window.grab().toImage().pixelColor(x, y); }

    YellowWindow window;
};

TEST_F(KorvidWidgetDrawing, ShowsTheBackgroundWhereViewsPaintNothing)
{
    window.resize(100, 100);
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    root->addSubview(view("dot", NSMakeRect(0, 0, 10, 10), NSColor::redColor()));
    KorvidWidget widget(root, &window);
    widget.setGeometry(10, 20, 40, 30);
    showActive(window);
    EXPECT_EQ(at(window, 12, 48), QColor(255, 0, 0)); // the dot is at the bottom left
    EXPECT_EQ(at(window, 12, 22), QColor(255, 255, 0));
    EXPECT_EQ(at(window, 45, 48), QColor(255, 255, 0));
}

TEST_F(KorvidWidgetDrawing, FillsItsWindowsBackgroundColour)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    KorvidWidget widget(root, &window);
    widget.setGeometry(0, 0, 40, 30);
    showActive(window);
    root->window()->setBackgroundColor(NSColor::blueColor());
    EXPECT_EQ(at(window, 5, 5), QColor(0, 0, 255));
}

TEST_F(KorvidWidgetDrawing, RedrawsWhatAViewMarksAndNoMore)
{
    const auto root = view("root", NSMakeRect(0, 0, 40, 30));
    const auto dot = view("dot", NSMakeRect(20, 0, 10, 10), NSColor::redColor());
    root->addSubview(dot);
    KorvidWidget widget(root, &window);
    widget.setGeometry(10, 20, 40, 30);
    showActive(window);
    log.clear();
    QCoreApplication::processEvents();
    EXPECT_EQ(log, Log{}) << "nothing is drawn that was not marked";

    dot->color = NSColor::greenColor();
    dot->setNeedsDisplayInRect(NSMakeRect(2, 3, 4, 5));
    EXPECT_EQ(log, Log{});
    QCoreApplication::processEvents();
    EXPECT_EQ(log, (Log{"root draws 22 3 4 5", "dot draws 2 3 4 5"}));
    const QImage image = window.grab().toImage();
    EXPECT_EQ(image.pixelColor(10 + 23, 20 + 30 - 4), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(10 + 21, 20 + 30 - 4), QColor(255, 0, 0));
}

TEST_F(KorvidWidgetDrawing, ErasesWhatAViewNoLongerPaints)
{
    const auto dot = view("dot", NSMakeRect(0, 0, 10, 10), NSColor::redColor());
    KorvidWidget widget(dot, &window);
    widget.setGeometry(0, 0, 10, 10);
    showActive(window);
    EXPECT_EQ(at(window, 5, 5), QColor(255, 0, 0));
    dot->color = nullptr;
    dot->setNeedsDisplay(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(at(window, 5, 5), QColor(255, 255, 0));
}

TEST_F(KorvidWidgetDrawing, DrawsNothingWhileHidden)
{
    const auto dot = view("dot", NSMakeRect(0, 0, 10, 10), NSColor::redColor());
    KorvidWidget widget(dot, &window);
    widget.resize(10, 10);
    showActive(window);
    widget.hide();
    log.clear();
    dot->setNeedsDisplay(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(log, Log{});
    widget.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !log.empty(); }));
    EXPECT_EQ(log, Log{"dot draws 0 0 10 10"});
}

TEST_F(KorvidWidgetDrawing, IsDarkAsTheWidgetsPaletteIs)
{
    const auto root = view("root", NSMakeRect(0, 0, 10, 10));
    std::string drawn;
    root->onDraw = [&](NSRect) {
        const bool isDark = root->effectiveAppearance()->name() == NSAppearanceNameDarkAqua;
        EXPECT_EQ(NSAppearance::currentDrawingAppearance(), root->effectiveAppearance());
        drawn += isDark ? 'D' : 'L';
    };
    QWidget panel;
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::white);
    panel.setPalette(palette);
    KorvidWidget widget(root, &panel);
    widget.resize(10, 10);
    showActive(panel);
    EXPECT_EQ(drawn, "L");

    palette.setColor(QPalette::Window, QColor(40, 40, 40));
    panel.setPalette(palette);
    EXPECT_EQ(root->effectiveAppearance()->name(), NSString(NSAppearanceNameDarkAqua));
    QCoreApplication::processEvents();
    EXPECT_EQ(drawn, "LD");

    NSApp->setAppearance(NSAppearance::appearanceNamed(NSAppearanceNameAqua));
    QCoreApplication::processEvents();
    EXPECT_EQ(drawn.back(), 'L') << "what the application sets counts";
    NSApp->setAppearance(nullptr);
}

/// A program on two screens, the second of them with two pixels for each point.
void moveToAnotherScreen()
{
    const TemporaryFolder folder;
    const QJsonArray screens{
        QJsonObject{{"name", "one"}, {"x", 0}, {"y", 0}, {"width", 800}, {"height", 600}},
        QJsonObject{{"name", "two"}, {"x", 800}, {"y", 0}, {"width", 1600}, {"height", 1200}}};
    const std::string file =
        folder.write("screens.json", QJsonDocument(QJsonObject{{"screens", screens}}).toJson().toStdString());
    setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + file).c_str(), 1);
    // Not in the file: the scales there have no effect on windows from Qt 6.8 on.
    setenv("QT_SCREEN_SCALE_FACTORS", "one=1;two=2", 1);
    makeApplicationOnce();
    ASSERT_EQ(QGuiApplication::screens().size(), 2);

    Log log;
    const auto dot = make<RecordingView>(NSMakeRect(0, 0, 10, 10), "dot", log);
    std::vector<double> widths;
    dot->onDraw = [&](NSRect) { widths.push_back(dot->convertRectToBacking(dot->bounds()).size.width); };
    QWidget window;
    window.resize(50, 50);
    KorvidWidget widget(dot, &window);
    widget.setGeometry(0, 0, 10, 10);
    showActive(window);
    EXPECT_EQ(widths, std::vector<double>{10});
    window.move(900, 100);
    EXPECT_TRUE(QTest::qWaitFor([&] { return widths.size() > 1; }));
    EXPECT_EQ(widths, (std::vector<double>{10, 20}));
    EXPECT_EQ(dot->window()->backingScaleFactor(), 2);
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

TEST(KorvidWidgetScaleDeathTest, FollowsTheScreen)
{
    EXPECT_EXIT(moveToAnotherScreen(), testing::ExitedWithCode(0), "");
}

} // namespace
