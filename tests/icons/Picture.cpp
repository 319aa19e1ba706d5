#include "Picture.h"

#include "support/Process.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

constexpr int referencePixels = 1024;

Picture drawnBy(std::vector<std::string> words, const std::string& output)
{
    const auto result = runProcess(words);
    if (result.exitCode != 0)
        throw std::runtime_error(words.front() + ": " + result.error);
    return readPPM(output);
}

} // namespace

Picture readPPM(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string magic;
    Picture picture;
    int highest = 0;
    file >> magic >> picture.width >> picture.height >> highest;
    file.get();
    if (magic != "P6" || highest != 255)
        throw std::runtime_error("no binary PPM file: " + path);
    picture.bytes.resize(3 * std::size_t(picture.width) * std::size_t(picture.height));
    file.read(reinterpret_cast<char*>(picture.bytes.data()), std::streamsize(picture.bytes.size()));
    if (!file)
        throw std::runtime_error("truncated: " + path);
    return picture;
}

Picture shrunk(const Picture& picture, int factor)
{
    Picture result{picture.width / factor, picture.height / factor, {}};
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            for (int channel = 0; channel < 3; ++channel) {
                int sum = 0;
                for (int row = 0; row < factor; ++row) {
                    for (int column = 0; column < factor; ++column)
                        sum += picture.pixel(factor * x + column, factor * y + row)[channel];
                }
                result.bytes.push_back(std::uint8_t(std::lround(double(sum) / (factor * factor))));
            }
        }
    }
    return result;
}

Picture drawn(CGPDFDocumentRef document, int pixels)
{
    CGPDFPageRef page = CGPDFDocumentGetPage(document, 1);
    const CGRect box = CGPDFPageGetBoxRect(page, kCGPDFCropBox);
    const double scale = pixels / std::max(box.size.width, box.size.height);
    Picture result{int(std::lround(box.size.width * scale)), int(std::lround(box.size.height * scale)), {}};
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const auto width = std::size_t(result.width);
    const auto height = std::size_t(result.height);
    const auto context = adopt(
        CGBitmapContextCreate(nullptr, width, height, 8, 4 * width, space, kCGImageAlphaPremultipliedLast));
    CGContextSetRGBFillColor(context, 1, 1, 1, 1);
    CGContextFillRect(context, CGRectMake(0, 0, double(width), double(height)));
    CGContextScaleCTM(context, scale, scale);
    CGContextTranslateCTM(context, -box.origin.x, -box.origin.y);
    CGContextDrawPDFPage(context, page);
    const auto* bytes = static_cast<const std::uint8_t*>(CGBitmapContextGetData(context));
    for (std::size_t i = 0; i < width * height; ++i)
        result.bytes.insert(result.bytes.end(), bytes + 4 * i, bytes + 4 * i + 3);
    return result;
}

Picture drawnByPoppler(const std::string& path, const std::string& folder)
{
    const auto output = folder + "/poppler";
    return drawnBy(
        {"pdftoppm", "-singlefile", "-cropbox", "-scale-to", std::to_string(referencePixels), path, output},
        output + ".ppm");
}

Picture drawnByMuPDF(const std::string& path, const std::string& folder)
{
    const auto output = folder + "/mupdf.ppm";
    const auto pixels = std::to_string(referencePixels);
    return drawnBy(
        {"mutool", "draw", "-q", "-A", "8", "-w", pixels, "-h", pixels, "-o", output, path, "1"}, output);
}

Difference difference(const Picture& picture, const Picture& first, const Picture& second)
{
    constexpr int agreement = 4;
    const auto count = std::min({picture.bytes.size(), first.bytes.size(), second.bytes.size()});
    Difference result;
    std::size_t compared = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (std::abs(first.bytes[i] - second.bytes[i]) > agreement)
            continue;
        const double distance = std::abs(picture.bytes[i] - (first.bytes[i] + second.bytes[i]) / 2.0);
        result.mean += distance;
        result.highest = std::max(result.highest, int(distance));
        ++compared;
    }
    // Programs that agree nowhere tell nothing: that has to fail, not to pass.
    if (4 * compared < 3 * count)
        return {255, 255};
    result.mean /= double(compared);
    return result;
}

Ink ink(const Picture& picture)
{
    constexpr int white = 255 - 8;
    const double unit = 1.0 / std::max(picture.width, picture.height);
    Ink result;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const auto* pixel = picture.pixel(x, y);
            if (std::min({pixel[0], pixel[1], pixel[2]}) >= white)
                continue;
            result.box = CGRectUnion(result.box, CGRectMake(x * unit, y * unit, unit, unit));
            result.area += unit * unit;
        }
    }
    return result;
}
