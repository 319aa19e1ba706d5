#pragma once

#include "CoreGraphics/pdf/PDFMesh.h"
#include "CoreGraphics/pdf/PDFPixelLayer.h"

/// Paints a mesh into a layer whose user space is the shading's: the pixels whose centres lie in a triangle
/// or patch, later ones over earlier ones. Returns the work that it took; stops when that exceeds `workLeft`.
double paintPDFMesh(
    const PDFMesh& mesh, const PDFShadingColors& colors, PDFPixelLayer& layer, double workLeft);
