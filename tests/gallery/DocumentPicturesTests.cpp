// The pictures in docs/pictures are what the gallery draws. './korvid pictures' draws them anew.

#include "GalleryPictures.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

const std::filesystem::path kDocumentPictures = KORVID_SOURCE_FOLDER "/docs/pictures";

// Versions of fonts and of the libraries that draw them place glyphs slightly differently, which changes
// pixels at the edges of letters. The mean colour of a cell of so many pixels on each side differs by less
// than what any change of a shape, a colour or a layout makes.
constexpr NSInteger kCell = 16;
constexpr int kMostCellDifference = 24;

RetainPtr<NSBitmapImageRep> readImage(const std::string& path)
{
    auto image = NSBitmapImageRep::initWithData(NSData::dataWithContentsOfFile(NSString(path)).get());
    if (!image)
        throw std::runtime_error(path + " is not a picture");
    return image;
}

/// The largest difference of a component between the means of two cells at the same place.
int cellDifference(NSBitmapImageRep& a, NSBitmapImageRep& b, NSInteger column, NSInteger row)
{
    const NSInteger right = std::min(column + kCell, a.pixelsWide());
    const NSInteger bottom = std::min(row + kCell, a.pixelsHigh());
    std::array<int, 4> sums{};
    for (NSInteger y = row; y < bottom; ++y) {
        const unsigned char* ofA = a.bitmapData() + y * a.bytesPerRow() + 4 * column;
        const unsigned char* ofB = b.bitmapData() + y * b.bytesPerRow() + 4 * column;
        for (NSInteger i = 0; i < 4 * (right - column); ++i)
            sums[std::size_t(i % 4)] += ofA[i] - ofB[i];
    }
    int most = 0;
    for (const int sum : sums)
        most = std::max(most, std::abs(sum) / int((right - column) * (bottom - row)));
    return most;
}

/// Expects that two files show the same picture, but for the edges of letters.
void expectSamePicture(const std::string& expected, const std::string& drawn)
{
    if (contentOf(expected) == contentOf(drawn))
        return;
    const auto a = readImage(expected), b = readImage(drawn);
    ASSERT_EQ(a->pixelsWide(), b->pixelsWide());
    ASSERT_EQ(a->pixelsHigh(), b->pixelsHigh());
    for (NSInteger row = 0; row < a->pixelsHigh(); row += kCell) {
        for (NSInteger column = 0; column < a->pixelsWide(); column += kCell) {
            ASSERT_LE(cellDifference(*a, *b, column, row), kMostCellDifference)
                << "at " << column << ", " << row << "; run './korvid pictures' and look at the changes";
        }
    }
}

/// The names of the gallery's pictures: the pages' at scale 2, the one of all pages at scale 1.
std::vector<std::string> galleryPictures()
{
    std::vector<std::string> names{"gallery.png"};
    for (const GalleryPage* page : GalleryPage::all())
        names.push_back(std::string(page->name) + "@2x.png");
    return names;
}

} // namespace

TEST(DocumentPictures, AreWhatTheGalleryDraws)
{
    for (const std::string& name : galleryPictures()) {
        SCOPED_TRACE(name);
        expectSamePicture(kDocumentPictures / name, GalleryPictures::shared().file(name));
    }
}

TEST(DocumentPictures, ShowAnAlertAsItIs)
{
    const TemporaryFolder folder;
    const auto result = runProcess({KORVID_ALERT_PICTURE, folder.file("alert.png")}, bareEnvironment());
    ASSERT_EQ(result.exitCode, 0) << result.error;
    EXPECT_EQ(result.error, "");
    expectSamePicture(kDocumentPictures / "alert@2x.png", folder.file("alert.png"));
}

TEST(DocumentPictures, DifferWhenAColourOrAPlaceDiffers)
{
    const auto makeImage = [](int x, unsigned char red) {
        auto image = NSBitmapImageRep::initWithBitmapDataPlanes(
            nullptr, 40, 20, 8, 4, true, false, NSCalibratedRGBColorSpace, 0, 0);
        for (int row = 0; row < 20; ++row) {
            for (int column = x; column < 40; ++column) {
                image->bitmapData()[row * image->bytesPerRow() + 4 * column] = red;
                image->bitmapData()[row * image->bytesPerRow() + 4 * column + 3] = 255;
            }
        }
        return image;
    };
    const auto image = makeImage(20, 200);
    EXPECT_EQ(cellDifference(*image, *makeImage(20, 200), 16, 0), 0);
    // Of 16 columns, 12 are red, here in another shade: 12 / 16 x 40.
    EXPECT_EQ(cellDifference(*image, *makeImage(20, 160), 16, 0), 30);
    EXPECT_EQ(cellDifference(*image, *makeImage(20, 160), 0, 0), 0);
    // Three more are red; alpha differs by 3 / 16 x 255.
    EXPECT_EQ(cellDifference(*image, *makeImage(17, 200), 16, 0), 47);
    // The last cells are 8 columns wide and 4 rows high.
    EXPECT_EQ(cellDifference(*image, *makeImage(20, 160), 32, 16), 40);
}
