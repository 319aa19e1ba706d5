// A program in C outside of the library's source tree: draws into a bitmap, and fails if its pixels differ.
#include <CoreGraphics/CoreGraphics.h>
#include <KorvidAppKit/ZRShapes.h>

int main(void)
{
    CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
    CGContextRef bitmap = CGBitmapContextCreate(NULL, 4, 4, 8, 0, space, kCGImageAlphaPremultipliedLast);
    const CGRect middle = CGRectIntegral(CGRectMake(1.25, 1.5, 1.5, 1.25));
    CGPathRef square = ZRCreateRoundedRectPath(kZRCornerAll, middle, 0);
    CGContextSetRGBFillColor(bitmap, 1, 0.5, 0, 1);
    CGContextAddPath(bitmap, square);
    CGContextFillPath(bitmap);

    const uint8_t* pixels = CGBitmapContextGetData(bitmap);
    size_t orange = 0;
    size_t transparent = 0;
    for (size_t i = 0; i < 16; ++i) {
        const uint8_t* pixel = pixels + 4 * i;
        orange += pixel[0] == 255 && pixel[1] == 128 && pixel[2] == 0 && pixel[3] == 255;
        transparent += pixel[3] == 0;
    }
    CGPathRelease(square);
    CGContextRelease(bitmap);
    CGColorSpaceRelease(space);
    return orange == 4 && transparent == 12 ? 0 : 1;
}
