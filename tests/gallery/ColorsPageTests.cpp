#include "GalleryPictures.h"
#include "Page.h"
#include "PageNamed.h"
#include "support/Describe.h"

#include <KorvidAppKit/ZRGraphics.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <span>

namespace {

/// The components of "rrggbb" and "rrggbbaa".
Components componentsOf(std::string hex)
{
    hex.resize(8, 'f');
    Components components{};
    for (std::size_t i = 0; i < components.size(); ++i)
        components[i] = std::stoi(hex.substr(2 * i, 2), nullptr, 16);
    return components;
}

// The checkers behind translucent colours: "zel-mid-gray" and "zel-cool-gray-mid".
const Components kDarkChecker = componentsOf("4a4a4a");
const Components kLightChecker = componentsOf("64656a");

Components over(const Components& color, const Components& ground)
{
    const double alpha = color[3] / 255.0;
    Components result{0, 0, 0, 255};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = static_cast<int>(std::lround(alpha * color[i] + (1 - alpha) * ground[i]));
    return result;
}

/// The maximum error of a component of a translucent colour, which is rounded when the colour is
/// premultiplied and when it is blended.
constexpr int kRounding = 1;

bool isNear(const Components& a, const Components& b)
{
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::abs(a[i] - b[i]) > kRounding)
            return false;
    }
    return true;
}

class ColorsPage : public testing::Test {
protected:
    const RetainPtr<NSView> page = makePageNamed("colors");
    /// The swatches, each in a view with its caption, which has no room in the pictures.
    const std::vector<RetainPtr<NSView>>& cells = page->subviews();
    const std::span<const ZRNamedColor> colors = ZRGraphics::builtInColors();
};

} // namespace

TEST_F(ColorsPage, HasASwatchForEachNamedColorWithNameAndHexStringAsToolTip)
{
    ASSERT_EQ(cells.size(), colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i)
        EXPECT_EQ(cells[i]->subviews().front()->toolTip().UTF8String(),
            std::string(colors[i].name) + " #" + colors[i].hex);
    EXPECT_EQ(cells[9]->subviews().front()->toolTip(), "zel-blue-bg #02021D");
}

TEST_F(ColorsPage, OrdersSwatchesLikeTheTable)
{
    EXPECT_EQ(NSMinX(cells[0]->frame()), kGalleryMargin);
    for (std::size_t i = 1; i < cells.size(); ++i) {
        const NSRect before = cells[i - 1]->frame();
        const NSRect frame = cells[i]->frame();
        if (frame.origin.y == before.origin.y) {
            EXPECT_GT(NSMinX(frame), NSMaxX(before)) << colors[i].name;
        } else {
            EXPECT_EQ(NSMinX(frame), kGalleryMargin) << colors[i].name;
            EXPECT_LT(NSMaxY(frame), NSMinY(before)) << colors[i].name;
        }
    }
}

TEST_F(ColorsPage, SwatchesHaveTheirColorsInThePictures)
{
    for (const int scale : {1, 2}) {
        const Picture picture = GalleryPictures::shared().page("colors", scale);
        ASSERT_EQ(describe(picture.size()), describe(page->frame().size));
        for (std::size_t i = 0; i < colors.size(); ++i) {
            SCOPED_TRACE(colors[i].name);
            const NSRect frame = cells[i]->frame();
            // The centre is on the edge between two checkers.
            const Components left = picture.at(NSMidX(frame) - 1, NSMidY(frame));
            const Components right = picture.at(NSMidX(frame), NSMidY(frame));
            const Components expected = componentsOf(colors[i].hex);
            if (expected[3] == 255) {
                EXPECT_EQ(left, expected);
                EXPECT_EQ(right, expected);
            } else {
                EXPECT_PRED2(isNear, left, over(expected, kDarkChecker));
                EXPECT_PRED2(isNear, right, over(expected, kLightChecker));
            }
        }
    }
}
