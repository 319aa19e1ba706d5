#include "GalleryPictures.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>

#include <array>

namespace {

using RGB = std::array<int, 3>;

/// "zel-button-bg".
constexpr RGB kGround{0x10, 0x12, 0x2a};
// Of each picture, in pixels of the page at scale 2. The caption is below it.
constexpr NSInteger kWidth = 360;
constexpr NSInteger kHeight = 360 - 64;

/// One of the page's pictures.
class Square {
public:
    Square(NSBitmapImageRep* picture, NSInteger left, NSInteger top)
        : _picture(picture)
        , _left(left)
        , _top(top)
    {
    }

    RGB at(NSInteger column, NSInteger row) const
    {
        const unsigned char* pixel =
            _picture->bitmapData() + (_top + row) * _picture->bytesPerRow() + 4 * (_left + column);
        return {pixel[0], pixel[1], pixel[2]};
    }
    /// The mean of the box around a pixel, rounded down.
    RGB mean(NSInteger column, NSInteger row, int boxDim) const
    {
        RGB sums{};
        for (NSInteger y = row - boxDim / 2; y <= row + boxDim / 2; ++y) {
            for (NSInteger x = column - boxDim / 2; x <= column + boxDim / 2; ++x) {
                const RGB color = at(x, y);
                for (std::size_t i = 0; i < sums.size(); ++i)
                    sums[i] += color[i];
            }
        }
        for (int& sum : sums)
            sum /= boxDim * boxDim;
        return sums;
    }

private:
    NSBitmapImageRep* _picture;
    NSInteger _left, _top;
};

/// The page drawn with additional arguments.
class BlurPage : public testing::Test {
protected:
    void draw(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"--page", "blur", "--snapshot", folder.file("pictures")});
        const auto result = runGalleryProgram(arguments);
        ASSERT_EQ(result.exitCode, 0) << result.error;
        _picture = read("blur@2x.png");
        ASSERT_EQ(_picture->pixelsWide(), 2 * (24 + 376 + 24));
        ASSERT_EQ(_picture->pixelsHigh(), 2 * (24 + 376 + 24));
    }
    /// Writes a PNG file of opaque pixels and returns its name.
    std::string writePicture(NSInteger width, NSInteger height, RGB (*color)(NSInteger x, NSInteger y))
    {
        const auto picture = NSBitmapImageRep::initWithBitmapDataPlanes(
            nullptr, width, height, 8, 4, true, false, NSCalibratedRGBColorSpace, 0, 0);
        for (NSInteger y = 0; y < height; ++y) {
            for (NSInteger x = 0; x < width; ++x) {
                unsigned char* pixel = picture->bitmapData() + y * picture->bytesPerRow() + 4 * x;
                const RGB components = color(x, y);
                std::copy(components.begin(), components.end(), pixel);
                pixel[3] = 255;
            }
        }
        const auto file = picture->representationUsingType(NSBitmapImageFileTypePNG, nullptr);
        return folder.write(
            "own.png", {static_cast<const char*>(file->bytes()), static_cast<std::size_t>(file->length())});
    }

    Square sharp() const { return {_picture.get(), 48, 48}; }
    Square blurred5() const { return {_picture.get(), 440, 48}; }
    Square blurred15() const { return {_picture.get(), 48, 440}; }
    Square blurred51() const { return {_picture.get(), 440, 440}; }

    const TemporaryFolder folder;

private:
    RetainPtr<NSBitmapImageRep> read(const std::string& name)
    {
        return NSBitmapImageRep::initWithData(
            NSData::dataWithContentsOfFile(NSString(folder.file("pictures/" + name))).get());
    }

    RetainPtr<NSBitmapImageRep> _picture;
};

} // namespace

TEST_F(BlurPage, ShowsThreeBoxBlursPixelForPixel)
{
    ASSERT_NO_FATAL_FAILURE(draw({}));
    // The middles of the disc and of the square.
    EXPECT_EQ(sharp().at(128, 97), (RGB{0x01, 0xda, 0xfd}));
    EXPECT_EQ(sharp().at(208, 150), (RGB{0xfb, 0x7f, 0x15}));
    // Inset from the edges by the round corners plus the largest box.
    for (NSInteger row = 42; row < kHeight - 42; row += 11) {
        for (NSInteger column = 42; column < kWidth - 42; column += 7) {
            ASSERT_EQ(blurred5().at(column, row), sharp().mean(column, row, 5)) << column << " " << row;
            ASSERT_EQ(blurred15().at(column, row), sharp().mean(column, row, 15)) << column << " " << row;
            ASSERT_EQ(blurred51().at(column, row), sharp().mean(column, row, 51)) << column << " " << row;
        }
    }
}

TEST_F(BlurPage, ScalesTheUsersPictureToFit)
{
    // Twice as wide as high; red on the left, and blue below on the right.
    const auto file = writePicture(60, 30, [](NSInteger x, NSInteger y) {
        return x < 30 ? RGB{200, 0, 0} : RGB{0, 0, y < 15 ? 0 : 200};
    });
    ASSERT_NO_FATAL_FAILURE(draw({"--image", file}));
    EXPECT_EQ(sharp().at(180, 56), kGround);
    EXPECT_EQ(sharp().at(180, 240), kGround);
    EXPECT_EQ(sharp().at(90, 60), (RGB{200, 0, 0}));
    EXPECT_EQ(sharp().at(90, 236), (RGB{200, 0, 0}));
    EXPECT_EQ(sharp().at(270, 100), (RGB{0, 0, 0}));
    EXPECT_EQ(sharp().at(270, 200), (RGB{0, 0, 200}));
}

TEST_F(BlurPage, AcceptsPicturesOfAnyAspectRatio)
{
    const auto white = [](NSInteger, NSInteger) { return RGB{255, 255, 255}; };
    ASSERT_NO_FATAL_FAILURE(draw({"--image", writePicture(1, 1, white)}));
    EXPECT_EQ(blurred51().at(180, 148), (RGB{255, 255, 255}));
    ASSERT_NO_FATAL_FAILURE(draw({"--image", writePicture(2000, 1, white)}));
    EXPECT_EQ(sharp().at(180, 100), kGround);
    ASSERT_NO_FATAL_FAILURE(draw({"--image", writePicture(1, 2000, white)}));
    EXPECT_EQ(sharp().at(100, 180), kGround);
}

TEST_F(BlurPage, DoesNotAffectOtherPages)
{
    const auto file = writePicture(8, 8, [](NSInteger, NSInteger) { return RGB{1, 2, 3}; });
    ASSERT_EQ(runGalleryProgram({"--image", file, "--page", "blur", "--page", "noise", "--snapshot",
                                    folder.path().string()})
                  .exitCode,
        0);
    const auto& unchanged = GalleryPictures::shared();
    EXPECT_NE(contentOf(folder.file("blur.png")), contentOf(unchanged.file("blur.png")));
    EXPECT_EQ(contentOf(folder.file("noise.png")), contentOf(unchanged.file("noise.png")));
}

TEST_F(BlurPage, RejectsFilesThatAreNotPictures)
{
    expectRefusal(runGalleryProgram({"--image"}), "--image needs a value");
    expectRefusal(runGalleryProgram({"--image", folder.file("none.png")}),
        "cannot read a picture from '" + folder.file("none.png") + "': No such file or directory");
    expectRefusal(runGalleryProgram({"--image", folder.path().string()}),
        "cannot read a picture from '" + folder.path().string() + "': Is a directory");
    expectRefusal(runGalleryProgram({"--image", folder.write("empty.png", "")}), "empty.png' is empty");
    const std::string notAPicture = "is not a PNG file, or it is damaged or too large";
    expectRefusal(
        runGalleryProgram({"--image", folder.write("text.png", "a text")}), "text.png' " + notAPicture);
    const auto file = writePicture(50, 50, [](NSInteger x, NSInteger y) {
        return RGB{static_cast<int>(x * 5), static_cast<int>(y * 5), static_cast<int>(x * y % 256)};
    });
    std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
    expectRefusal(runGalleryProgram({"--image", file}), "own.png' " + notAPicture);
}

TEST_F(BlurPage, RejectsAnEndlessDevice)
{
    expectRefusal(runGalleryProgram({"--image", "/dev/zero"}), "'/dev/zero' is too large: more than 256 MB");
}
