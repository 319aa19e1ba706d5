// A program outside of the library's source tree. `consumer ICON PICTURE` draws a QR code beside a PDF icon,
// writes both into a PNG file, and prints a letter for each pixel.
#include <AppKit/AppKit.h>
#include <KorvidAppKit/KorvidAppKit.h>

#include <cstdio>

char letterOf(const unsigned char* pixel)
{
    switch (pixel[0] * 0x1000000u + pixel[1] * 0x10000u + pixel[2] * 0x100u + pixel[3]) {
    case 0x00000000:
        return '.';
    case 0x000000FF:
        return '#';
    case 0xFFFFFFFF:
        return ' ';
    case 0xFF8000FF:
        return 'o';
    default:
        return '?';
    }
}

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    NSApplication::sharedApplication(); // with a display or without

    auto code = make<ZRQRView>(NSMakeRect(0, 0, 21, 21));
    code->setString("KORVID");
    auto icon = make<ZRPDFView>(NSMakeRect(22, 0, 8, 8));
    icon->setPdf(ZRPDF::initWithURL(NSURL::fileURLWithPath(argv[1])));
    icon->setPdfColorPlatform(ZRGraphics::sharedGraphics()->platformColorFromHex("FF8000"));
    auto panel = make<NSView>(NSMakeRect(0, 0, 30, 21));
    panel->addSubview(code);
    panel->addSubview(icon);

    const auto picture = panel->bitmapImageRepForCachingDisplayInRect(panel->bounds());
    panel->cacheDisplayInRect(panel->bounds(), picture);
    for (NSInteger y = 0; y < picture->pixelsHigh(); ++y) {
        for (NSInteger x = 0; x < picture->pixelsWide(); ++x)
            std::putchar(letterOf(picture->bitmapData() + y * picture->bytesPerRow() + 4 * x));
        std::putchar('\n');
    }
    const auto png = picture->representationUsingType(NSBitmapImageFileTypePNG, nullptr);
    return png->writeToFile(argv[2], false) ? 0 : 1;
}
