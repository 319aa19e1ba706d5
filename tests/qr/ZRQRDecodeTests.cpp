#include "support/Process.h"
#include "support/Rendering.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZRQRCodeGenerator.h>
#include <KorvidAppKit/ZRQRView.h>

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

/// The bytes that zbarimg decodes from a PNG file, without a conversion of the character set because its
/// binary option is on. Fails if the program is missing or finds no symbol.
std::string decoded(const std::string& file)
{
    const ProcessResult result =
        runProcess({"zbarimg", "--quiet", "--nodbus", "--raw", "--oneshot", "-Sbinary", file});
    EXPECT_NE(result.exitCode, 127) << "zbarimg does not run: it is in the package zbar-tools";
    EXPECT_EQ(result.exitCode, 0) << "zbarimg finds no symbol: " << result.error;
    return result.output;
}

/// A view's size in points, its scale in pixels per point, and its inset.
struct Look {
    int width;
    int height;
    double scale;
    double inset;
};

/// Draws the string in a view, writes it as PNG and returns the decoded string.
std::string roundTrip(const std::string& text, const Look& look)
{
    const auto view = make<ZRQRView>(NSMakeRect(0, 0, look.width, look.height));
    view->setInset(look.inset);
    view->setString(NSString(text));
    Rendering rendering(look.width, look.height, look.scale);
    rendering.draw(view);

    const TemporaryFolder folder;
    const std::string file = folder.file("symbol.png");
    const auto png = rendering.png();
    EXPECT_TRUE(png && png->writeToFile(NSString(file), false));
    return decoded(file);
}

/// A view whose symbol has modules of about `pixels` pixels and the customary margin of four modules.
Look lookWithModules(const std::string& text, double pixels, double scale)
{
    NSInteger dim = 0;
    const auto path =
        adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText(NSString(text), &dim));
    const double module = pixels / scale;
    const double inset = std::ceil(4 * module);
    const int side = static_cast<int>(std::ceil(static_cast<double>(dim) * module + 2 * inset));
    return {side, side, scale, inset};
}

/// At most `length` bytes of UTF-8 without NUL, of letters, Latin, CJK, symbols and any scalar values at all.
std::string randomUTF8(std::size_t length, std::mt19937& random)
{
    const auto within = [&](char32_t first, char32_t last) { return first + random() % (last - first + 1); };
    const std::size_t kind = random() % 5;
    std::string text;
    while (true) {
        char32_t scalar = 0;
        switch (kind < 4 ? kind : random() % 4) {
        case 0:
            scalar = within(0xA1, 0x24F);
            break;
        case 1:
            scalar = within(0x4E00, 0x9FA5);
            break;
        case 2:
            scalar = within(0x1F300, 0x1F6FF);
            break;
        default:
            scalar = within(1, 0x10FFFF);
            if (scalar >= 0xD800 && scalar <= 0xDFFF)
                scalar = U'x';
        }
        std::u16string units(1, static_cast<char16_t>(scalar));
        if (scalar > 0xFFFF)
            units = {static_cast<char16_t>(0xD7C0 + (scalar >> 10)),
                static_cast<char16_t>(0xDC00 | (scalar & 0x3FF))};
        const std::string utf8 = NSString(units).UTF8String();
        if (text.size() + utf8.size() > length)
            return text;
        text += utf8;
    }
}

} // namespace

TEST(QRDecode, StringsOfAllLengthsDecode)
{
    std::mt19937 random(1);
    for (const std::size_t length :
        {1, 2, 3, 13, 14, 15, 26, 27, 50, 100, 200, 333, 500, 777, 1000, 1500, 2000, 2330, 2331}) {
        std::string text(length, ' ');
        for (char& each : text)
            each = static_cast<char>('!' + random() % 94);
        EXPECT_EQ(roundTrip(text, lookWithModules(text, 3, 1)), text) << length << " bytes";
    }
}

TEST(QRDecode, DigitsAndCapitalsDecodeUpToTheirCapacities)
{
    for (const std::string& text : {std::string("0123456789"), std::string(5596, '5'),
             std::string("HTTPS://EXAMPLE.ORG/A-B"), std::string(3391, 'Q')})
        EXPECT_EQ(roundTrip(text, lookWithModules(text, 3, 1)), text) << text.size() << " characters";
}

TEST(QRDecode, RandomUTF8Decodes)
{
    std::mt19937 random(2);
    for (const std::size_t length :
        {4, 5, 8, 10, 12, 16, 20, 25, 32, 40, 64, 90, 150, 300, 600, 1200, 2331}) {
        const std::string text = randomUTF8(length, random);
        EXPECT_EQ(roundTrip(text, lookWithModules(text, 4, 1)), text) << length << " bytes";
    }
}

TEST(QRDecode, StringsDecodeAtSeveralSizesScalesAndInsets)
{
    std::mt19937 random(3);
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        for (const double pixels : {3.0, 3.3, 4.7, 8.0}) {
            const std::string text = randomUTF8(20 + random() % 200, random);
            EXPECT_EQ(roundTrip(text, lookWithModules(text, pixels, scale)), text)
                << scale << " pixels a point, " << pixels << " a module";
        }
    }
}

TEST(QRDecode, ASentenceDecodesInWideTallAndTightViews)
{
    const std::string text = "Any text can be shown to a camera: grüße, 漢字, 🙂.";
    for (const Look& look : {Look{200, 200, 1, 10}, Look{320, 160, 1, 12}, Look{160, 320, 2, 12},
             Look{150, 150, 2, 4}, Look{500, 480, 1, 90}, Look{400, 400, 1, 2.9}})
        EXPECT_EQ(roundTrip(text, look), text) << look.width << " x " << look.height;
}
