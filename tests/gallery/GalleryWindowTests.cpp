// The gallery in a real window of a real X server.

#include "GalleryPictures.h"
#include "GalleryWindow.h"
#include "support/Describe.h"
#include "support/VirtualDisplay.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSGraphicsContext.h>
#include <gtest/gtest.h>

namespace {

/// What a window shows that was opened with the option --still: the page of that number in the list.
ScreenPixels expectedPixels(GalleryWindow* window, std::size_t page, int scale)
{
    window->galleryView()->showPage(page);
    GalleryView* view = window->galleryView();
    const NSSize size = view->bounds().size;
    const auto picture = NSBitmapImageRep::initWithBitmapDataPlanes(nullptr, NSInteger(size.width * scale),
        NSInteger(size.height * scale), 8, 4, true, false, NSCalibratedRGBColorSpace, 0, 0);
    const auto context = NSGraphicsContext::graphicsContextWithBitmapImageRep(picture);
    CGContextScaleCTM(context->CGContext(), scale, scale);
    view->displayRectIgnoringOpacity(view->bounds(), context);
    ScreenPixels pixels{static_cast<int>(picture->pixelsWide()), static_cast<int>(picture->pixelsHigh()), {}};
    for (int row = 0; row < pixels.height; ++row) {
        const unsigned char* at = picture->bitmapData() + row * picture->bytesPerRow();
        for (int column = 0; column < pixels.width; ++column, at += 4)
            pixels.values.push_back(static_cast<std::uint32_t>(at[0] << 16 | at[1] << 8 | at[2]));
    }
    return pixels;
}

int countDifferences(const ScreenPixels& a, const ScreenPixels& b)
{
    int count = 0;
    for (std::size_t i = 0; i < a.values.size(); ++i)
        count += a.values[i] != b.values[i];
    return count;
}

/// A gallery on a display, dark and without animation, and the same window in this process.
class RunningGallery {
public:
    explicit RunningGallery(int scale = 1, const std::vector<std::string>& arguments = {})
        : _scale(scale)
    {
        NSApplication::sharedApplication()->setAppearance(
            NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua));
        std::vector<std::string> words{KORVID_GALLERY, "--still", "--appearance", "dark"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        _process = std::make_unique<BackgroundProcess>(words, _display.environment(scale));
        _window = _display.waitForWindow("KorvidAppKit Gallery");
        GalleryOptions options;
        options.isStill = true;
        if (arguments.size() == 2)
            options.pages = {arguments[1]};
        _model = make<GalleryWindow>(options);
    }
    ~RunningGallery() { NSApp->setAppearance(nullptr); }

    bool hasWindow() const { return _window.has_value(); }
    /// The number of pixels that differ from the page's, once it is shown.
    int differencesTo(std::size_t page)
    {
        const auto expected = expectedPixels(_model, page, _scale);
        const auto seen = _display.waitForPixels(*_window, expected);
        if (seen.width != expected.width || seen.height != expected.height)
            return -1;
        return countDifferences(seen, expected);
    }
    GalleryWindow* model() { return _model.get(); }
    void resizeModel(NSSize size) { _model->setContentSize(size); }

    /// Moves the pointer to a point of the window, from its top left corner, and does what the words say.
    void pointTo(int x, int y, const std::vector<std::string>& words = {})
    {
        std::vector<std::string> all{
            "mousemove", "--window", std::to_string(*_window), std::to_string(x), std::to_string(y)};
        all.insert(all.end(), words.begin(), words.end());
        xdotool(all);
    }
    void press(const std::string& key) { xdotool({"key", key}); }
    void resize(int width, int height)
    {
        xdotool({"windowsize", std::to_string(*_window), std::to_string(width), std::to_string(height)});
    }
    void requestClose() { _display.requestClose(*_window); }
    std::optional<int> waitForExit(double seconds) { return _process->waitForExit(seconds); }

private:
    void xdotool(std::vector<std::string> words)
    {
        words.insert(words.begin(), "xdotool");
        const auto result = runProcess(words, {{"DISPLAY", _display.name()}});
        EXPECT_EQ(result.exitCode, 0) << "is the package xdotool installed? " << result.error;
    }

    const int _scale;
    VirtualDisplay _display;
    std::unique_ptr<BackgroundProcess> _process;
    std::optional<unsigned long> _window;
    RetainPtr<GalleryWindow> _model;
};

class GalleryWindowAtScale : public testing::TestWithParam<int> { };

} // namespace

TEST_P(GalleryWindowAtScale, ShowsTheFirstPageAndExitsWhenItIsClosed)
{
    RunningGallery gallery(GetParam());
    ASSERT_TRUE(gallery.hasWindow());
    EXPECT_EQ(gallery.differencesTo(0), 0);
    EXPECT_FALSE(gallery.waitForExit(0).has_value());
    gallery.requestClose();
    EXPECT_EQ(gallery.waitForExit(20), 0);
}

INSTANTIATE_TEST_SUITE_P(All, GalleryWindowAtScale, testing::Values(1, 2));

TEST(GalleryWindow, ListsOnlyTheNamedPage)
{
    RunningGallery gallery(1, {"--page", "paths"});
    ASSERT_TRUE(gallery.hasWindow());
    EXPECT_EQ(gallery.model()->galleryView()->list()->count(), 1u);
    EXPECT_EQ(gallery.differencesTo(0), 0);
}

TEST(GalleryWindow, ShowsThePageThatIsClickedOrReachedByKeys)
{
    RunningGallery gallery;
    ASSERT_TRUE(gallery.hasWindow());
    EXPECT_EQ(gallery.differencesTo(0), 0);
    // The third row; the pointer then leaves the list.
    gallery.pointTo(100, 64 + 2 * 32 + 16, {"click", "1"});
    gallery.pointTo(600, 20);
    EXPECT_EQ(gallery.differencesTo(2), 0);
    gallery.press("Down");
    EXPECT_EQ(gallery.differencesTo(3), 0);
    gallery.press("Home");
    EXPECT_EQ(gallery.differencesTo(0), 0);
}

TEST(GalleryWindow, LaysThePageOutAgainAndScrollsItWhenItIsResized)
{
    RunningGallery gallery;
    ASSERT_TRUE(gallery.hasWindow());
    EXPECT_EQ(gallery.differencesTo(0), 0);
    gallery.pointTo(600, 20);
    gallery.resize(900, 480);
    gallery.resizeModel({900, 480});
    EXPECT_EQ(gallery.differencesTo(0), 0);
    ASSERT_GT(gallery.model()->galleryView()->pageArea()->content()->frame().size.height, 480);
    gallery.pointTo(600, 20, {"click", "--repeat", "20", "5"}); // to the end
    gallery.model()->galleryView()->pageArea()->scrollTo({0, 10000});
    EXPECT_EQ(gallery.differencesTo(0), 0);
}

TEST(GalleryWindow, ClosesOnEscapeControlQAndControlW)
{
    for (const std::string key : {"Escape", "ctrl+q", "ctrl+w"}) {
        SCOPED_TRACE(key);
        RunningGallery gallery;
        ASSERT_TRUE(gallery.hasWindow());
        EXPECT_EQ(gallery.differencesTo(0), 0);
        gallery.press(key);
        EXPECT_EQ(gallery.waitForExit(20), 0);
    }
}

TEST(GalleryWindow, IsSmallerOnASmallScreenWithRoomForATitleBar)
{
    const auto size = [](CGFloat width, CGFloat height) {
        return describe(GalleryWindow::sizeOnScreen({width, height}));
    };
    EXPECT_EQ(size(1920, 1040), "1040 660");
    EXPECT_EQ(size(1040, 700), "1040 660");
    EXPECT_EQ(size(1039, 699), "1039 659");
    EXPECT_EQ(size(800, 600), "800 560");
    EXPECT_EQ(size(640, 400), "760 420"); // no page fits into less
}

TEST(GalleryWindow, IsWholeOnASmallScreen)
{
    VirtualDisplay display(800, 600);
    const BackgroundProcess gallery(
        {KORVID_GALLERY, "--still", "--page", "capsules"}, display.environment(1));
    const auto window = display.waitForWindow("KorvidAppKit Gallery");
    ASSERT_TRUE(window.has_value());
    const ScreenPixels pixels = display.pixelsOf(*window); // throws if part of it is outside the screen
    EXPECT_EQ(pixels.width, 800);
    EXPECT_EQ(pixels.height, 560);
}
