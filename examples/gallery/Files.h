#pragma once

#include <CoreGraphics/CGImage.h>
#include <KorvidAppKit/ZRPDF.h>

#include <string>

/// The bytes of a file. Throws GalleryError when it cannot be read ("cannot read a path from …", where `what`
/// is "a path"), when it is empty and when it is larger than 256 MB.
std::string readFile(const std::string& name, const std::string& what);

/// The picture in a PNG file, not null. Throws GalleryError for a file that cannot be read or is not a
/// picture.
RetainPtr<CGImage> readPicture(const std::string& name);

/// The document in a PDF file, not null. Throws GalleryError for a file that cannot be read or is not a PDF
/// document.
RetainPtr<ZRPDF> readPDF(const std::string& name);
