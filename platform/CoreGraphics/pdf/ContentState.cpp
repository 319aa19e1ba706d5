#include "CoreGraphics/pdf/ContentInterpreter.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct NamedBlendMode {
    std::string_view name;
    CGBlendMode mode;
};

constexpr std::array kBlendModes{
    NamedBlendMode{"Normal", kCGBlendModeNormal},
    NamedBlendMode{"Compatible", kCGBlendModeNormal},
    NamedBlendMode{"Multiply", kCGBlendModeMultiply},
    NamedBlendMode{"Screen", kCGBlendModeScreen},
    NamedBlendMode{"Overlay", kCGBlendModeOverlay},
    NamedBlendMode{"Darken", kCGBlendModeDarken},
    NamedBlendMode{"Lighten", kCGBlendModeLighten},
    NamedBlendMode{"ColorDodge", kCGBlendModeColorDodge},
    NamedBlendMode{"ColorBurn", kCGBlendModeColorBurn},
    NamedBlendMode{"SoftLight", kCGBlendModeSoftLight},
    NamedBlendMode{"HardLight", kCGBlendModeHardLight},
    NamedBlendMode{"Difference", kCGBlendModeDifference},
    NamedBlendMode{"Exclusion", kCGBlendModeExclusion},
    NamedBlendMode{"Hue", kCGBlendModeHue},
    NamedBlendMode{"Saturation", kCGBlendModeSaturation},
    NamedBlendMode{"Color", kCGBlendModeColor},
    NamedBlendMode{"Luminosity", kCGBlendModeLuminosity},
};

float unit(double value)
{
    return float(std::clamp(value, 0.0, 1.0));
}

} // namespace

void ContentInterpreter::concatenate()
{
    concatenate({number(0), number(1), number(2), number(3), number(4), number(5)});
}

void ContentInterpreter::concatenate(const CGAffineTransform& transform)
{
    const auto pageFromUser = CGAffineTransformConcat(transform, _state.pageFromUser);
    if (isUsable(pageFromUser))
        _state.pageFromUser = pageFromUser;
}

void ContentInterpreter::setLineWidth()
{
    _state.line.width = std::fabs(number(0));
}

void ContentInterpreter::setLineCap()
{
    if (number(0) == 0 || number(0) == 1 || number(0) == 2)
        _state.line.cap = CGLineCap(int(number(0)));
}

void ContentInterpreter::setLineJoin()
{
    if (number(0) == 0 || number(0) == 1 || number(0) == 2)
        _state.line.join = CGLineJoin(int(number(0)));
}

void ContentInterpreter::setMiterLimit()
{
    _state.line.miterLimit = std::max(number(0), 1.0);
}

void ContentInterpreter::setDash()
{
    if (!operand(1).isArray())
        return;
    std::vector<double> lengths;
    for (const auto& item : operand(1).items) {
        if (!item.isNumber())
            return;
        lengths.push_back(item.number);
    }
    setDash(lengths, number(0));
}

void ContentInterpreter::setDash(const std::vector<double>& lengths, double phase)
{
    constexpr std::size_t kMostDashes = 64;
    const bool isValid = lengths.size() <= kMostDashes
        && std::none_of(lengths.begin(), lengths.end(), [](double length) { return length < 0; });
    double period = 0;
    for (const double length : lengths)
        period += length;
    if (!isValid || period == 0) { // a solid line
        _state.line.dashes.clear();
        _state.line.dashPhase = 0;
        return;
    }
    // An odd number of lengths counts twice, dashes and gaps swapped.
    if (lengths.size() % 2 == 1)
        period *= 2;
    phase = std::fmod(phase, period);
    _state.line.dashes = lengths;
    _state.line.dashPhase = phase < 0 ? phase + period : phase;
}

void ContentInterpreter::setExtendedState()
{
    if (operand().isName())
        applyExtendedState(resource("ExtGState", operand().text));
}

void ContentInterpreter::applyExtendedState(const PDFObject& parameters)
{
    if (const PDFObject width = parameters["LW"]; width.isNumber())
        _state.line.width = std::fabs(width.number());
    if (const int cap = parameters["LC"].integer(-1); cap >= 0 && cap <= 2)
        _state.line.cap = CGLineCap(cap);
    if (const int join = parameters["LJ"].integer(-1); join >= 0 && join <= 2)
        _state.line.join = CGLineJoin(join);
    if (const PDFObject limit = parameters["ML"]; limit.isNumber())
        _state.line.miterLimit = std::max(limit.number(), 1.0);
    if (const PDFObject dash = parameters["D"]; dash.at(0).isArray())
        setDash(dash.at(0).numbers(), dash.at(1).number());
    if (const PDFObject alpha = parameters["CA"]; alpha.isNumber())
        _state.strokeAlpha = unit(alpha.number());
    if (const PDFObject alpha = parameters["ca"]; alpha.isNumber())
        _state.fillAlpha = unit(alpha.number());
    if (const PDFObject font = parameters["Font"]; font.at(1).isNumber())
        setFont(font.at(0), font.at(1).number());
    if (const PDFObject mode = parameters["BM"]; !mode.isNull())
        setBlendMode(mode);
    if (const PDFObject mask = parameters["SMask"]; !mask.isNull())
        setSoftMask(mask);
}

void ContentInterpreter::setBlendMode(const PDFObject& nameOrArray)
{
    // Of an array, the first mode that is known.
    const std::size_t count = nameOrArray.isArray() ? nameOrArray.size() : 1;
    for (std::size_t index = 0; index < count; ++index) {
        const PDFObject name = nameOrArray.isArray() ? nameOrArray.at(index) : nameOrArray;
        const auto* const found = std::find_if(kBlendModes.begin(), kBlendModes.end(),
            [&](const NamedBlendMode& mode) { return name.isName(mode.name); });
        if (found != kBlendModes.end()) {
            _state.blendMode = found->mode;
            return;
        }
    }
    _recording.notDrawn("the blend mode " + nameOrArray.name().substr(0, 32) + " is drawn as Normal");
    _state.blendMode = kCGBlendModeNormal;
}
