#pragma once

#include "CoreGraphics/pdf/PDFShadingColors.h"

#include <CoreGraphics/CGGeometry.h>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// The colour of a point of a mesh: the input of the shading's function, or the components of a colour.
using PDFMeshColor = std::array<float, 4>;

struct PDFMeshVertex {
    CGPoint point;
    PDFMeshColor color;
};

/// A bicubic surface. Its parameters u and v run from 0 to 1.
struct PDFMeshPatch {
    /// Control points: the one at index 4 i + j belongs to the i-th Bernstein polynomial of u and the j-th of
    /// v.
    std::array<CGPoint, 16> points;
    /// At (u, v) = (0, 0), (0, 1), (1, 1) and (1, 0); linear in u and in v between.
    std::array<PDFMeshColor, 4> colors;
};

/// The triangles or patches of a shading of types 4 to 7, in the order in which they are painted.
struct PDFMesh {
    std::vector<PDFMeshVertex> vertices;
    std::vector<std::array<std::uint32_t, 3>> triangles; ///< indices of vertices
    std::vector<PDFMeshPatch> patches;
    /// True when colours are sRGB already. Otherwise they are what `PDFShadingColors` converts.
    bool hasRGB = false;

    /// Contains all points, control points included; null without any.
    CGRect bounds() const;
};

/// Reads the mesh of a shading's stream, as far as its data go. Nothing when the stream's dictionary is
/// invalid. Throws PDFLimitExceeded.
std::optional<PDFMesh> readPDFMesh(
    const PDFObject& stream, const PDFShadingColors& colors, PDFRecording& recording);
