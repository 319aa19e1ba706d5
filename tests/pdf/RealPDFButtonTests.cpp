#include "PDFFiles.h"
#include "QtTestSupport.h"
#include "XServer.h"

#include <KorvidAppKit/ZRPDFButtonCell.h>

#include <AppKit/NSButton.h>
#include <CoreGraphics/CGColor.h>
#include <QPixmap>
#include <QScreen>

#include <array>

// A button in a window of a real X server, with a mouse that is moved from outside.

namespace {

constexpr int kWidth = 120;
constexpr int kHeight = 90;

class Controller : public NSObject {
public:
    int clicks = 0;
    void clicked() { ++clicks; }
};

RetainPtr<CGColor> makeColor(CGFloat red, CGFloat green)
{
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const std::array<CGFloat, 4> components{red, green, 0, 1};
    return adopt(CGColorCreate(space, components.data()));
}

/// A window at the top left of the screen, so that the screen's pixels are its own, with a button of 40 x 40
/// points at (20, 10). The lower left quarter of its icon is painted: red, and green while pressed.
struct Stage {
    RetainPtr<Controller> controller = make<Controller>();
    RetainPtr<NSButton> button = make<NSButton>(NSMakeRect(20, 10, 40, 40));
    RetainPtr<ZRPDFButtonCell> cell = make<ZRPDFButtonCell>();
    RetainPtr<NSWindow> window;

    Stage()
    {
        cell->setPdf(loadCorner());
        cell->setPdfColor(makeColor(1, 0));
        cell->setPdfHighlightColor(makeColor(0, 1));
        button->setCell(cell);
        button->setTarget(controller);
        button->setAction(selector<&Controller::clicked>);
        const auto root = make<NSView>();
        root->addSubview(button);
        window = shownWindow(NSMakeRect(0, 0, kWidth, kHeight), root, NSWindowStyleMaskBorderless);
        window->setFrameOrigin(NSMakePoint(0, widget()->screen()->geometry().height() - kHeight));
        EXPECT_TRUE(serveUntil([&] { return widget()->geometry().topLeft() == QPoint(0, 0); }));
    }

    /// The colours of the icon on the screen: "red 20 60 20 20" for the pixels of a rectangle, from the top
    /// left.
    std::string icon() const
    {
        const QImage screen =
            widget()->screen()->grabWindow(widget()->winId()).toImage().convertToFormat(QImage::Format_RGB32);
        return painted(screen, "red", qRgb(255, 0, 0)) + painted(screen, "green", qRgb(0, 255, 0));
    }
    /// Waits until the icon has been redrawn, and the action sent so often.
    testing::AssertionResult becomes(const std::string& expected, int clicks) const
    {
        if (serveUntil([&] { return icon() == expected && controller->clicks == clicks; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << icon() << ", " << controller->clicks << " clicks";
    }

private:
    QWidget* widget() const { return widgetOf(*window); }

    /// The pixels of a colour, if they fill a rectangle. Empty without any.
    static std::string painted(const QImage& image, const std::string& name, QRgb color)
    {
        QRect box;
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != color)
                    continue;
                box |= QRect(x, y, 1, 1);
                ++count;
            }
        }
        if (count == 0)
            return {};
        if (count != box.width() * box.height())
            return name + " with holes";
        return name + " " + std::to_string(box.x()) + " " + std::to_string(box.y()) + " "
            + std::to_string(box.width()) + " " + std::to_string(box.height());
    }
};

void press(const char* scale)
{
    setenv("QT_SCALE_FACTOR", scale, 1);
    const int factor = std::atoi(scale);
    const XServer server;
    const Stage stage;
    ASSERT_EQ(stage.window->backingScaleFactor(), factor);
    const auto move = [&](int x, int y) {
        xdotool({"mousemove", std::to_string(x * factor), std::to_string((kHeight - y) * factor)});
    };
    const std::string corner = factor == 1 ? " 20 60 20 20" : " 40 120 40 40";
    EXPECT_TRUE(stage.becomes("red" + corner, 0));

    move(50, 40); // where nothing of the icon is painted
    xdotool({"mousedown", "1"});
    EXPECT_TRUE(stage.becomes("green" + corner, 0));
    move(70, 30); // beside the button
    EXPECT_TRUE(stage.becomes("red" + corner, 0));
    move(30, 20);
    EXPECT_TRUE(stage.becomes("green" + corner, 0));
    move(400, -200); // out of the window
    EXPECT_TRUE(stage.becomes("red" + corner, 0));
    move(21, 49);
    EXPECT_TRUE(stage.becomes("green" + corner, 0));
    xdotool({"mouseup", "1"});
    EXPECT_TRUE(stage.becomes("red" + corner, 1));

    xdotool({"mousedown", "1"});
    EXPECT_TRUE(stage.becomes("green" + corner, 1));
    move(100, 80);
    EXPECT_TRUE(stage.becomes("red" + corner, 1));
    xdotool({"mouseup", "1"});
    move(30, 20);
    xdotool({"click", "1"}); // arrives after the release outside, which sends nothing
    EXPECT_TRUE(stage.becomes("red" + corner, 2));

    // A button that stays on keeps the highlight.
    stage.button->setButtonType(NSButtonTypePushOnPushOff);
    xdotool({"click", "1"});
    EXPECT_TRUE(stage.becomes("green" + corner, 3));
    xdotool({"click", "1"});
    EXPECT_TRUE(stage.becomes("red" + corner, 4));
}

} // namespace

// Each in a process of its own, since Qt connects to one window system only.

TEST(ZRPDFButtonCellRealInputDeathTest, ARealMousePressesTheIconAtScaleOne)
{
    EXPECT_EXIT((press("1"), finish()), testing::ExitedWithCode(0), "");
}

TEST(ZRPDFButtonCellRealInputDeathTest, ARealMousePressesTheIconAtScaleTwo)
{
    EXPECT_EXIT((press("2"), finish()), testing::ExitedWithCode(0), "");
}
