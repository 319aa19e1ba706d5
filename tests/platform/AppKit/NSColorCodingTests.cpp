#include <AppKit/NSColor.h>

#include <AppKit/NSAppearance.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSData.h>
#include <Foundation/NSKeyedArchiver.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

class UncodedStripes : public NSColor { };

RetainPtr<NSData> archive(const NSObject* object)
{
    return NSKeyedArchiver::archivedDataWithRootObject(object, true);
}

RetainPtr<NSColor> unarchive(const NSData* data)
{
    return NSKeyedUnarchiver::unarchivedObjectOfClass<NSColor>(data);
}

RetainPtr<NSColor> thereAndBack(const NSColor* color)
{
    return unarchive(archive(color).get());
}

std::vector<std::uint64_t> bits(const NSColor& color)
{
    std::vector<double> components(color.numberOfComponents());
    color.getComponents(components.data());
    std::vector<std::uint64_t> result(components.size());
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = std::bit_cast<std::uint64_t>(components[i]);
    return result;
}

} // namespace

TEST(NSColorCoding, RoundTripsSpaceAndEveryBit)
{
    using Limits = std::numeric_limits<double>;
    const double values[] = {0, -0.0, 1.0 / 3, -1 / 255.0, 1, 136 / 255.0, Limits::denorm_min(),
        Limits::max(), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), 0.1};
    for (NSColorSpace* space : {NSColorSpace::sRGBColorSpace(), NSColorSpace::deviceRGBColorSpace(),
             NSColorSpace::deviceGrayColorSpace(), NSColorSpace::genericRGBColorSpace(),
             NSColorSpace::genericGamma22GrayColorSpace()})
        for (int i = 0; i <= 8; ++i) {
            const auto color =
                NSColor::colorWithColorSpace(space, values + i, space->numberOfColorComponents() + 1);
            const auto back = thereAndBack(color);
            ASSERT_NE(back, nullptr);
            EXPECT_EQ(back->colorSpace(), space);
            EXPECT_EQ(bits(*back), bits(*color)) << color->description().UTF8String();
        }
}

TEST(NSColorCoding, RoundTripsVariants)
{
    const auto back = thereAndBack(NSColor::labelColor());
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->isEqual(NSColor::labelColor()));
    EXPECT_EQ(back->type(), NSColorTypeCatalog);
    NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua)->performAsCurrentDrawingAppearance([&] {
        EXPECT_EQ(CGColorGetComponents(back->CGColor())[0], 1);
    });
}

TEST(NSColorCoding, RoundTripsAColorMadeFromACGColor)
{
    const auto color = NSColor::colorWithCGColor(adopt(CGColorCreateSRGB(0.1, 0.2, 0.3, 0.4)));
    EXPECT_TRUE(thereAndBack(color)->isEqual(color));
}

TEST(NSColorCoding, ReturnsNullForColorsWithoutComponents)
{
    EXPECT_EQ(archive(make<UncodedStripes>().get()), nullptr);
}

TEST(NSColorCoding, ReturnsNullForOtherArchives)
{
    EXPECT_EQ(unarchive(archive(box("ffffff").get()).get()), nullptr);
    EXPECT_EQ(unarchive(NSData::data().get()), nullptr);
    EXPECT_EQ(unarchive(nullptr), nullptr);
}

TEST(NSColorCoding, ReturnsNullForIncompleteArchives)
{
    const auto data = archive(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4).get());
    const std::string archive(static_cast<const char*>(data->bytes()), data->length());
    for (const std::string part :
        {"NSColorSpace", "NSComponent0", "NSComponent1", "NSComponent2", "NSComponent3", "sRGB"}) {
        std::string damaged = archive;
        const std::size_t position = damaged.find(part);
        ASSERT_NE(position, std::string::npos) << part;
        damaged[position] = 'X';
        EXPECT_EQ(unarchive(NSData::dataWithBytes(damaged.data(), damaged.size()).get()), nullptr) << part;
    }
}

TEST(NSColorCoding, ReturnsAColorOrNullForCorruptArchives)
{
    const RetainPtr<NSData> archives[] = {
        archive(NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4).get()),
        archive(NSColor::colorWithDeviceWhite(0.1, 0.4).get()),
        archive(NSColor::labelColor()),
    };
    std::mt19937 random(2);
    const auto below = [&](std::size_t end) { return random() % end; };
    int colors = 0;
    int rejected = 0;
    for (int i = 0; i < 10000; ++i) {
        const NSData& data = *archives[i % 3];
        const auto* bytes = static_cast<const std::uint8_t*>(data.bytes());
        std::vector<std::uint8_t> damaged(bytes, bytes + data.length());
        for (std::size_t change = 0; change <= below(4); ++change) {
            const auto at = damaged.begin() + static_cast<std::ptrdiff_t>(below(damaged.size()));
            switch (below(4)) {
            case 0:
                *at = random();
                break;
            case 1:
                *at ^= 1U << below(8);
                break;
            case 2:
                damaged.erase(at);
                break;
            default:
                damaged.insert(at, damaged[below(damaged.size())]);
            }
        }
        const auto color = unarchive(NSData::dataWithBytes(damaged.data(), damaged.size()).get());
        if (!color) {
            ++rejected;
            continue;
        }
        ++colors;
        ASSERT_NE(color->type(), NSColorTypePattern);
        ASSERT_NE(color->CGColor(), nullptr);
        ASSERT_NE(color->colorUsingColorSpace(NSColorSpace::sRGBColorSpace()), nullptr);
    }
    // Both results occur: a changed digit is still a number, a changed tag is invalid.
    EXPECT_GT(colors, 0);
    EXPECT_GT(rejected, 0);
}
