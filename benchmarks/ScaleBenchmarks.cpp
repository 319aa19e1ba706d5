// Windows with many views, of which a few change in each frame.

#include "Benchmarks.h"
#include "Table.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSWindow.h>
#include <KorvidAppKit/ZRCapsuleView.h>
#include <KorvidAppKit/ZRSwitchControl.h>

#include <QCoreApplication>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

namespace {

constexpr const char* kTable = "scale";
constexpr const char* kAlone = "the dirty views alone";
constexpr Size kWindow{1600, 1000};
constexpr int kCounts[]{10, 100, 1000, 10000};
constexpr double kGap = 1; ///< around each view

/// Which views of how many are dirty in each frame.
struct Case {
    int count;
    int dirtyCount;
};

/// Places of `count` views that fill the window, in rows.
std::vector<CGRect> places(int count)
{
    const int rows = count == 10 ? 2 : int(std::round(std::sqrt(count)));
    const int columns = (count + rows - 1) / rows;
    const double width = double(kWindow.width) / columns, height = double(kWindow.height) / rows;
    std::vector<CGRect> result;
    for (int i = 0; i < count; ++i) {
        const int row = i / columns, column = i % columns;
        const CGRect cell = CGRectMake(
            std::floor(column * width), std::floor(row * height), std::floor(width), std::floor(height));
        result.push_back(CGRectInset(cell, kGap, kGap));
    }
    return result;
}

/// The dirty places among the others, the same in each run.
std::vector<std::size_t> dirtyIndexes(Case test)
{
    std::vector<std::size_t> indexes(std::size_t(test.count));
    std::iota(indexes.begin(), indexes.end(), 0U);
    std::shuffle(indexes.begin(), indexes.end(), std::mt19937(14));
    indexes.resize(std::size_t(test.dirtyCount));
    return indexes;
}

/// A window on the offscreen window system.
class KorvidWindow {
public:
    explicit KorvidWindow(Size size)
    {
        NSApplication::sharedApplication();
        _window = make<NSWindow>(whole(size), NSWindowStyleMaskBorderless, NSBackingStoreBuffered, false);
    }
    KorvidWindow(const KorvidWindow&) = delete;
    KorvidWindow& operator=(const KorvidWindow&) = delete;
    ~KorvidWindow()
    {
        _window->close();
        QCoreApplication::processEvents();
    }

    NSView& contentView() const { return *_window->contentView(); }
    void add(RetainPtr<NSView> view) const { contentView().addSubview(std::move(view)); }
    void show() const
    {
        _window->makeKeyAndOrderFront();
        QCoreApplication::processEvents();
    }

private:
    RetainPtr<NSWindow> _window;
};

RetainPtr<ZRCapsuleView> makeCapsule(CGRect frame)
{
    auto view = make<ZRCapsuleView>(frame);
    view->setString("7");
    view->setColor(NSColor::orangeColor());
    view->setDrawType(kZRCapsuleDrawTypeFilled);
    return view;
}

/// Shows the capsules of a case, or only those that change. Returns those that change.
std::vector<RetainPtr<ZRCapsuleView>> showCapsules(const KorvidWindow& window, Case test, bool alone)
{
    std::vector<RetainPtr<ZRCapsuleView>> views;
    for (const CGRect place : places(test.count))
        views.push_back(makeCapsule(place));
    std::vector<RetainPtr<ZRCapsuleView>> changing;
    for (const std::size_t index : dirtyIndexes(test))
        changing.push_back(views[index]);
    for (const auto& view : alone ? changing : views)
        window.add(view);
    window.show();
    return changing;
}

/// One frame in each iteration: the dirty views are marked, and the window shows them.
void drawDirtyCapsules(benchmark::State& state, Case test, bool alone)
{
    const KorvidWindow window(kWindow);
    const auto dirty = showCapsules(window, test, alone);
    for (auto _ : state) {
        for (const auto& view : dirty)
            view->setNeedsDisplay(true);
        QCoreApplication::processEvents();
    }
}

class QtCapsule : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 128, 0));
        const QRectF outline = QRectF(rect()).adjusted(0.33, 0.33, -0.33, -0.33);
        painter.drawRoundedRect(outline, outline.height() / 4, outline.height() / 4);
        QFont font = this->font();
        font.setPixelSize(9);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(rect(), Qt::AlignCenter, "7");
    }
};

/// A widget for each view.
class QtWindow {
public:
    explicit QtWindow(int count)
    {
        _window.resize(kWindow.width, kWindow.height);
        for (const CGRect place : places(count)) {
            _widgets.push_back(std::make_unique<QtCapsule>(&_window));
            _widgets.back()->setGeometry(
                int(place.origin.x), int(place.origin.y), int(place.size.width), int(place.size.height));
        }
        _window.show();
        QCoreApplication::processEvents();
    }

    QWidget& window() { return _window; }
    QWidget& widget(std::size_t index) const { return *_widgets[index]; }

private:
    QWidget _window;
    std::vector<std::unique_ptr<QtCapsule>> _widgets;
};

void drawDirtyWidgets(benchmark::State& state, Case test)
{
    const QtWindow window(test.count);
    const auto dirty = dirtyIndexes(test);
    for (auto _ : state) {
        for (const std::size_t index : dirty)
            window.widget(index).update();
        QCoreApplication::processEvents();
    }
}

/// Places all over the window, in no order.
std::vector<CGPoint> points()
{
    constexpr std::size_t kCount = 1024;
    std::mt19937 random(14);
    std::uniform_real_distribution<double> x(0, kWindow.width), y(0, kWindow.height);
    std::vector<CGPoint> result;
    while (result.size() < kCount)
        result.push_back(CGPointMake(x(random), y(random)));
    return result;
}

void hitTestViews(benchmark::State& state, int count)
{
    const KorvidWindow window(kWindow);
    for (const CGRect place : places(count))
        window.add(makeCapsule(place));
    window.show();
    const auto where = points();
    for (auto _ : state) {
        for (const CGPoint point : where)
            benchmark::DoNotOptimize(window.contentView().hitTest(point));
    }
    setItems(state, where.size());
}

void hitTestWidgets(benchmark::State& state, int count)
{
    QtWindow window(count);
    const auto where = points();
    for (auto _ : state) {
        for (const CGPoint point : where)
            benchmark::DoNotOptimize(window.window().childAt(int(point.x), int(point.y)));
    }
    setItems(state, where.size());
}

/// One frame in each iteration: all views of the dirty part have moved a little, and the window shows it.
void moveCapsules(benchmark::State& state, Case test, bool alone)
{
    const KorvidWindow window(kWindow);
    const auto moving = showCapsules(window, test, alone);
    double step = 1;
    for (auto _ : state) {
        for (const auto& view : moving)
            view->setFrameOrigin(CGPointMake(view->frame().origin.x + step, view->frame().origin.y));
        step = -step;
        QCoreApplication::processEvents();
    }
}

/// One frame in each iteration: a switch has moved, and the window shows it.
void animateSwitch(benchmark::State& state, Size size)
{
    const KorvidWindow window(size);
    const auto control = make<ZRSwitchControl>(CGRectMake(40, 40, 60, 24));
    control->setOn(true, false);
    window.add(control);
    window.show();
    Motion motion(true);
    for (auto _ : state) {
        control->setSwitchPosition(motion.next());
        QCoreApplication::processEvents();
    }
}

void addFrames(const std::string& name, Case test, void (*draw)(benchmark::State&, Case, bool))
{
    addBenchmark(kTable, name, kOurs, [=](benchmark::State& state) { draw(state, test, false); });
    addBenchmark(kTable, name, kAlone, [=](benchmark::State& state) { draw(state, test, true); });
}

} // namespace

void addScaleBenchmarks()
{
    addTable({kTable, "Windows with many views",
        "A window of 1600 x 1000 points on the offscreen window system, filled with ZRCapsuleViews, and a "
        "widget for each of them in Qt. One frame, in which one view or 1 % of them, at random places, are "
        "drawn again, or have moved by 1 point; in the column beside ours, the window has no other views. "
        "Hit tests take the time of one. The last row is one frame of a window of 3840 x 2160 points with a "
        "switch in motion, and of one of 400 x 300."});
    for (const int count : kCounts) {
        const std::string name = "one dirty/" + std::to_string(count);
        addFrames(name, {count, 1}, drawDirtyCapsules);
        addBenchmark(kTable, name, "Qt", [=](benchmark::State& state) {
            drawDirtyWidgets(state, {count, 1});
        });
    }
    for (const int count : kCounts) {
        const Case test{count, std::max(count / 100, 1)};
        const std::string name = "1 % dirty/" + std::to_string(count);
        addFrames(name, test, drawDirtyCapsules);
        addBenchmark(kTable, name, "Qt", [=](benchmark::State& state) { drawDirtyWidgets(state, test); });
    }
    for (const int count : kCounts)
        addFrames("1 % moving/" + std::to_string(count), {count, std::max(count / 100, 1)}, moveCapsules);
    for (const int count : kCounts) {
        const std::string name = "hit test/" + std::to_string(count);
        addBenchmark(kTable, name, kOurs, [=](benchmark::State& state) { hitTestViews(state, count); });
        addBenchmark(kTable, name, "Qt", [=](benchmark::State& state) { hitTestWidgets(state, count); });
    }
    const std::string name = "one switch/3840x2160";
    addBenchmark(kTable, name, kOurs, [](benchmark::State& state) { animateSwitch(state, {3840, 2160}); });
    addBenchmark(kTable, name, "400 x 300", [](benchmark::State& state) {
        animateSwitch(state, {400, 300});
    });
}
