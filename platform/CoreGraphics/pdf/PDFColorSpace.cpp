#include "CoreGraphics/pdf/PDFColorSpace.h"

#include "CoreGraphics/pdf/PDFFunction.h"
#include "CoreGraphics/pdf/PDFPrintingInks.h"
#include "CoreGraphics/pdf/PDFRecording.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace {

using SpaceRef = std::shared_ptr<const PDFColorSpace>;

/// 0 for NaN.
double unit(double component)
{
    return PDFInterval{0, 1}.clamp(component);
}

class GraySpace final : public PDFColorSpace {
public:
    GraySpace()
        : PDFColorSpace(1)
    {
    }
    bool isLinear() const override { return true; }

private:
    PDFRGB convert(std::span<const double> components) const override
    {
        const auto gray = float(unit(components[0]));
        return {gray, gray, gray};
    }
};

class RGBSpace final : public PDFColorSpace {
public:
    RGBSpace()
        : PDFColorSpace(3)
    {
    }
    bool isLinear() const override { return true; }

private:
    PDFRGB convert(std::span<const double> components) const override
    {
        return {float(unit(components[0])), float(unit(components[1])), float(unit(components[2]))};
    }
};

class CMYKSpace final : public PDFColorSpace {
public:
    /// `initialBlack` is the black of the initial colour: the device's is black, a profile's is without ink.
    explicit CMYKSpace(double initialBlack)
        : PDFColorSpace(4)
        , _initialBlack(initialBlack)
    {
    }
    std::vector<double> initialComponents() const override { return {0, 0, 0, _initialBlack}; }
    double work() const override { return 100; }

private:
    PDFRGB convert(std::span<const double> components) const override
    {
        return colorOfPrintingInks(
            unit(components[0]), unit(components[1]), unit(components[2]), unit(components[3]));
    }

    const double _initialBlack;
};

/// CIE 1976 L*a*b*, of which the file's white point is drawn as sRGB's white.
class LabSpace final : public PDFColorSpace {
public:
    LabSpace(const PDFInterval& a, const PDFInterval& b)
        : PDFColorSpace(3)
        , _intervals{{{0, 100}, a, b}}
    {
    }
    std::vector<double> initialComponents() const override
    {
        return {0, _intervals[1].clamp(0), _intervals[2].clamp(0)};
    }
    std::vector<PDFInterval> defaultDecode(int) const override
    {
        return {_intervals.begin(), _intervals.end()};
    }
    double work() const override { return 600; }

private:
    PDFRGB convert(std::span<const double> components) const override
    {
        const double y = (_intervals[0].clamp(components[0]) + 16) / 116;
        const double x = y + _intervals[1].clamp(components[1]) / 500;
        const double z = y - _intervals[2].clamp(components[2]) / 200;
        // CIE XYZ with the white of sRGB, D65.
        const double X = 0.9505 * cubed(x);
        const double Y = cubed(y);
        const double Z = 1.089 * cubed(z);
        // The inverse of the matrix of IEC 61966-2-1.
        return {encoded(3.2406 * X - 1.5372 * Y - 0.4986 * Z), encoded(-0.9689 * X + 1.8758 * Y + 0.0415 * Z),
            encoded(0.0557 * X - 0.2040 * Y + 1.0570 * Z)};
    }

    /// A third power that is a line near black, as CIE defines L*a*b*.
    static double cubed(double value)
    {
        constexpr double kEndOfLine = 6.0 / 29;
        return value > kEndOfLine ? value * value * value : 3 * kEndOfLine * kEndOfLine * (value - 4.0 / 29);
    }

    /// The sRGB component of linear light (IEC 61966-2-1).
    static float encoded(double light)
    {
        return float(unit(light <= 0.0031308 ? light * 12.92 : 1 + 1.055 * (std::pow(light, 1 / 2.4) - 1)));
    }

    const std::array<PDFInterval, 3> _intervals;
};

/// A table of colours.
class IndexedSpace final : public PDFColorSpace {
public:
    explicit IndexedSpace(std::vector<PDFRGB> colors)
        : PDFColorSpace(1)
        , _colors(std::move(colors))
    {
    }
    std::vector<PDFInterval> defaultDecode(int bits) const override { return {{0, double((1 << bits) - 1)}}; }

private:
    PDFRGB convert(std::span<const double> components) const override
    {
        const PDFInterval indices{0, double(_colors.size() - 1)};
        return _colors[std::size_t(indices.clamp(std::round(components[0])))];
    }

    const std::vector<PDFRGB> _colors; ///< not empty
};

/// Inks that another space approximates: Separation and DeviceN.
class InkSpace final : public PDFColorSpace {
public:
    InkSpace(SpaceRef alternate, std::shared_ptr<const PDFFunction> tint, bool paintsNothing)
        : PDFColorSpace(tint->inputs())
        , _alternate(std::move(alternate))
        , _tint(std::move(tint))
        , _paintsNothing(paintsNothing)
    {
    }
    std::vector<double> initialComponents() const override { return std::vector<double>(components(), 1); }
    bool paintsNothing() const override { return _paintsNothing; }
    double work() const override { return _tint->work() + _alternate->work(); }

private:
    PDFRGB convert(std::span<const double> components) const override
    {
        std::array<double, kMaxComponents> converted;
        const auto results = std::span(converted).first(_alternate->components());
        _tint->evaluate(components, results);
        return _alternate->color(results);
    }

    const SpaceRef _alternate;
    const std::shared_ptr<const PDFFunction> _tint;
    const bool _paintsNothing;
};

class PatternSpace final : public PDFColorSpace {
public:
    explicit PatternSpace(SpaceRef underlying)
        : PDFColorSpace(PatternTag())
        , _underlying(std::move(underlying))
    {
    }
    const PDFColorSpace* underlying() const override { return _underlying.get(); }

private:
    PDFRGB convert(std::span<const double>) const override { return {}; }

    const SpaceRef _underlying; ///< may be null
};

/// Makes a space and those that it is based on.
class Maker {
public:
    Maker(const PDFObject& resources, PDFRecording& recording)
        : _resources(resources)
        , _recording(recording)
    {
    }

    SpaceRef make(const PDFObject& object, int depth)
    {
        constexpr int kMaxDepth = 8;
        if (depth > kMaxDepth)
            return nullptr;
        if (object.isName())
            return makeNamed(object.name(), depth);
        return _recording.cached<PDFColorSpace>(object, [&] { return makeFromArray(object, depth); });
    }

private:
    SpaceRef makeFromArray(const PDFObject& object, int depth)
    {
        if (object.size() == 1)
            return make(object.at(0), depth + 1); // [/DeviceRGB]
        const PDFObject family = object.at(0);
        if (family.isName("ICCBased"))
            return makeFromProfile(object.at(1), depth);
        if (family.isName("CalGray"))
            return PDFColorSpace::deviceGray();
        if (family.isName("CalRGB"))
            return PDFColorSpace::deviceRGB();
        if (family.isName("Lab"))
            return makeLab(object.at(1));
        if (family.isName("Indexed"))
            return makeIndexed(object, depth);
        if (family.isName("Separation"))
            return makeInks(object, 1, object.at(1).isName("None"), depth);
        if (family.isName("DeviceN"))
            return makeDeviceN(object, depth);
        if (family.isName("Pattern"))
            return makePattern(object.at(1), depth);
        return nullptr;
    }

    SpaceRef makeNamed(const std::string& name, int depth)
    {
        if (name == "DeviceGray" || name == "CalGray")
            return PDFColorSpace::deviceGray();
        if (name == "DeviceRGB" || name == "CalRGB")
            return PDFColorSpace::deviceRGB();
        if (name == "DeviceCMYK")
            return PDFColorSpace::deviceCMYK();
        if (name == "Pattern")
            return std::make_shared<PatternSpace>(nullptr);
        return make(_resources["ColorSpace"][name], depth + 1);
    }

    SpaceRef makeFromProfile(const PDFObject& profile, int depth)
    {
        static const SpaceRef inks = std::make_shared<CMYKSpace>(0);
        switch (profile["N"].integer()) {
        case 1:
            return PDFColorSpace::deviceGray();
        case 3:
            return PDFColorSpace::deviceRGB();
        case 4:
            return inks;
        default:
            return makeBase(profile["Alternate"], depth);
        }
    }

    static SpaceRef makeLab(const PDFObject& parameters)
    {
        const PDFObject range = parameters["Range"];
        return std::make_shared<LabSpace>(PDFInterval{range.at(0).number(-100), range.at(1).number(100)},
            PDFInterval{range.at(2).number(-100), range.at(3).number(100)});
    }

    SpaceRef makeIndexed(const PDFObject& array, int depth)
    {
        const SpaceRef base = makeBase(array.at(1), depth);
        if (!base)
            return nullptr;
        const PDFObject lookup = array.at(3);
        const std::string bytes = lookup.isStream() ? _recording.decode(lookup) : lookup.string();
        const std::vector<PDFInterval> decode = base->defaultDecode(8);
        constexpr PDFInterval kBytes{0, 255};
        std::vector<PDFRGB> colors(std::size_t(std::clamp(array.at(2).integer(), 0, 255)) + 1);
        std::vector<double> components(base->components());
        std::size_t next = 0;
        for (PDFRGB& color : colors) {
            for (std::size_t i = 0; i < components.size(); ++i, ++next)
                components[i] = kBytes.map(next < bytes.size() ? std::uint8_t(bytes[next]) : 0, decode[i]);
            color = base->color(components);
        }
        return std::make_shared<IndexedSpace>(std::move(colors));
    }

    SpaceRef makeDeviceN(const PDFObject& array, int depth)
    {
        const PDFObject names = array.at(1);
        bool areAllNone = names.size() > 0;
        for (std::size_t i = 0; i < names.size() && areAllNone; ++i)
            areAllNone = names.at(i).isName("None");
        return makeInks(array, names.size(), areAllNone, depth);
    }

    SpaceRef makeInks(const PDFObject& array, std::size_t count, bool paintsNothing, int depth)
    {
        SpaceRef alternate = makeBase(array.at(2), depth);
        auto tint = PDFFunction::make(array.at(3), _recording);
        if (!alternate || !tint || tint->inputs() != count)
            return nullptr;
        return std::make_shared<InkSpace>(std::move(alternate), std::move(tint), paintsNothing);
    }

    SpaceRef makePattern(const PDFObject& underlying, int depth)
    {
        if (underlying.isNull())
            return std::make_shared<PatternSpace>(nullptr);
        SpaceRef space = makeBase(underlying, depth);
        return space ? std::make_shared<PatternSpace>(std::move(space)) : nullptr;
    }

    /// A space that others are based on: any but patterns.
    SpaceRef makeBase(const PDFObject& object, int depth)
    {
        SpaceRef space = make(object, depth + 1);
        return space && !space->isPattern() ? space : nullptr;
    }

    const PDFObject& _resources;
    PDFRecording& _recording;
};

} // namespace

std::shared_ptr<const PDFColorSpace> PDFColorSpace::make(
    const PDFObject& nameOrArray, const PDFObject& resources, PDFRecording& recording)
{
    return Maker(resources, recording).make(nameOrArray, 0);
}

const std::shared_ptr<const PDFColorSpace>& PDFColorSpace::deviceGray()
{
    static const std::shared_ptr<const PDFColorSpace> space = std::make_shared<GraySpace>();
    return space;
}

const std::shared_ptr<const PDFColorSpace>& PDFColorSpace::deviceRGB()
{
    static const std::shared_ptr<const PDFColorSpace> space = std::make_shared<RGBSpace>();
    return space;
}

const std::shared_ptr<const PDFColorSpace>& PDFColorSpace::deviceCMYK()
{
    static const std::shared_ptr<const PDFColorSpace> space = std::make_shared<CMYKSpace>(1);
    return space;
}

std::vector<PDFInterval> PDFColorSpace::defaultDecode(int) const
{
    return std::vector<PDFInterval>(_components, PDFInterval{0, 1});
}

PDFRGB PDFColorSpace::color(std::span<const double> components) const
{
    if (components.size() >= _components)
        return convert(components.first(_components));
    std::array<double, kMaxComponents> filled{};
    std::ranges::copy(components, filled.begin());
    return convert(std::span(filled).first(_components));
}
