#pragma once

#include "CoreGraphics/pdf/BaseEncoding.h"
#include "CoreGraphics/pdf/InstalledFace.h"

class PDFObject;

// What stands in for a font that a file does not contain.

/// The installed face that a font's name and descriptor call for.
InstalledFace::Wanted wantedStandIn(const PDFObject& font, const PDFObject& descriptor, unsigned flags);

/// The encoding that such a font has where the file states none.
BaseEncoding standInEncoding(const PDFObject& font);
