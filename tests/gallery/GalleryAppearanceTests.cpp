// The appearance that the gallery runs in, and the one of its pictures.

#include "Gallery.h"
#include "GalleryPictures.h"
#include "Page.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

class GalleryAppearance : public testing::Test {
protected:
    void TearDown() override { NSApp->setAppearance(nullptr); }

    /// Writes pictures of one page, as the program does.
    void run(std::vector<std::string> words)
    {
        words.insert(words.begin(), {"gallery", "--page", "qr", "--snapshot", _folder.path().string()});
        std::vector<char*> arguments(words.size());
        std::transform(
            words.begin(), words.end(), arguments.begin(), [](std::string& word) { return word.data(); });
        runGallery(GalleryOptions::parse(static_cast<int>(arguments.size()), arguments.data()));
    }

private:
    TemporaryFolder _folder;
};

/// The pictures of the pages in the light appearance, drawn once.
class LightPictures : public testing::TestWithParam<int> {
protected:
    static void SetUpTestSuite()
    {
        folder = new TemporaryFolder;
        const auto result =
            runGalleryProgram({"--appearance", "light", "--snapshot", folder->path().string()});
        ASSERT_EQ(result.exitCode, 0) << result.error;
    }
    static void TearDownTestSuite()
    {
        delete folder;
        folder = nullptr;
    }

    static Picture light(const std::string& page)
    {
        return {folder->file(page + (GetParam() == 1 ? ".png" : "@2x.png")), GetParam()};
    }
    static Picture dark(const std::string& page) { return GalleryPictures::shared().page(page, GetParam()); }

    static inline TemporaryFolder* folder = nullptr;
};

constexpr Components kLightGround{0xF1, 0xF3, 0xFA, 255};
constexpr Components kLightCard{255, 255, 255, 255};
constexpr Components kDarkGround{0x02, 0x02, 0x1D, 255};
constexpr Components kDarkCard{0x10, 0x12, 0x2A, 255};
/// A point of a card without any drawing, on every page with a card.
constexpr CGFloat kInside = kGalleryMargin + 6;

} // namespace

TEST_F(GalleryAppearance, IsTheRequestedOne)
{
    run({"--appearance", "light"});
    EXPECT_EQ(NSApp->effectiveAppearance()->name(), NSAppearanceNameAqua);
    run({"--appearance", "dark"});
    EXPECT_EQ(NSApp->effectiveAppearance()->name(), NSAppearanceNameDarkAqua);
}

TEST_F(GalleryAppearance, IsDarkInPicturesByDefault)
{
    run({});
    EXPECT_EQ(NSApp->effectiveAppearance()->name(), NSAppearanceNameDarkAqua);
}

TEST_P(LightPictures, HaveALightBackgroundAndLightCards)
{
    for (const std::string page : {"angles", "badges", "capsules", "outline", "paths"}) {
        SCOPED_TRACE(page);
        EXPECT_EQ(dark(page).at(2, 2), kDarkGround);
        EXPECT_EQ(light(page).at(2, 2), kLightGround);
        EXPECT_EQ(dark(page).at(kInside, kInside), kDarkCard);
        EXPECT_EQ(light(page).at(kInside, kInside), kLightCard);
    }
}

TEST_P(LightPictures, HaveDarkTextAndAccentsOnCards)
{
    // The middle of the second stroke of "%" in the ring of progress is text; its head is the blue accent.
    constexpr CGFloat kCentre = kGalleryMargin + kGalleryCardSide / 2;
    const auto darkest = [](const Picture& picture) {
        int least = 255;
        for (CGFloat x = kCentre - 50; x < kCentre + 50; ++x)
            least = std::min(least, picture.at(x, kCentre)[1]);
        return least;
    };
    EXPECT_LT(darkest(light("angles")), 0x40);
    EXPECT_EQ(darkest(dark("angles")), kDarkCard[1]);
}

TEST_P(LightPictures, ShowTheVariantsOfTheCatalogueAmongTheSwatches)
{
    const Picture darkSwatches = dark("colors"), lightSwatches = light("colors");
    // The middles of the first swatch of the theme, "zel-blue-bg", and of the fourth, "zel-blue-highlight".
    constexpr CGFloat kY = kGalleryMargin + 3 * (72 + 8) + 36;
    constexpr CGFloat kFirst = kGalleryMargin + 32, kFourth = kFirst + 3 * (64 + 8);
    EXPECT_EQ(darkSwatches.at(kFirst, kY), kDarkGround);
    EXPECT_EQ(lightSwatches.at(kFirst, kY), kLightGround);
    EXPECT_EQ(darkSwatches.at(kFourth, kY), (Components{0x01, 0xDA, 0xFD, 255}));
    EXPECT_EQ(lightSwatches.at(kFourth, kY), (Components{0x00, 0x72, 0xB2, 255}));
    // "red" in the first row is not in the catalogue.
    EXPECT_EQ(lightSwatches.at(kGalleryMargin + 3 * (48 + 8) + 24, kGalleryMargin + 376 - 24),
        (Components{255, 0, 0, 255}));
}

TEST_P(LightPictures, ShowTheQRCodeDarkOnLight)
{
    for (const std::string page : {"qr", "gallery"}) {
        const auto read = runProcess(
            {"zbarimg", "--raw", "-q", folder->file(page + (GetParam() == 1 ? ".png" : "@2x.png"))});
        EXPECT_EQ(read.output, "KorvidAppKit: views and controls for dark desktops, drawn with care.\n")
            << page;
    }
}

INSTANTIATE_TEST_SUITE_P(AtScale, LightPictures, testing::Values(1, 2));
