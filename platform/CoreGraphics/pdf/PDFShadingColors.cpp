#include "CoreGraphics/pdf/PDFShadingColors.h"

#include "CoreGraphics/pdf/PDFRecording.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

/// The stops of a gradient while it is made.
struct GradientStops {
    std::vector<CGFloat> components; ///< red, green, blue and alpha of each
    std::vector<CGFloat> locations;

    void append(CGFloat location, const PDFRGB& color)
    {
        const std::array<CGFloat, 4> stop{color.r, color.g, color.b, 1};
        const bool isRepeated = !locations.empty() && locations.back() == location
            && std::equal(stop.begin(), stop.end(), components.end() - 4);
        if (isRepeated)
            return;
        locations.push_back(location);
        components.insert(components.end(), stop.begin(), stop.end());
    }
};

} // namespace

PDFShadingColors::PDFShadingColors(
    std::shared_ptr<const PDFColorSpace> space, std::vector<std::shared_ptr<const PDFFunction>> functions)
    : _space(std::move(space))
    , _functions(std::move(functions))
{
}

std::optional<PDFShadingColors> PDFShadingColors::make(
    const PDFObject& shading, std::size_t inputs, const PDFObject& resources, PDFRecording& recording)
{
    auto space = PDFColorSpace::make(shading["ColorSpace"], resources, recording);
    if (!space || space->isPattern())
        return std::nullopt;
    std::vector<std::shared_ptr<const PDFFunction>> functions;
    const PDFObject function = shading["Function"];
    const std::size_t count = function.isArray() ? function.size() : function.isNull() ? 0 : 1;
    if (count > PDFColorSpace::kMaxComponents)
        return std::nullopt;
    for (std::size_t i = 0; i < count; ++i) {
        functions.push_back(PDFFunction::make(function.isArray() ? function.at(i) : function, recording));
        if (!functions.back() || functions.back()->inputs() != inputs)
            return std::nullopt;
    }
    return PDFShadingColors(std::move(space), std::move(functions));
}

void PDFShadingColors::evaluate(std::span<const double> inputs, std::span<double> components) const
{
    if (_functions.size() == 1)
        return _functions.front()->evaluate(inputs, components);
    for (std::size_t i = 0; i < components.size(); ++i) {
        components[i] = 0;
        if (i < _functions.size())
            _functions[i]->evaluate(inputs, components.subspan(i, 1));
    }
}

PDFRGB PDFShadingColors::color(std::span<const double> inputs) const
{
    if (!hasFunctions())
        return _space->color(inputs);
    std::array<double, PDFColorSpace::kMaxComponents> components;
    const auto results = std::span(components).first(_space->components());
    evaluate(inputs, results);
    return _space->color(results);
}

double PDFShadingColors::work() const
{
    double work = _space->work();
    for (const auto& function : _functions)
        work += function->work();
    return work;
}

bool PDFShadingColors::isInGamut(double input) const
{
    std::array<double, PDFColorSpace::kMaxComponents> components;
    const auto results = std::span(components).first(_space->components());
    evaluate(std::span(&input, 1), results);
    return std::ranges::all_of(results, [](double component) { return component >= 0 && component <= 1; });
}

/// The inputs from `start` to `end` between which colours are linear; empty when they are not.
std::vector<double> PDFShadingColors::linearBreaks(double start, double end) const
{
    if (!_space->isLinear() || !(start < end))
        return {};
    std::vector<double> breaks{start, end};
    for (const auto& function : _functions) {
        const std::vector<double> ofFunction = function->linearBreaks();
        if (ofFunction.empty())
            return {};
        std::ranges::copy_if(ofFunction, std::back_inserter(breaks),
            [=](double position) { return position > start && position < end; });
    }
    std::ranges::sort(breaks);
    breaks.erase(std::unique(breaks.begin(), breaks.end()), breaks.end());
    // Clamping to the gamut would bend the lines.
    const bool isInside = std::ranges::all_of(breaks, [this](double input) { return isInGamut(input); });
    return isInside ? breaks : std::vector<double>();
}

RetainPtr<CGGradient> PDFShadingColors::makeGradient(double start, double end, PDFRecording& recording) const
{
    GradientStops stops;
    const auto append = [&](double location, double input) {
        stops.append(location, color(std::span(&input, 1)));
    };
    const std::vector<double> breaks = linearBreaks(start, end);
    for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
        // Right beside the ends, because colours may jump there.
        const double first = breaks[i];
        const double last = breaks[i + 1];
        const double inset = (last - first) * 1e-9;
        append((first - start) / (end - start), first + inset);
        append((last - start) / (end - start), last - inset);
    }
    if (breaks.empty()) {
        constexpr int kSamples = 256;
        recording.budget().spendWork(kSamples * work());
        for (int i = 0; i < kSamples; ++i) {
            const double location = double(i) / (kSamples - 1);
            append(location, start + location * (end - start));
        }
    }
    const auto rgb = adopt(CGColorSpaceCreateDeviceRGB());
    return adopt(CGGradientCreateWithColorComponents(
        rgb, stops.components.data(), stops.locations.data(), stops.locations.size()));
}
