#include "CoreGraphics/pdf/ContentInterpreter.h"
#include "CoreGraphics/pdf/PDFImage.h"
#include "CoreGraphics/pdf/PDFShading.h"

#include <utility>

namespace {

constexpr CGRect kUnitSquare{{0, 0}, {1, 1}};

} // namespace

void ContentInterpreter::drawImage(const PDFObject& image)
{
    if (const auto made = makePDFImage(image, resources(), _recording))
        appendImage(*made);
}

void ContentInterpreter::drawInlineImage()
{
    const PDFImageData data = readInlineImage();
    if (isHidden())
        return;
    if (const auto image = makePDFImage(data, resources(), _recording))
        appendImage(*image);
}

void ContentInterpreter::appendImage(const PDFImage& image)
{
    if (image.isStencil && _state.fill.space->paintsNothing())
        return;
    if (image.isStencil && _state.fill.space->isPattern())
        return paintStencilWithPattern(image);
    auto item = std::make_unique<ImageItem>();
    item->compositing = compositing(_state.fillAlpha);
    item->image = image.image;
    item->pageFromUnitSquare = _state.pageFromUser;
    item->color = _state.fill.color;
    item->isStencil = image.isStencil;
    item->interpolates = image.interpolates;
    append(std::move(item));
}

/// Paints the unit square with the pattern, through a soft mask in which the stencil is drawn.
void ContentInterpreter::paintStencilWithPattern(const PDFImage& stencil)
{
    auto item = std::make_unique<ImageItem>();
    item->image = stencil.image;
    item->pageFromUnitSquare = _state.pageFromUser;
    item->isStencil = true;
    item->interpolates = stencil.interpolates;
    auto list = std::make_shared<DisplayList>();
    list->items.emplace_back(std::move(item));
    auto mask = std::make_shared<PDFSoftMask>();
    mask->list = std::move(list);
    for (std::size_t i = 0; i < mask->transfer.size(); ++i)
        mask->transfer[i] = std::uint8_t(i);

    // An item has one soft mask: where there is another, it belongs to a group around this one.
    const PDFCompositing outside = compositing(1);
    auto outer = std::exchange(_list, std::make_shared<DisplayList>());
    pushState();
    _state.softMask = std::move(mask);
    _state.blendMode = kCGBlendModeNormal;
    try {
        fillPath(adopt<const CGPath>(CGPathCreateWithRect(kUnitSquare, &_state.pageFromUser)), false);
    } catch (const PDFLimitExceeded&) {
        _list = std::move(outer); // without this stencil
        throw;
    }
    popState();
    auto group = std::make_unique<GroupItem>();
    group->list = std::exchange(_list, std::move(outer));
    group->compositing = outside;
    group->box = CGRectApplyAffineTransform(kUnitSquare, _state.pageFromUser);
    append(std::move(group));
}

void ContentInterpreter::paintShading()
{
    if (isHidden() || !operand().isName())
        return;
    auto shading = PDFShading::make(resource("Shading", operand().text), resources(), _recording);
    if (!shading) {
        _recording.notDrawn("a shading is invalid, and not drawn");
        return;
    }
    auto item = std::make_unique<ShadeItem>();
    item->compositing = compositing(_state.fillAlpha);
    item->shading = std::move(shading);
    item->pageFromShading = _state.pageFromUser;
    append(std::move(item));
}
