#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

/// A Gaussian blur of alphas in two passes of plain loops, along the rows and then along the columns, as
/// programs write it that draw shadows with a library without shadows. The standard deviation is half the
/// blur.
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
    void run(unsigned char* alphas, std::ptrdiff_t width, std::ptrdiff_t height, std::ptrdiff_t bytesPerRow)
    {
        _rows.resize(static_cast<std::size_t>(width * height));
        const float* weights = _weights.data() + _blur;
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            const unsigned char* row = alphas + y * bytesPerRow;
            float* blurred = _rows.data() + y * width;
            for (std::ptrdiff_t x = 0; x < width; ++x) {
                blurred[x] = 0;
                for (std::ptrdiff_t i = std::max(-_blur, -x); i <= std::min(_blur, width - 1 - x); ++i)
                    blurred[x] += weights[i] * static_cast<float>(row[x + i]);
            }
        }
        for (std::ptrdiff_t y = 0; y < height; ++y) {
            unsigned char* row = alphas + y * bytesPerRow;
            const float* blurred = _rows.data() + y * width;
            for (std::ptrdiff_t x = 0; x < width; ++x) {
                float sum = 0.5F;
                for (std::ptrdiff_t i = std::max(-_blur, -y); i <= std::min(_blur, height - 1 - y); ++i)
                    sum += weights[i] * blurred[x + i * width];
                row[x] = static_cast<unsigned char>(sum);
            }
        }
    }

private:
    std::ptrdiff_t _blur;
    std::vector<float> _weights;
    std::vector<float> _rows;
};
