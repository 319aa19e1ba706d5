#include <KorvidQt/KorvidWidget.h>

#include "AppKit/EmbeddedWindow.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// Whole points that contain a length.
int wholePoints(CGFloat length)
{
    return int(std::ceil(std::min(length, CGFloat(QWIDGETSIZE_MAX))));
}

QSizePolicy::Policy policyFor(const EmbeddedWindow::Side& side)
{
    return side.isFlexible ? QSizePolicy::Expanding : QSizePolicy::Fixed;
}

} // namespace

KorvidWidget::KorvidWidget(RetainPtr<NSView> view, QWidget* parent)
    : QWidget(parent)
    , _window(make<EmbeddedWindow>(this, std::move(view), [this] { updateGeometry(); }))
{
    const EmbeddedWindow::Size size = _window->preferredSize();
    setSizePolicy(policyFor(size.width), policyFor(size.height));
}

KorvidWidget::~KorvidWidget()
{
    _window->leaveParent();
}

NSView* KorvidWidget::view() const
{
    return _window->view();
}

QSize KorvidWidget::sizeHint() const
{
    const EmbeddedWindow::Size size = _window->preferredSize();
    return {wholePoints(size.width.length), wholePoints(size.height.length)};
}

QSize KorvidWidget::minimumSizeHint() const
{
    const EmbeddedWindow::Size size = _window->preferredSize();
    return {wholePoints(size.width.least), wholePoints(size.height.least)};
}
