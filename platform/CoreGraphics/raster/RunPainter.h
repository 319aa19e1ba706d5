#pragma once

/// Paints runs of pixels.
class RunPainter {
public:
    /// Paints `count` pixels of a row, each through a byte of coverage. Null coverage means full coverage.
    virtual void paintRun(int x, int y, int count, const unsigned char* coverage) = 0;

protected:
    ~RunPainter() = default;
};
