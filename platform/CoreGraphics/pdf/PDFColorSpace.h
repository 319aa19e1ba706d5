#pragma once

#include "CoreGraphics/pdf/PDFObject.h"
#include "CoreGraphics/pdf/PDFRGB.h"

#include <memory>
#include <span>
#include <vector>

class PDFRecording;

/// Converts colour components to sRGB. Immutable.
class PDFColorSpace {
public:
    /// The space of a name or an array, where `resources` define further names. Null when it is invalid.
    static std::shared_ptr<const PDFColorSpace> make(
        const PDFObject& nameOrArray, const PDFObject& resources, PDFRecording& recording);
    static const std::shared_ptr<const PDFColorSpace>& deviceGray();
    static const std::shared_ptr<const PDFColorSpace>& deviceRGB();
    static const std::shared_ptr<const PDFColorSpace>& deviceCMYK();

    explicit PDFColorSpace(std::size_t components)
        : _components(components)
    {
    }

    std::size_t components() const { return _components; }
    /// The colour right after the space was selected.
    std::vector<double> initialComponents() const;
    /// In sRGB. Missing components read as 0.
    PDFRGB color(std::span<const double> components) const;
    bool isPattern() const { return false; }
    /// The space of an uncoloured pattern's colour; null otherwise.
    const PDFColorSpace* underlying() const { return nullptr; }
    /// True for inks that leave no mark.
    bool paintsNothing() const { return false; }

private:
    std::size_t _components;
};
