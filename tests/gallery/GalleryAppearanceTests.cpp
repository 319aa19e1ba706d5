// The appearance that the gallery runs in, seen from within.

#include "Gallery.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

class GalleryAppearance : public testing::Test {
protected:
    void TearDown() override { NSApp->setAppearance(nullptr); }

    /// Has the gallery write pictures, as the program does: of one page, as none is looked at.
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

} // namespace

TEST_F(GalleryAppearance, IsTheOneAskedFor)
{
    run({"--appearance", "dark"});
    EXPECT_EQ(NSApp->effectiveAppearance()->name(), NSAppearanceNameDarkAqua);
    run({"--appearance", "light"});
    EXPECT_EQ(NSApp->effectiveAppearance()->name(), NSAppearanceNameAqua);
}

TEST_F(GalleryAppearance, IsTheDesktopsUnlessOneIsAskedFor)
{
    run({});
    EXPECT_EQ(NSApp->appearance(), nullptr);
}
