#include "CoreGraphics/pdf/PDFShading.h"

#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/pdf/PDFMeshPainter.h"
#include "CoreGraphics/pdf/PDFRecording.h"

#include <algorithm>
#include <utility>

namespace {

using ShadingRef = std::shared_ptr<PDFShading>;

/// Type 1: a function of two coordinates.
class FunctionShading final : public PDFShading {
public:
    FunctionShading(PDFShadingColors colors, CGRect domain, const CGAffineTransform& shadingFromDomain)
        : _colors(std::move(colors))
        , _domain(domain)
        , _shadingFromDomain(shadingFromDomain)
    {
    }

private:
    double paint(CGContextRef context, double workLeft) const override
    {
        CGContextConcatCTM(context, _shadingFromDomain);
        CGContextClipToRect(context, _domain);
        PDFPixelLayer layer(context);
        constexpr double kWorkPerPixel = 50;
        const double work = layer.pixelCount() * (kWorkPerPixel + _colors.work());
        const auto domainFromPixel = inverse(layer.pixelFromUser());
        if (layer.isEmpty() || !domainFromPixel || work > workLeft)
            return work;
        const PDFInterval xs{CGRectGetMinX(_domain), CGRectGetMaxX(_domain)};
        const PDFInterval ys{CGRectGetMinY(_domain), CGRectGetMaxY(_domain)};
        for (int y = 0; y < layer.height(); ++y) {
            const auto row = layer.row(y);
            for (int x = 0; x < layer.width(); ++x) {
                const CGPoint point = CGPointApplyAffineTransform({x + 0.5, y + 0.5}, *domainFromPixel);
                // Centres outside belong to pixels that the edge divides.
                const std::array<double, 2> inputs{xs.clamp(point.x), ys.clamp(point.y)};
                row[std::size_t(x)] = opaquePixel(_colors.color(inputs));
            }
        }
        layer.draw();
        return work;
    }

    const PDFShadingColors _colors;
    const CGRect _domain;
    const CGAffineTransform _shadingFromDomain;
};

/// Types 2 and 3: colours along a line, or over a family of circles.
class GradientShading final : public PDFShading {
public:
    struct Circle {
        CGPoint center;
        double radius = 0;
    };

    GradientShading(RetainPtr<CGGradient> gradient, bool isRadial, const Circle& start, const Circle& end,
        CGGradientDrawingOptions options)
        : _gradient(std::move(gradient))
        , _isRadial(isRadial)
        , _start(start)
        , _end(end)
        , _options(options)
    {
    }

private:
    double paint(CGContextRef context, double) const override
    {
        constexpr double kWork = 20'000; // the player counts the pixels
        // Of a line without length CGContextDrawLinearGradient draws the ends.
        const bool isEmpty = !_isRadial && CGPointEqualToPoint(_start.center, _end.center);
        if (isEmpty)
            return 0;
        if (_isRadial)
            CGContextDrawRadialGradient(
                context, _gradient, _start.center, _start.radius, _end.center, _end.radius, _options);
        else
            CGContextDrawLinearGradient(context, _gradient, _start.center, _end.center, _options);
        return kWork;
    }

    const RetainPtr<CGGradient> _gradient;
    const bool _isRadial;
    const Circle _start;
    const Circle _end;
    const CGGradientDrawingOptions _options;
};

/// Types 4 to 7.
class MeshShading final : public PDFShading {
public:
    MeshShading(PDFShadingColors colors, PDFMesh mesh)
        : _colors(std::move(colors))
        , _mesh(std::move(mesh))
        , _bounds(_mesh.bounds())
    {
    }

private:
    double paint(CGContextRef context, double workLeft) const override
    {
        if (CGRectIsNull(_bounds))
            return 0;
        PDFPixelLayer layer(context, _bounds);
        if (layer.isEmpty())
            return 0;
        const double work = paintPDFMesh(_mesh, _colors, layer, workLeft);
        layer.draw();
        return work + layer.pixelCount();
    }

    const PDFShadingColors _colors;
    const PDFMesh _mesh;
    const CGRect _bounds;
};

ShadingRef makeFunctionShading(const PDFObject& object, const PDFObject& resources, PDFRecording& recording)
{
    auto colors = PDFShadingColors::make(object, 2, resources, recording);
    if (!colors || !colors->hasFunctions())
        return nullptr;
    const PDFObject domain = object["Domain"];
    const double left = domain.at(0).number(0);
    const double bottom = domain.at(2).number(0);
    const CGRect rect =
        CGRectMake(left, bottom, domain.at(1).number(1) - left, domain.at(3).number(1) - bottom);
    if (!(rect.size.width >= 0 && rect.size.height >= 0))
        return nullptr;
    return std::make_shared<FunctionShading>(
        std::move(*colors), rect, object["Matrix"].matrix().value_or(CGAffineTransformIdentity));
}

ShadingRef makeGradientShading(const PDFObject& object, const PDFObject& resources, PDFRecording& recording)
{
    const bool isRadial = object["ShadingType"].integer() == 3;
    const std::vector<double> coords = object["Coords"].numbers();
    auto colors = PDFShadingColors::make(object, 1, resources, recording);
    if (!colors || !colors->hasFunctions() || coords.size() < (isRadial ? 6U : 4U))
        return nullptr;
    const std::size_t second = isRadial ? 3 : 2;
    const GradientShading::Circle start{{coords[0], coords[1]}, isRadial ? coords[2] : 0};
    const GradientShading::Circle end{{coords[second], coords[second + 1]}, isRadial ? coords[5] : 0};
    if (start.radius < 0 || end.radius < 0)
        return nullptr;
    CGGradientDrawingOptions options = 0;
    if (object["Extend"].at(0).boolean())
        options |= kCGGradientDrawsBeforeStartLocation;
    if (object["Extend"].at(1).boolean())
        options |= kCGGradientDrawsAfterEndLocation;
    const PDFObject domain = object["Domain"];
    auto gradient = colors->makeGradient(domain.at(0).number(0), domain.at(1).number(1), recording);
    return std::make_shared<GradientShading>(std::move(gradient), isRadial, start, end, options);
}

ShadingRef makeMeshShading(const PDFObject& object, const PDFObject& resources, PDFRecording& recording)
{
    auto colors = PDFShadingColors::make(object, 1, resources, recording);
    auto mesh = colors ? readPDFMesh(object, *colors, recording) : std::nullopt;
    return mesh ? std::make_shared<MeshShading>(std::move(*colors), std::move(*mesh)) : nullptr;
}

ShadingRef makeShading(const PDFObject& object, const PDFObject& resources, PDFRecording& recording)
{
    switch (object["ShadingType"].integer()) {
    case 1:
        return makeFunctionShading(object, resources, recording);
    case 2:
    case 3:
        return makeGradientShading(object, resources, recording);
    case 4:
    case 5:
    case 6:
    case 7:
        return makeMeshShading(object, resources, recording);
    default:
        return nullptr;
    }
}

} // namespace

std::shared_ptr<const PDFShading> PDFShading::make(
    const PDFObject& object, const PDFObject& resources, PDFRecording& recording)
{
    return recording.cached<PDFShading>(object, [&]() -> std::shared_ptr<const PDFShading> {
        const ShadingRef shading = makeShading(object, resources, recording);
        if (!shading)
            return nullptr;
        shading->_box = object["BBox"].rect();
        if (const PDFObject background = object["Background"]; background.size() > 0) {
            const auto space = PDFColorSpace::make(object["ColorSpace"], resources, recording);
            shading->_background = space->color(background.numbers());
        }
        return shading;
    });
}

double PDFShading::draw(CGContextRef context, bool isPattern, double workLeft) const
{
    CGContextSaveGState(context);
    double work = 0;
    if (isPattern && _background) {
        // Together with the shading, so that alpha and blend mode apply once.
        PDFPixelLayer layer(context);
        const PixelBytes background = opaquePixel(*_background);
        for (int y = 0; y < layer.height(); ++y)
            std::ranges::fill(layer.row(y), background);
        if (const auto layerContext = layer.makeContext()) {
            if (_box)
                CGContextClipToRect(layerContext, *_box);
            work = layer.pixelCount() + paint(layerContext, workLeft);
        }
        layer.draw();
    } else {
        if (_box)
            CGContextClipToRect(context, *_box);
        work = paint(context, workLeft);
    }
    CGContextRestoreGState(context);
    return work;
}
