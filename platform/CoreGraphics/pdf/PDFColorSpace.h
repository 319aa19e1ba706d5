#pragma once

#include "CoreGraphics/pdf/PDFObject.h"
#include "CoreGraphics/pdf/PDFRGB.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

struct PDFInterval;
class PDFRecording;

/// Converts colour components of a file to sRGB. Immutable, and safe on any thread.
///
/// | space | drawn as |
/// |---|---|
/// | DeviceGray, CalGray | sRGB with three equal components |
/// | DeviceRGB, CalRGB | sRGB |
/// | DeviceCMYK | coated offset paper, see PDFPrintingInks.h |
/// | ICCBased | DeviceGray, DeviceRGB or DeviceCMYK by its number of components |
/// | Lab | sRGB, its white point white |
/// | Indexed, Separation, DeviceN | the space that they are based on |
class PDFColorSpace {
public:
    /// The space of a name or an array, where `resources` define further names. An indirect array's is made
    /// once a page. Null when it is invalid. Throws PDFLimitExceeded.
    static std::shared_ptr<const PDFColorSpace> make(
        const PDFObject& nameOrArray, const PDFObject& resources, PDFRecording& recording);
    static const std::shared_ptr<const PDFColorSpace>& deviceGray();
    static const std::shared_ptr<const PDFColorSpace>& deviceRGB();
    static const std::shared_ptr<const PDFColorSpace>& deviceCMYK();

    static constexpr std::size_t kMaxComponents = 32;

    explicit PDFColorSpace(std::size_t components)
        : _components(components)
    {
    }
    PDFColorSpace(const PDFColorSpace&) = delete;
    PDFColorSpace& operator=(const PDFColorSpace&) = delete;
    virtual ~PDFColorSpace() = default;

    /// At most `kMaxComponents`. 0 for a pattern space, whose colour has the components of `underlying`.
    std::size_t components() const { return _components; }
    /// The colour right after the space was selected.
    virtual std::vector<double> initialComponents() const { return std::vector<double>(_components); }
    /// In sRGB. Components are clamped to what the space allows. Missing ones are 0, further ones are
    /// ignored; NaN gives some colour.
    PDFRGB color(std::span<const double> components) const;

    bool isPattern() const { return _isPattern; }
    /// The space of an uncoloured pattern's colour. Borrowed. Null for other spaces, and for patterns with
    /// colours of their own.
    virtual const PDFColorSpace* underlying() const { return nullptr; }
    /// True for inks that leave no mark: a separation called None.
    virtual bool paintsNothing() const { return false; }

    /// What the smallest and the largest sample of an image stand for, a pair for each component. `bits` is
    /// the size of a sample.
    virtual std::vector<PDFInterval> defaultDecode(int bits) const;
    /// True where sRGB colours are linear in the components between 0 and 1.
    virtual bool isLinear() const { return false; }
    /// The cost of a conversion, in the units of a drawing's budget.
    virtual double work() const { return 20; }

protected:
    struct PatternTag { };
    explicit PDFColorSpace(PatternTag)
        : _isPattern(true)
    {
    }

private:
    /// `components` has the right size.
    virtual PDFRGB convert(std::span<const double> components) const = 0;

    const std::size_t _components = 0;
    const bool _isPattern = false;
};
