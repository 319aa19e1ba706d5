#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

/// A Gaussian blur of alphas by two passes of plain loops, along the rows and then along the columns: what
/// programs write that draw shadows with a library that has none. The standard deviation is half the blur.
class PlainGaussian {
public:
    explicit PlainGaussian(int blur)
        : _blur(blur)
    {
        float sum = 0;
        for (int i = -blur; i <= blur; ++i) {
            const auto distance = float(2 * i) / float(blur);
            _weights.push_back(std::exp(-distance * distance / 2));
            sum += _weights.back();
        }
        for (float& weight : _weights)
            weight /= sum;
    }

    /// The pixels beyond the edges count as transparent.
    void run(unsigned char* alphas, int width, int height, int bytesPerRow)
    {
        _rows.resize(std::size_t(width) * std::size_t(height));
        for (int y = 0; y < height; ++y) {
            const unsigned char* row = alphas + std::ptrdiff_t(y) * bytesPerRow;
            for (int x = 0; x < width; ++x) {
                float sum = 0;
                for (int i = std::max(-_blur, -x); i <= std::min(_blur, width - 1 - x); ++i)
                    sum += _weights[std::size_t(i + _blur)] * float(row[x + i]);
                _rows[std::size_t(y * width + x)] = sum;
            }
        }
        for (int y = 0; y < height; ++y) {
            unsigned char* row = alphas + std::ptrdiff_t(y) * bytesPerRow;
            for (int x = 0; x < width; ++x) {
                float sum = 0;
                for (int i = std::max(-_blur, -y); i <= std::min(_blur, height - 1 - y); ++i)
                    sum += _weights[std::size_t(i + _blur)] * _rows[std::size_t((y + i) * width + x)];
                row[x] = static_cast<unsigned char>(sum + 0.5F);
            }
        }
    }

private:
    int _blur;
    std::vector<float> _weights;
    std::vector<float> _rows;
};
