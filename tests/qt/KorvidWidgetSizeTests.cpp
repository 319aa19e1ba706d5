#include "EmbeddedViews.h"

#include <QVBoxLayout>

#include <limits>

namespace {

class SizedView : public NSView {
public:
    using NSView::NSView;
    NSSize size{NSViewNoIntrinsicMetric, NSViewNoIntrinsicMetric};

    NSSize intrinsicContentSize() const override { return size; }
    void setSize(NSSize newSize)
    {
        size = newSize;
        invalidateIntrinsicContentSize();
    }
};

class KorvidWidgetSize : public EmbeddedViews { };

TEST_F(KorvidWidgetSize, IsTheIntrinsicSizeInWholePoints)
{
    const auto view = make<SizedView>(NSMakeRect(0, 0, 10, 10));
    view->size = {40.2, 17};
    const KorvidWidget widget(view);
    EXPECT_EQ(widget.sizeHint(), QSize(41, 17));
    EXPECT_EQ(widget.minimumSizeHint(), QSize(41, 17));
    EXPECT_EQ(widget.sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    EXPECT_EQ(widget.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}

TEST_F(KorvidWidgetSize, IsTheFrameWhereThereIsNoIntrinsicSize)
{
    const auto view = make<SizedView>(NSMakeRect(5, 6, 66, 24));
    view->size.width = 30;
    const KorvidWidget widget(view);
    EXPECT_EQ(widget.sizeHint(), QSize(30, 24));
    EXPECT_EQ(widget.minimumSizeHint(), QSize(30, 24));
    EXPECT_EQ(widget.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}

TEST_F(KorvidWidgetSize, IsFlexibleByTheAutoresizingMask)
{
    const auto view = make<SizedView>(NSMakeRect(0, 0, 66, 24));
    view->size.height = 20;
    view->setAutoresizingMask(NSViewWidthSizable | NSViewHeightSizable);
    const KorvidWidget widget(view);
    EXPECT_EQ(widget.sizeHint(), QSize(66, 20));
    EXPECT_EQ(widget.minimumSizeHint(), QSize(0, 20)) << "content is not clipped, an empty panel may shrink";
    EXPECT_EQ(widget.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(widget.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
}

TEST_F(KorvidWidgetSize, IsFlexibleWithoutAnyLength)
{
    const KorvidWidget widget(make<NSView>(NSMakeRect(0, 0, 0, 8)));
    EXPECT_EQ(widget.sizeHint(), QSize(0, 8));
    EXPECT_EQ(widget.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(widget.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}

TEST_F(KorvidWidgetSize, IsBoundedForAnUnboundedView)
{
    const auto view = make<SizedView>(NSZeroRect);
    view->size = {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()};
    const KorvidWidget widget(view);
    EXPECT_EQ(widget.sizeHint(), QSize(QWIDGETSIZE_MAX, 0));
}

TEST_F(KorvidWidgetSize, IsEmptyWithoutAView)
{
    const KorvidWidget widget(nullptr);
    EXPECT_EQ(widget.sizeHint(), QSize(0, 0));
    EXPECT_EQ(widget.view(), nullptr);
}

TEST_F(KorvidWidgetSize, FollowsTheIntrinsicSizeInALayout)
{
    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    const auto view = make<SizedView>(NSZeroRect);
    view->size = {30, 40};
    auto* const widget = new KorvidWidget(view);
    layout->addWidget(widget);
    window.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(widget->size(), QSize(30, 40));
    EXPECT_EQ(describe(view->frame()), "0 0 30 40");

    view->setSize({50, 70});
    QCoreApplication::processEvents();
    EXPECT_EQ(widget->size(), QSize(50, 70));
    EXPECT_EQ(describe(view->frame()), "0 0 50 70");

    // One below it has its say, too, as it may be what the view's own size depends on.
    const auto inner = make<SizedView>(NSZeroRect);
    view->addSubview(inner);
    view->size = {20, 25};
    inner->invalidateIntrinsicContentSize();
    QCoreApplication::processEvents();
    EXPECT_EQ(widget->size(), QSize(20, 25));
}

TEST_F(KorvidWidgetSize, FollowsTheFrameThatTheProgramSets)
{
    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    const auto view = make<NSView>(NSMakeRect(0, 0, 30, 40));
    auto* const widget = new KorvidWidget(view);
    layout->addWidget(widget);
    window.show();
    QCoreApplication::processEvents();
    view->setFrameSize(NSMakeSize(60, 20));
    QCoreApplication::processEvents();
    EXPECT_EQ(widget->size(), QSize(60, 20));
    EXPECT_EQ(describe(view->frame()), "0 0 60 20");
}

TEST_F(KorvidWidgetSize, TheViewFillsTheWidgetWhateverItPrefers)
{
    const auto view = make<SizedView>(NSMakeRect(3, 4, 10, 10));
    KorvidWidget widget(view);
    widget.resize(123, 45);
    widget.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(describe(view->frame()), "0 0 123 45");
    view->setFrameOrigin(NSMakePoint(9, 9));
    EXPECT_EQ(describe(view->frame()), "0 0 123 45");
}

} // namespace
