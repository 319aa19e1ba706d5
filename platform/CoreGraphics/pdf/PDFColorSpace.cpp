#include "CoreGraphics/pdf/PDFColorSpace.h"

#include <algorithm>

namespace {

float unit(double value)
{
    return float(std::clamp(value, 0.0, 1.0));
}

} // namespace

std::shared_ptr<const PDFColorSpace> PDFColorSpace::make(
    const PDFObject& nameOrArray, const PDFObject&, PDFRecording&)
{
    if (nameOrArray.isName("DeviceGray"))
        return deviceGray();
    if (nameOrArray.isName("DeviceRGB"))
        return deviceRGB();
    return nameOrArray.isName("DeviceCMYK") ? deviceCMYK() : nullptr;
}

const std::shared_ptr<const PDFColorSpace>& PDFColorSpace::deviceGray()
{
    static const std::shared_ptr<const PDFColorSpace> space = std::make_shared<PDFColorSpace>(1);
    return space;
}

const std::shared_ptr<const PDFColorSpace>& PDFColorSpace::deviceRGB()
{
    static const std::shared_ptr<const PDFColorSpace> space = std::make_shared<PDFColorSpace>(3);
    return space;
}

const std::shared_ptr<const PDFColorSpace>& PDFColorSpace::deviceCMYK()
{
    static const std::shared_ptr<const PDFColorSpace> space = std::make_shared<PDFColorSpace>(4);
    return space;
}

std::vector<double> PDFColorSpace::initialComponents() const
{
    std::vector<double> result(_components);
    if (_components == 4)
        result[3] = 1;
    return result;
}

PDFRGB PDFColorSpace::color(std::span<const double> components) const
{
    std::vector<double> values(components.begin(), components.end());
    values.resize(_components);
    if (_components == 1)
        return {unit(values[0]), unit(values[0]), unit(values[0])};
    if (_components == 3)
        return {unit(values[0]), unit(values[1]), unit(values[2])};
    const double light = 1 - unit(values[3]);
    return {unit((1 - values[0]) * light), unit((1 - values[1]) * light), unit((1 - values[2]) * light)};
}
