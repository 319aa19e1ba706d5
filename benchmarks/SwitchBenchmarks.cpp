// Switches: one, and a window full of them in motion.

#include "Benchmarks.h"
#include "CurrentContext.h"
#include "PeerText.h"
#include "Table.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSWindow.h>
#include <KorvidAppKit/ZRSwitchControl.h>

#include <QCoreApplication>
#include <QWidget>
#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr Size kSwitch{60, 24};
constexpr Size kWindow{800, 600};
constexpr int kColumns = 6;
constexpr int kRows = 5;
constexpr int kFontSize = 11;

/// The frame of one of the window's switches.
CGRect switchFrame(int index)
{
    const int row = index / kColumns, column = index % kColumns;
    return CGRectMake(40 + column * 125, 40 + row * 110, kSwitch.width, kSwitch.height);
}

/// The same look by QPainter. What stays the same is made once: the bitmap, pens, brushes and the words.
class QtSwitch {
public:
    QtSwitch()
        : _bitmap(kSwitch.width, kSwitch.height, QImage::Format_ARGB32_Premultiplied)
        , _track(QColor(0x44, 0x44, 0x44), 2)
        , _knob(QColor(0x00, 0xAA, 0xAA))
        , _off("OFF", kStyle)
        , _on("ON", kStyle)
    {
    }

    void draw(QPainter& target, double position)
    {
        constexpr double kWidth = kSwitch.width, kHeight = kSwitch.height;
        _bitmap.fill(Qt::transparent);
        QPainter painter(&_bitmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(_track);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(2, 2, kWidth - 4, kHeight - 4), kHeight / 2 - 2, kHeight / 2 - 2);
        painter.setPen(Qt::NoPen);
        painter.setBrush(_knob);
        const QRectF knob(kWidth * 0.4 * position, 0, std::round(kWidth * 0.585), kHeight);
        painter.drawRoundedRect(knob, kHeight / 2, kHeight / 2);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.setFont(_off.font());
        painter.setPen(Qt::white);
        _off.draw(painter, CGRectMake(0, 0, 2 * 0.6 * kHeight, kHeight));
        _on.draw(painter, CGRectMake(kWidth - 2 * 0.6 * kHeight, 0, 2 * 0.6 * kHeight, kHeight));
        painter.end();
        target.drawImage(0, 0, _bitmap);
    }

private:
    static constexpr TextStyle kStyle{kFontSize, true, 1};

    QImage _bitmap;
    QPen _track;
    QBrush _knob;
    QtLine _off;
    QtLine _on;
};

void drawKorvidSwitch(benchmark::State& state, bool moves)
{
    const KorvidCanvas canvas(kSwitch);
    const CurrentContext current(canvas);
    const auto control = make<ZRSwitchControl>(whole(kSwitch));
    control->setOn(true, false);
    Motion motion(moves);
    for (auto _ : state) {
        if (moves)
            control->setSwitchPosition(motion.next());
        control->drawRect(control->bounds());
    }
}

void drawQtSwitch(benchmark::State& state, bool moves)
{
    QtCanvas canvas(kSwitch);
    QtSwitch look;
    Motion motion(moves);
    for (auto _ : state)
        look.draw(canvas.painter(), moves ? motion.next() : 1);
}

/// One frame in each iteration: every switch has moved, and the window shows it.
void animateKorvidSwitches(benchmark::State& state)
{
    NSApplication::sharedApplication();
    const auto window =
        make<NSWindow>(whole(kWindow), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    std::vector<RetainPtr<ZRSwitchControl>> switches;
    for (int i = 0; i < kColumns * kRows; ++i) {
        switches.push_back(make<ZRSwitchControl>(switchFrame(i)));
        switches.back()->setOn(true, false);
        window->contentView()->addSubview(switches.back());
    }
    window->makeKeyAndOrderFront();
    QCoreApplication::processEvents();
    Motion motion(true);
    for (auto _ : state) {
        for (const auto& control : switches)
            control->setSwitchPosition(motion.next());
        QCoreApplication::processEvents();
    }
    window->close();
    QCoreApplication::processEvents();
}

class QtSwitchWidget : public QWidget {
public:
    using QWidget::QWidget;

    void setPosition(double position)
    {
        _position = position;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        _look.draw(painter, _position);
    }

private:
    QtSwitch _look;
    double _position = 0;
};

void animateQtSwitches(benchmark::State& state)
{
    QWidget window;
    window.resize(kWindow.width, kWindow.height);
    std::vector<std::unique_ptr<QtSwitchWidget>> switches;
    for (int i = 0; i < kColumns * kRows; ++i) {
        switches.push_back(std::make_unique<QtSwitchWidget>(&window));
        switches.back()->setGeometry(qtRect(switchFrame(i)).toRect());
    }
    window.show();
    QCoreApplication::processEvents();
    Motion motion(true);
    for (auto _ : state) {
        for (const auto& control : switches)
            control->setPosition(motion.next());
        QCoreApplication::processEvents();
    }
}

} // namespace

void addSwitchBenchmarks()
{
    constexpr const char* kTable = "switch";
    addTable({kTable, "Switches",
        "A ZRSwitchControl of 60 x 24 pixels, composed anew at each pass. QPainter draws the same look, "
        "words "
        "cut out of the knob, into a bitmap that it keeps, with words that were laid out before. The last "
        "row "
        "is one frame of a window of 800 x 600 points, which the offscreen window system shows, with 30 "
        "switches in motion, of which only their rectangles are drawn: at 60 frames a second, 2.5 ms are 15 "
        "% "
        "of a processor core."});
    for (const bool moves : {false, true}) {
        const std::string name = moves ? "one/moving" : "one/at rest";
        addBenchmark(kTable, name, KorvidCanvas::kLibrary,
            [moves](benchmark::State& state) { drawKorvidSwitch(state, moves); });
        addBenchmark(kTable, name, QtCanvas::kLibrary,
            [moves](benchmark::State& state) { drawQtSwitch(state, moves); });
    }
    addBenchmark(kTable, "frame of 30", KorvidCanvas::kLibrary, animateKorvidSwitches);
    addBenchmark(kTable, "frame of 30", QtCanvas::kLibrary, animateQtSwitches);
}
