#include "RandomScene.h"

#include <CoreText/CoreText.h>
#include <Foundation/Foundation.h>

#include <array>
#include <cmath>
#include <iterator>
#include <span>

namespace {

constexpr int kMostOperations = 48;
/// Outlines of outlines would multiply.
constexpr int kMostPathElements = 64, kMostOutlines = 1;

constexpr CGBlendMode kModes[] = {kCGBlendModeNormal, kCGBlendModeMultiply, kCGBlendModeScreen,
    kCGBlendModeOverlay, kCGBlendModeDarken, kCGBlendModeLighten, kCGBlendModeColorDodge,
    kCGBlendModeColorBurn, kCGBlendModeSoftLight, kCGBlendModeHardLight, kCGBlendModeDifference,
    kCGBlendModeExclusion, kCGBlendModeHue, kCGBlendModeSaturation, kCGBlendModeColor, kCGBlendModeLuminosity,
    kCGBlendModeClear, kCGBlendModeCopy, kCGBlendModeSourceIn, kCGBlendModeSourceOut, kCGBlendModeSourceAtop,
    kCGBlendModeDestinationOver, kCGBlendModeDestinationOut, kCGBlendModeXOR, kCGBlendModePlusLighter};

/// Bytes of images: the first one is valid premultiplied RGBA.
constexpr auto kSamples = [] {
    std::array<std::uint8_t, 7 * 5 * 4> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = std::uint8_t(i % 4 == 3 ? 255 - i : i % 116);
    return bytes;
}();

CGColorSpaceRef rgbSpace()
{
    static const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    return space;
}

RetainPtr<CGImage> makeImage(std::size_t width, std::size_t height, CGImageAlphaInfo info, bool interpolates)
{
    const auto provider =
        adopt(CGDataProviderCreateWithData(nullptr, kSamples.data(), kSamples.size(), nullptr));
    return adopt(CGImageCreate(width, height, 8, 32, width * 4, rgbSpace(), info, provider, nullptr,
        interpolates, kCGRenderingIntentDefault));
}

RetainPtr<CGImage> makeMask(std::size_t width, std::size_t height)
{
    const auto provider =
        adopt(CGDataProviderCreateWithData(nullptr, kSamples.data(), kSamples.size(), nullptr));
    return adopt(CGImageMaskCreate(width, height, 8, 8, width, provider, nullptr, true));
}

CGImageRef imageAt(int index)
{
    static const RetainPtr<CGImage> images[] = {makeImage(7, 5, kCGImageAlphaPremultipliedLast, true),
        makeImage(3, 4, kCGImageAlphaNoneSkipLast, true),
        makeImage(1, 1, kCGImageAlphaPremultipliedLast, true),
        makeImage(5, 5, kCGImageAlphaPremultipliedLast, false), makeMask(6, 6), makeMask(9, 1)};
    return images[std::size_t(index) % std::size(images)];
}

} // namespace

CGRect RandomScene::rect()
{
    const CGPoint origin = point();
    const CGPoint size = point();
    return {origin, {size.x, size.y}};
}

RetainPtr<CGColor> RandomScene::color()
{
    const CGFloat components[] = {component(), component(), component(), component()};
    return adopt(CGColorCreate(rgbSpace(), components));
}

void RandomScene::changeState()
{
    switch (_input.takeIndex(8)) {
    case 0:
        CGContextSetFillColorWithColor(_context, color().get());
        break;
    case 1:
        CGContextSetStrokeColorWithColor(_context, color().get());
        break;
    case 2:
        CGContextSetAlpha(_context, component());
        break;
    case 3:
        CGContextSetBlendMode(_context, kModes[_input.takeIndex(std::size(kModes))]);
        break;
    case 4:
        CGContextSetShouldAntialias(_context, _input.takeIndex(2) != 0);
        break;
    case 5:
        CGContextSetInterpolationQuality(_context, CGInterpolationQuality(_input.takeIndex(5)));
        break;
    case 6: {
        const CGPoint offset = point();
        CGContextSetShadowWithColor(_context, {offset.x, offset.y}, number(), color().get());
        break;
    }
    default:
        CGContextSetShadowWithColor(_context, {0, 0}, 0, nullptr);
    }
}

void RandomScene::changeStroke()
{
    switch (_input.takeIndex(5)) {
    case 0:
        CGContextSetLineWidth(_context, number());
        break;
    case 1:
        CGContextSetLineCap(_context, CGLineCap(_input.takeIndex(3)));
        break;
    case 2:
        CGContextSetLineJoin(_context, CGLineJoin(_input.takeIndex(3)));
        break;
    case 3:
        CGContextSetMiterLimit(_context, number());
        break;
    default: {
        CGFloat lengths[3];
        const auto count = std::size_t(_input.takeIndex(4));
        for (std::size_t i = 0; i < count; ++i)
            lengths[i] = std::abs(number());
        // Tens of thousands of dashes within a pixel take seconds under the sanitizers.
        for (CGFloat& length : std::span(lengths, count)) {
            if (length > 0 && length < 0.5)
                length = 0.5;
        }
        CGContextSetLineDash(_context, number(), lengths, count);
    }
    }
}

void RandomScene::changeTransform()
{
    const CGPoint value = point();
    switch (_input.takeIndex(4)) {
    case 0:
        CGContextTranslateCTM(_context, value.x, value.y);
        break;
    case 1:
        CGContextScaleCTM(_context, value.x / 8, value.y / 8);
        break;
    case 2:
        CGContextRotateCTM(_context, value.x);
        break;
    default: {
        const CGPoint shear = point();
        CGContextConcatCTM(_context, {1, shear.x / 8, shear.y / 8, 1, value.x, value.y});
    }
    }
}

void RandomScene::addToPath()
{
    if (++_pathElements > kMostPathElements)
        return;
    const CGPoint a = point();
    if (CGContextIsPathEmpty(_context)) // most elements need a current point
        CGContextMoveToPoint(_context, a.x, a.y);
    switch (_input.takeIndex(9)) {
    case 0:
        CGContextMoveToPoint(_context, a.x, a.y);
        break;
    case 1: {
        const CGPoint b = point();
        CGContextAddQuadCurveToPoint(_context, b.x, b.y, a.x, a.y);
        break;
    }
    case 2: {
        const CGPoint b = point(), c = point();
        CGContextAddCurveToPoint(_context, b.x, b.y, c.x, c.y, a.x, a.y);
        break;
    }
    case 3:
        CGContextClosePath(_context);
        break;
    case 4:
        CGContextAddRect(_context, rect());
        break;
    case 5:
        CGContextAddEllipseInRect(_context, rect());
        break;
    case 6: {
        const CGPoint angles = point();
        CGContextAddArc(_context, a.x, a.y, number(), angles.x, angles.y, _input.takeIndex(2));
        break;
    }
    case 7: {
        const CGPoint b = point();
        CGContextAddArcToPoint(_context, a.x, a.y, b.x, b.y, number());
        break;
    }
    default:
        CGContextAddLineToPoint(_context, a.x, a.y);
    }
}

void RandomScene::clip()
{
    switch (_input.takeIndex(4)) {
    case 0:
        CGContextClipToRect(_context, rect());
        break;
    case 1:
        CGContextClip(_context);
        break;
    case 2:
        CGContextEOClip(_context);
        break;
    default: {
        const CGRect area = rect();
        CGContextClipToMask(_context, area, imageAt(_input.takeIndex(6)));
    }
    }
}

void RandomScene::paintPath()
{
    switch (_input.takeIndex(8)) {
    case 0:
        CGContextFillRect(_context, rect());
        break;
    case 1:
        CGContextStrokeRect(_context, rect());
        break;
    case 2:
        CGContextFillEllipseInRect(_context, rect());
        break;
    case 3:
        CGContextClearRect(_context, rect());
        break;
    case 4:
        if (++_outlines <= kMostOutlines)
            CGContextReplacePathWithStrokedPath(_context);
        break;
    default:
        CGContextDrawPath(_context, CGPathDrawingMode(_input.takeIndex(5)));
        _pathElements = 0;
    }
}

void RandomScene::drawGradient()
{
    CGFloat components[4 * 4], locations[4];
    const auto count = 1 + std::size_t(_input.takeIndex(4));
    for (std::size_t i = 0; i < count * 4; ++i)
        components[i] = component();
    for (std::size_t i = 0; i < count; ++i)
        locations[i] = component();
    const auto gradient =
        adopt(CGGradientCreateWithColorComponents(rgbSpace(), components, locations, count));
    const auto options = CGGradientDrawingOptions(_input.takeIndex(4));
    const CGPoint start = point(), end = point();
    if (_input.takeIndex(2) == 0) {
        CGContextDrawLinearGradient(_context, gradient, start, end, options);
        return;
    }
    const double startRadius = number();
    CGContextDrawRadialGradient(_context, gradient, start, startRadius, end, number(), options);
}

void RandomScene::drawImage()
{
    const CGRect area = rect();
    CGContextDrawImage(_context, area, imageAt(_input.takeIndex(6)));
}

void RandomScene::drawText()
{
    constexpr const char* kTexts[] = {"Rag", "fi 1", "A\xCC\x81", "\xD7\xA9\xD7\x9C", "|"};
    const auto font = adopt(CTFontCreateWithName("Helvetica", number()));
    const auto attributes = make<NSMutableDictionary>();
    attributes->setObject(const_cast<CTFont*>(font.get()), kCTFontAttributeName);
    const auto text = make<NSAttributedString>(kTexts[_input.takeIndex(std::size(kTexts))], attributes);
    const auto line = adopt(CTLineCreateWithAttributedString(text));
    const CGPoint position = point();
    const CGPoint scale = point();
    CGContextSetShouldSubpixelQuantizeFonts(_context, _input.takeIndex(2) == 0);
    CGContextSetTextMatrix(_context, {scale.x / 8, 0, 0, scale.y / 8, 0, 0});
    CGContextSetTextPosition(_context, position.x, position.y);
    CTLineDraw(line, _context);
}

void RandomScene::nest()
{
    if (_depth == int(std::size(_isLayer)))
        return;
    const int kind = _input.takeIndex(3);
    _isLayer[_depth++] = kind != 0;
    if (kind == 0)
        CGContextSaveGState(_context);
    else if (kind == 1)
        CGContextBeginTransparencyLayer(_context, nullptr);
    else
        CGContextBeginTransparencyLayerWithRect(_context, rect(), nullptr);
}

void RandomScene::unnest()
{
    if (_depth == 0)
        return;
    if (_isLayer[--_depth])
        CGContextEndTransparencyLayer(_context);
    else
        CGContextRestoreGState(_context);
}

void RandomScene::draw()
{
    using Operation = void (RandomScene::*)();
    constexpr Operation kOperations[] = {&RandomScene::changeState, &RandomScene::changeState,
        &RandomScene::changeStroke, &RandomScene::changeTransform, &RandomScene::addToPath,
        &RandomScene::addToPath, &RandomScene::addToPath, &RandomScene::addToPath, &RandomScene::clip,
        &RandomScene::paintPath, &RandomScene::paintPath, &RandomScene::drawGradient, &RandomScene::drawImage,
        &RandomScene::drawText, &RandomScene::nest, &RandomScene::unnest};
    for (int i = 0; i < kMostOperations && !_input.isAtEnd(); ++i)
        (this->*kOperations[_input.takeIndex(std::size(kOperations))])();
    while (_depth > 0)
        unnest();
}
