#include "CoreGraphics/pdf/PDFFunction.h"

#include "CoreGraphics/pdf/PDFCalculator.h"
#include "CoreGraphics/pdf/PDFObject.h"
#include "CoreGraphics/pdf/PDFRecording.h"
#include "CoreGraphics/pdf/PDFSampledFunction.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using FunctionRef = std::shared_ptr<const PDFFunction>;
using Intervals = std::vector<PDFInterval>;

/// c0 + x^N (c1 - c0), for each result.
class ExponentialFunction final : public PDFFunction {
public:
    ExponentialFunction(Intervals domain, Intervals range, Intervals ends, double exponent)
        : PDFFunction(std::move(domain), std::move(range), ends.size())
        , _ends(std::move(ends))
        , _exponent(exponent)
    {
    }

    std::vector<double> linearBreaks() const override
    {
        if (_exponent != 1 || !range().empty())
            return {};
        return {domain().front().low, domain().front().high};
    }

    double work() const override { return (_exponent == 1 ? 20 : 100) + 5 * double(outputs()); }

private:
    void compute(std::span<const double> inputs, std::span<double> results) const override
    {
        const double x = _exponent == 1 ? inputs[0] : std::pow(inputs[0], _exponent);
        std::ranges::transform(_ends, results.begin(),
            [x](const PDFInterval& ends) { return ends.low + x * (ends.high - ends.low); });
    }

    const Intervals _ends; ///< c0 and c1, which need not be in order
    const double _exponent;
};

/// Several functions side by side, each for a part of the domain.
class StitchedFunction final : public PDFFunction {
public:
    struct Part {
        FunctionRef function;
        PDFInterval inputs;  ///< of the stitched function; the end belongs to the next part
        PDFInterval encoded; ///< what the ends of `inputs` are for `function`
    };

    StitchedFunction(Intervals domain, Intervals range, std::vector<Part> parts)
        : PDFFunction(std::move(domain), std::move(range), parts.front().function->outputs())
        , _parts(std::move(parts))
    {
    }

    std::vector<double> linearBreaks() const override
    {
        if (!range().empty())
            return {};
        std::vector<double> breaks;
        for (const Part& part : _parts) {
            const std::vector<double> breaksOfPart = part.function->linearBreaks();
            if (breaksOfPart.empty())
                return {};
            breaks.push_back(part.inputs.low);
            breaks.push_back(part.inputs.high);
            const bool isReversed = part.encoded.low > part.encoded.high;
            const PDFInterval encoded =
                isReversed ? PDFInterval{part.encoded.high, part.encoded.low} : part.encoded;
            const PDFInterval inputs =
                isReversed ? PDFInterval{part.inputs.high, part.inputs.low} : part.inputs;
            for (const double position : breaksOfPart) {
                if (position > encoded.low && position < encoded.high)
                    breaks.push_back(encoded.map(position, inputs));
            }
        }
        std::ranges::sort(breaks);
        breaks.erase(std::unique(breaks.begin(), breaks.end()), breaks.end());
        return breaks;
    }

    double work() const override
    {
        double most = 0;
        for (const Part& part : _parts)
            most = std::max(most, part.function->work());
        return most + 100;
    }

private:
    void compute(std::span<const double> inputs, std::span<double> results) const override
    {
        const double x = inputs[0];
        const auto next =
            std::ranges::upper_bound(_parts, x, {}, [](const Part& part) { return part.inputs.low; });
        const Part& part = next == _parts.begin() ? _parts.front() : *std::prev(next);
        const double encoded = part.inputs.map(x, part.encoded);
        part.function->evaluate(std::span(&encoded, 1), results);
    }

    const std::vector<Part> _parts;
};

/// A program of a PostScript calculator.
class CalculatorFunction final : public PDFFunction {
public:
    CalculatorFunction(Intervals domain, const Intervals& range, PDFCalculator calculator)
        : PDFFunction(std::move(domain), range, range.size())
        , _calculator(std::move(calculator))
    {
    }

    double work() const override { return 100 + 15 * double(_calculator.size()); }

private:
    void compute(std::span<const double> inputs, std::span<double> results) const override
    {
        _calculator.run(inputs, results);
    }

    const PDFCalculator _calculator;
};

/// Empty unless the array holds pairs of numbers, the lower one first, and at most `kMaxValues` of them.
Intervals intervalsFrom(const PDFObject& array)
{
    Intervals intervals;
    const std::size_t count = array.size() / 2;
    if (count > PDFFunction::kMaxValues)
        return {};
    for (std::size_t i = 0; i < count; ++i) {
        const PDFInterval interval{array.at(2 * i).number(), array.at(2 * i + 1).number()};
        if (interval.low > interval.high)
            return {};
        intervals.push_back(interval);
    }
    return intervals;
}

FunctionRef makeExponential(const PDFObject& object, Intervals domain, Intervals range)
{
    const PDFObject first = object["C0"];
    const PDFObject last = object["C1"];
    const std::size_t outputs = first.isArray() ? first.size() : last.isArray() ? last.size() : 1;
    const bool isEvenlyLong =
        (!first.isArray() || first.size() == outputs) && (!last.isArray() || last.size() == outputs);
    const bool hasDefaults = first.isArray() && last.isArray() ? true : outputs == 1;
    if (domain.size() != 1 || outputs == 0 || outputs > PDFFunction::kMaxValues || !isEvenlyLong
        || !hasDefaults)
        return nullptr;
    Intervals ends;
    for (std::size_t i = 0; i < outputs; ++i)
        ends.push_back({first.at(i).number(0), last.at(i).number(1)});
    return std::make_shared<ExponentialFunction>(
        std::move(domain), std::move(range), std::move(ends), object["N"].number(1));
}

FunctionRef makeFunction(const PDFObject& object, PDFRecording& recording, int depth);

FunctionRef makeStitched(
    const PDFObject& object, Intervals domain, Intervals range, PDFRecording& recording, int depth)
{
    const PDFObject functions = object["Functions"];
    const PDFObject bounds = object["Bounds"];
    const PDFObject encode = object["Encode"];
    const std::size_t count = functions.size();
    if (domain.size() != 1 || count == 0 || bounds.size() < count - 1 || encode.size() < 2 * count)
        return nullptr;

    std::vector<StitchedFunction::Part> parts;
    double start = domain.front().low;
    for (std::size_t i = 0; i < count; ++i) {
        FunctionRef function = makeFunction(functions.at(i), recording, depth + 1);
        const double end = i + 1 < count ? bounds.at(i).number() : domain.front().high;
        const bool fits = function && function->inputs() == 1 && end >= start
            && (parts.empty() || function->outputs() == parts.front().function->outputs());
        if (!fits)
            return nullptr;
        parts.push_back(
            {std::move(function), {start, end}, {encode.at(2 * i).number(), encode.at(2 * i + 1).number()}});
        start = end;
    }
    return std::make_shared<StitchedFunction>(std::move(domain), std::move(range), std::move(parts));
}

FunctionRef makeCalculator(
    const PDFObject& object, Intervals domain, const Intervals& range, PDFRecording& recording)
{
    if (!object.isStream() || range.empty())
        return nullptr;
    auto calculator = PDFCalculator::compile(recording.decode(object));
    if (!calculator)
        return nullptr;
    constexpr std::size_t kInstructionsPerNode = 16;
    recording.budget().spendFunctionNodes(calculator->size() / kInstructionsPerNode);
    return std::make_shared<CalculatorFunction>(std::move(domain), range, std::move(*calculator));
}

FunctionRef makeFunction(const PDFObject& object, PDFRecording& recording, int depth)
{
    constexpr int kMaxDepth = 8; // real functions are stitched once or twice
    const bool isDefined = object.isDictionary() || object.isStream();
    if (!isDefined || depth > kMaxDepth)
        return nullptr;
    recording.budget().spendFunctionNodes(1);

    Intervals domain = intervalsFrom(object["Domain"]);
    Intervals range = intervalsFrom(object["Range"]);
    const bool hasInvalidRange = range.empty() && object["Range"].size() > 0;
    if (domain.empty() || hasInvalidRange)
        return nullptr;
    switch (object["FunctionType"].integer(-1)) {
    case 0:
        return makePDFSampledFunction(object, std::move(domain), range, recording);
    case 2:
        return makeExponential(object, std::move(domain), std::move(range));
    case 3:
        return makeStitched(object, std::move(domain), std::move(range), recording, depth);
    case 4:
        return makeCalculator(object, std::move(domain), range, recording);
    default:
        return nullptr;
    }
}

} // namespace

std::shared_ptr<const PDFFunction> PDFFunction::make(const PDFObject& object, PDFRecording& recording)
{
    return makeFunction(object, recording, 0);
}

PDFFunction::PDFFunction(Intervals domain, Intervals range, std::size_t outputs)
    : _domain(std::move(domain))
    , _range(std::move(range))
    , _outputs(outputs)
{
}

void PDFFunction::evaluate(std::span<const double> inputs, std::span<double> results) const
{
    std::array<double, kMaxValues> arguments;
    for (std::size_t i = 0; i < _domain.size(); ++i)
        arguments[i] = _domain[i].clamp(i < inputs.size() ? inputs[i] : 0);
    std::array<double, kMaxValues> values{};
    compute(std::span(arguments).first(_domain.size()), std::span(values).first(_outputs));
    for (std::size_t i = 0; i < results.size(); ++i) {
        const double value = i < _outputs && std::isfinite(values[i]) ? values[i] : 0;
        results[i] = i < _range.size() ? _range[i].clamp(value) : value;
    }
}
