#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <QImage>
#include <gtest/gtest.h>

namespace {

/// The picture that examples/qt draws of its window.
QImage pictureAtScale(const char* scale)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("window.png");
    const auto result = runProcess({KORVID_EMBEDDED_VIEWS, file}, {{"QT_SCALE_FACTOR", scale}});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return QImage(QString::fromStdString(file));
}

/// How many pixels have exactly that colour.
int count(const QImage& image, QColor color)
{
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            found += image.pixelColor(x, y) == color;
    }
    return found;
}

TEST(QtExample, ShowsItsViewsAtScales1And2)
{
    const QImage plain = pictureAtScale("1");
    const QImage large = pictureAtScale("2");
    ASSERT_FALSE(plain.isNull());
    constexpr int kHinting = 6; // pixels: the widths of Qt's own letters do not double exactly
    EXPECT_NEAR(large.width(), 2 * plain.width(), kHinting);
    EXPECT_NEAR(large.height(), 2 * plain.height(), kHinting);
    const QColor tag(0x00, 0x72, 0xB5), track(0x44, 0x44, 0x44);
    EXPECT_GT(count(plain, tag), 200);
    EXPECT_GT(count(plain, track), 80);
    // Four times as many pixels, and fewer edges.
    EXPECT_GT(count(large, tag), 4 * count(plain, tag));
    EXPECT_GT(count(large, track), 4 * count(plain, track));
}

} // namespace
