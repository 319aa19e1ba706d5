#include "CoreGraphics/pdf/PDFSampledFunction.h"

#include "CoreGraphics/pdf/PDFBits.h"
#include "CoreGraphics/pdf/PDFObject.h"
#include "CoreGraphics/pdf/PDFRecording.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

namespace {

using Intervals = std::vector<PDFInterval>;

/// An evaluation reads a sample for each corner of a cube of as many dimensions.
constexpr std::size_t kMaxInputs = 8;

/// Numbers of 1 to 32 bits, packed without gaps.
struct PackedSamples {
    std::string bytes;
    std::size_t bits = 8;

    /// From 0 to 1.
    double at(std::size_t index) const
    {
        const double largest = double((std::uint64_t(1) << bits) - 1);
        return bitsAt(bytes, index * bits, bits) / largest;
    }
};

class SampledFunction final : public PDFFunction {
public:
    /// Of one input.
    struct Axis {
        std::size_t size = 1;
        PDFInterval encoded; ///< positions among the samples of the ends of the domain
    };

    SampledFunction(Intervals domain, const Intervals& range, std::vector<Axis> axes, Intervals decoded,
        PackedSamples samples)
        : PDFFunction(std::move(domain), range, range.size())
        , _axes(std::move(axes))
        , _decoded(std::move(decoded))
        , _samples(std::move(samples))
    {
    }

    std::vector<double> linearBreaks() const override
    {
        constexpr std::size_t kMostBreaks = 256;
        const Axis& axis = _axes.front();
        // A decoded value outside the range bends the line to the next sample.
        const bool isInRange =
            std::ranges::equal(_decoded, range(), [](const auto& decoded, const auto& range) {
                return range.contains(decoded.low) && range.contains(decoded.high);
            });
        if (_axes.size() > 1 || axis.size > kMostBreaks || !isInRange
            || !(axis.encoded.high > axis.encoded.low))
            return {};
        const PDFInterval& domain = this->domain().front();
        std::vector<double> breaks{domain.low};
        for (std::size_t i = 0; i < axis.size; ++i) {
            const double position = axis.encoded.map(double(i), domain);
            if (position > domain.low && position < domain.high)
                breaks.push_back(position);
        }
        breaks.push_back(domain.high);
        return breaks;
    }

    double work() const override
    {
        return 50 + double(std::size_t(1) << _axes.size()) * double(20 + 10 * outputs());
    }

private:
    void compute(std::span<const double> inputs, std::span<double> results) const override
    {
        std::array<std::size_t, kMaxInputs> lower; // of the two samples around the input
        std::array<double, kMaxInputs> fraction;
        for (std::size_t i = 0; i < _axes.size(); ++i) {
            const PDFInterval positions{0, double(_axes[i].size - 1)};
            const double position = positions.clamp(domain()[i].map(inputs[i], _axes[i].encoded));
            lower[i] = std::size_t(position);
            fraction[i] = position - double(lower[i]);
        }
        std::ranges::fill(results, 0.0);
        for (std::size_t corner = 0; corner < std::size_t(1) << _axes.size(); ++corner) {
            double weight = 1;
            std::size_t sample = 0;
            std::size_t stride = 1;
            for (std::size_t i = 0; i < _axes.size(); ++i) {
                const std::size_t isUpper = corner >> i & 1;
                weight *= isUpper ? fraction[i] : 1 - fraction[i];
                sample += (lower[i] + isUpper) * stride;
                stride *= _axes[i].size;
            }
            if (weight == 0)
                continue; // beyond the last sample, too
            for (std::size_t j = 0; j < results.size(); ++j)
                results[j] += weight * _samples.at(sample * results.size() + j);
        }
        constexpr PDFInterval unit{0, 1};
        for (std::size_t j = 0; j < results.size(); ++j)
            results[j] = unit.map(results[j], _decoded[j]);
    }

    const std::vector<Axis> _axes;
    const Intervals _decoded; ///< the values of the smallest and the largest sample
    const PackedSamples _samples;
};

/// `fallback` for each pair of numbers that the array lacks.
PDFInterval pairAt(const PDFObject& array, std::size_t index, const PDFInterval& fallback)
{
    return {array.at(2 * index).number(fallback.low), array.at(2 * index + 1).number(fallback.high)};
}

bool isSampleSize(int bits)
{
    constexpr int kSizes[] = {1, 2, 4, 8, 12, 16, 24, 32};
    return std::ranges::find(kSizes, bits) != std::end(kSizes);
}

} // namespace

std::shared_ptr<const PDFFunction> makePDFSampledFunction(
    const PDFObject& object, Intervals domain, const Intervals& range, PDFRecording& recording)
{
    const int bits = object["BitsPerSample"].integer();
    const PDFObject size = object["Size"];
    const bool isInvalid = !object.isStream() || range.empty() || domain.size() > kMaxInputs
        || size.size() < domain.size() || !isSampleSize(bits);
    if (isInvalid)
        return nullptr;

    PackedSamples samples{recording.decode(object), std::size_t(bits)};
    const double capacity = double(samples.bytes.size()) * 8 / bits;
    double count = double(range.size()); // an integer would overflow
    std::vector<SampledFunction::Axis> axes;
    for (std::size_t i = 0; i < domain.size(); ++i) {
        const int sizeOfAxis = size.at(i).integer();
        count *= sizeOfAxis;
        if (sizeOfAxis < 1 || count > capacity)
            return nullptr;
        axes.push_back({std::size_t(sizeOfAxis), pairAt(object["Encode"], i, {0, double(sizeOfAxis - 1)})});
    }
    Intervals decoded;
    for (std::size_t j = 0; j < range.size(); ++j)
        decoded.push_back(pairAt(object["Decode"], j, range[j]));
    return std::make_shared<SampledFunction>(
        std::move(domain), range, std::move(axes), std::move(decoded), std::move(samples));
}
