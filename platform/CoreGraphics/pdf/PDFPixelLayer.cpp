#include "CoreGraphics/pdf/PDFPixelLayer.h"

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/context/CGContextInternal.h"

#include <cmath>

namespace {

/// The pixels that a box in device space touches.
PixelRect pixelsOf(CGRect box)
{
    const auto pixel = [](double position) {
        return int(std::clamp(position, -double(kFarthestPixel), double(kFarthestPixel)));
    };
    return {pixel(std::floor(CGRectGetMinX(box))), pixel(std::floor(CGRectGetMinY(box))),
        pixel(std::ceil(CGRectGetMaxX(box))), pixel(std::ceil(CGRectGetMaxY(box)))};
}

} // namespace

PDFPixelLayer::PDFPixelLayer(CGContextRef target, CGRect box)
    : _target(target)
    , _area(target->state().clip.bounds())
{
    const CGAffineTransform deviceFromUser = CGContextGetUserSpaceToDeviceSpaceTransform(target);
    if (!CGRectIsInfinite(box))
        _area = _area.intersection(pixelsOf(CGRectApplyAffineTransform(box, deviceFromUser)));
    if (_area.isEmpty() || !inverse(deviceFromUser)) {
        _area = {};
        return;
    }
    _pixels.resize(std::size_t(_area.pixelCount()));
    _pixelFromUser =
        CGAffineTransformConcat(deviceFromUser, CGAffineTransformMakeTranslation(-_area.left, -_area.top));
}

std::span<PixelBytes> PDFPixelLayer::row(int y)
{
    return std::span(_pixels).subspan(std::size_t(y) * std::size_t(width()), std::size_t(width()));
}

RetainPtr<CGContext> PDFPixelLayer::makeContext()
{
    if (isEmpty())
        return nullptr;
    const auto rgb = adopt(CGColorSpaceCreateDeviceRGB());
    auto context = adopt(CGBitmapContextCreate(_pixels.data(), std::size_t(width()), std::size_t(height()), 8,
        std::size_t(width()) * sizeof(PixelBytes), rgb, kCGImageAlphaPremultipliedLast));
    const CGAffineTransform flip{1, 0, 0, -1, 0, double(height())};
    CGContextConcatCTM(context, CGAffineTransformConcat(_pixelFromUser, flip));
    return context;
}

void PDFPixelLayer::draw() const
{
    if (isEmpty())
        return;
    const auto rgb = adopt(CGColorSpaceCreateDeviceRGB());
    const std::size_t bytesPerRow = std::size_t(width()) * sizeof(PixelBytes);
    const auto bytes = adopt(
        CGDataProviderCreateWithData(nullptr, _pixels.data(), bytesPerRow * std::size_t(height()), nullptr));
    const auto image = adopt(CGImageCreate(std::size_t(width()), std::size_t(height()), 8, 32, bytesPerRow,
        rgb, kCGImageAlphaPremultipliedLast, bytes, nullptr, false, kCGRenderingIntentDefault));
    // Exactly aligned with the pixels, which the product of the CTM and its inverse would not be.
    GraphicsState& state = _target->state();
    const CGAffineTransform baseFromUser = state.baseFromUser;
    state.baseFromUser = CGAffineTransformIdentity;
    CGContextDrawImage(_target,
        CGRectMake(_area.left, double(_target->bitmap.height) - _area.bottom, width(), height()), image);
    state.baseFromUser = baseFromUser;
}
