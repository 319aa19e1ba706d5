#pragma once

#include "CoreGraphics/raster/CoverageRows.h"
#include "CoreGraphics/raster/MaskProduct.h"

/// Paints rows of coverage, multiplied by a product of masks.
class ProductRows final : public CoverageRows {
public:
    /// The limits passed to the raster must be the product's area. Borrows both arguments.
    ProductRows(MaskProduct& product, RunPainter& painter)
        : _product(product)
        , _painter(painter)
    {
    }

    void rows(
        int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage) override;

private:
    void paintFull(int y, int begin, int end);
    /// Null coverage means full coverage.
    void paint(int y, int begin, int end, const unsigned char* coverage);

    MaskProduct& _product;
    RunPainter& _painter;
};
