#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

class PDFObject;
class PDFRecording;

/// A range of numbers.
struct PDFInterval {
    double low = 0;
    double high = 1;

    /// `low` for NaN.
    double clamp(double number) const
    {
        if (!(number > low))
            return low;
        return number < high ? number : high;
    }
    bool contains(double number) const { return number >= low && number <= high; }
    /// The number that lies in `target` where `number` lies here; the start of `target` when this interval is
    /// empty.
    double map(double number, const PDFInterval& target) const
    {
        if (!(high > low))
            return target.low;
        return target.low + (number - low) * (target.high - target.low) / (high - low);
    }
};

/// A function from numbers to numbers, which a file defines. Immutable, and safe on any thread.
class PDFFunction {
public:
    /// The function of a dictionary or stream: sampled (type 0), exponential (2), stitched together (3), or a
    /// PostScript calculator program (4). Null when it is invalid: values missing or of the wrong type, more
    /// than `kMaxValues` inputs or results, a domain whose end lies before its start, less data than samples.
    /// Throws PDFLimitExceeded.
    static std::shared_ptr<const PDFFunction> make(const PDFObject& object, PDFRecording& recording);

    static constexpr std::size_t kMaxValues = 32;

    PDFFunction(const PDFFunction&) = delete;
    PDFFunction& operator=(const PDFFunction&) = delete;
    virtual ~PDFFunction() = default;

    std::size_t inputs() const { return _domain.size(); }
    std::size_t outputs() const { return _outputs; }

    /// Computes the results. Inputs are clamped to the domain, results to the range. Missing inputs and
    /// additional results are 0, and so is what is not a finite number.
    void evaluate(std::span<const double> inputs, std::span<double> results) const;

    /// For a function of one input: the inputs between which all results are linear, in ascending order, the
    /// ends of the domain included; results may jump there. Empty when some parts are curves.
    virtual std::vector<double> linearBreaks() const { return {}; }

    /// The cost of an evaluation, in the units of a drawing's budget.
    virtual double work() const = 0;

protected:
    using Intervals = std::vector<PDFInterval>;

    /// An empty range limits nothing.
    PDFFunction(Intervals domain, Intervals range, std::size_t outputs);

    const Intervals& domain() const { return _domain; }
    const Intervals& range() const { return _range; }

private:
    /// The inputs lie in the domain, and both spans have the function's own sizes.
    virtual void compute(std::span<const double> inputs, std::span<double> results) const = 0;

    const Intervals _domain;
    const Intervals _range;
    const std::size_t _outputs;
};
