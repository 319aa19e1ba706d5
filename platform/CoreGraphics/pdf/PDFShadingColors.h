#pragma once

#include "CoreGraphics/pdf/PDFColorSpace.h"
#include "CoreGraphics/pdf/PDFFunction.h"

#include <CoreGraphics/CGGradient.h>

#include <memory>
#include <optional>
#include <span>
#include <vector>

/// The colours of a shading: a colour space and the functions whose results are its components. Immutable.
class PDFShadingColors {
public:
    /// The colours that a shading's dictionary defines. Its functions, where it has some, must take `inputs`
    /// numbers. Nothing when the dictionary is invalid. Throws PDFLimitExceeded.
    static std::optional<PDFShadingColors> make(
        const PDFObject& shading, std::size_t inputs, const PDFObject& resources, PDFRecording& recording);

    /// False where colours are given by their components.
    bool hasFunctions() const { return !_functions.empty(); }
    const PDFColorSpace& space() const { return *_space; }
    /// The colour for a function's inputs, or for the components of a colour.
    PDFRGB color(std::span<const double> inputs) const;
    /// The cost of a colour, in the units of a drawing's budget.
    double work() const;

    /// The colours of functions of one input as a gradient, its location 0 at the input `start`: with exact
    /// stops where they are linear in parts, otherwise with 256 samples. Throws PDFLimitExceeded.
    RetainPtr<CGGradient> makeGradient(double start, double end, PDFRecording& recording) const;

private:
    PDFShadingColors(std::shared_ptr<const PDFColorSpace> space,
        std::vector<std::shared_ptr<const PDFFunction>> functions);
    void evaluate(std::span<const double> inputs, std::span<double> components) const;
    std::vector<double> linearBreaks(double start, double end) const;
    bool isInGamut(double input) const;

    std::shared_ptr<const PDFColorSpace> _space;
    std::vector<std::shared_ptr<const PDFFunction>>
        _functions; ///< one for all components or one for each; may be empty
};
