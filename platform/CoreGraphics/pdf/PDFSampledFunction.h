#pragma once

#include "CoreGraphics/pdf/PDFFunction.h"

/// The function of a table of samples (type 0), linear between neighbouring samples. Domain and range are
/// those of the object, already checked; both are needed. Null when the object is invalid: more than 8
/// inputs, samples of a size that PDF does not have, less data than samples.
std::shared_ptr<const PDFFunction> makePDFSampledFunction(const PDFObject& object,
    std::vector<PDFInterval> domain, const std::vector<PDFInterval>& range, PDFRecording& recording);
