#pragma once

#include "CoreGraphics/pdf/PDFObject.h"

#include <CoreGraphics/CGImage.h>

#include <memory>
#include <string>

class PDFRecording;

/// An image of a file, ready to be drawn. Immutable.
struct PDFImage {
    RetainPtr<CGImage> image;  ///< masks and colour keys are in its alpha; a stencil is an image mask
    bool isStencil = false;    ///< painted in the fill colour
    bool interpolates = false; ///< true when it should be smooth where it is enlarged
};

/// The dictionary of an image, and its data behind the filters up to one that compresses pictures.
struct PDFImageData {
    PDFObject dictionary;
    std::string bytes;
    std::string pictureFilter; ///< the filter that is left, such as DCTDecode; usually empty
    PDFObject filterParameters;
};

/// The image of an image XObject, made once a page. Null, and the reason is logged, when it cannot be drawn:
/// it is invalid, or compressed by JPEG 2000, JBIG2 or fax. Throws PDFLimitExceeded.
std::shared_ptr<const PDFImage> makePDFImage(
    const PDFObject& stream, const PDFObject& resources, PDFRecording& recording);
/// The image of data whose dictionary has the long names of an image XObject. Otherwise like makePDFImage.
std::shared_ptr<const PDFImage> makePDFImage(
    const PDFImageData& data, const PDFObject& resources, PDFRecording& recording);
