#include "GalleryPictures.h"
#include "PageNamed.h"
#include "support/Rendering.h"
#include "support/TemporaryFolder.h"

#include "Foundation/testing/MainBundleFolder.h"

#include <AppKit/NSButton.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSFormat.h>

#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

/// The gallery's resources in a language. Afterwards, those of the tests in theirs.
class Language {
public:
    explicit Language(const char* locale)
        : _old(std::getenv("LC_ALL"))
    {
        setenv("LC_ALL", locale, 1);
        _folder.emplace(KORVID_SOURCE_FOLDER "/examples/gallery/Resources");
    }
    ~Language()
    {
        setenv("LC_ALL", _old.c_str(), 1);
        _folder.reset();
    }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

private:
    const std::string _old;
    std::optional<MainBundleFolder> _folder;
};

NSButton* buttonOf(const NSView& page, std::size_t i)
{
    return dynamic_cast<NSButton*>(page.subviews()[1]->subviews()[i].get());
}

NSString stringFor(const char* key)
{
    return NSBundle::mainBundle()->localizedStringForKey(key, "missing", nullptr);
}

} // namespace

TEST(LanguagesPage, HasAllStringsInEachLanguage)
{
    struct Expected {
        const char *locale, *name, *piece, *track;
    };
    for (const auto& [locale, name, piece, track] :
        {Expected{"C.UTF-8", "English", "Air by Bach", "Track 1 of 3"},
            Expected{"de_DE.UTF-8", "Deutsch", "Bach: Air", "Titel 1 von 3"},
            Expected{"fr_FR.UTF-8", "Français", "Air de Bach", "Piste 1 sur 3"}}) {
        SCOPED_TRACE(locale);
        const Language language(locale);
        EXPECT_EQ(stringFor("English"), name);
        EXPECT_EQ(
            NSString::stringWithFormat(stringFor("%1$@ by %2$@"), NSString("Air"), NSString("Bach")), piece);
        EXPECT_EQ(NSString::stringWithFormat(stringFor("Track %1$d of %2$d"), 1, 3), track);
        for (const char* key : {"Play", "Stop", "Next"})
            EXPECT_NE(stringFor(key), "missing") << key;
    }
}

TEST(LanguagesPage, TheButtonTitlesAreInTheLanguageAndAClickChangesThem)
{
    const Language german("de_DE.UTF-8");
    const auto page = makePageNamed("languages");
    NSButton* play = buttonOf(*page, 0);
    EXPECT_EQ(play->title(), "Abspielen");
    EXPECT_EQ(buttonOf(*page, 1)->title(), "Weiter");
    play->performClick(nullptr);
    EXPECT_EQ(play->title(), "Anhalten");
    play->performClick(nullptr);
    EXPECT_EQ(play->title(), "Abspielen");
}

TEST(LanguagesPage, TheNextButtonShowsTheOtherTracksInTurn)
{
    const auto page = makePageNamed("languages");
    NSView* card = page->subviews()[1];
    const auto png = [card] {
        Rendering rendering(int(card->bounds().size.width), int(card->bounds().size.height));
        rendering.draw(card);
        return rendering.png();
    };
    const auto first = png();
    takeDisplayMark(card);
    buttonOf(*page, 1)->performClick(nullptr);
    EXPECT_TRUE(takeDisplayMark(card));
    EXPECT_FALSE(png()->isEqual(first));
    buttonOf(*page, 1)->performClick(nullptr);
    EXPECT_FALSE(png()->isEqual(first));
    buttonOf(*page, 1)->performClick(nullptr);
    EXPECT_TRUE(png()->isEqual(first)) << "three tracks";
}

TEST(LanguagesPage, IsInTheLanguageThatTheProgramIsStartedIn)
{
    const TemporaryFolder folder;
    const auto result =
        runGalleryProgram({"--snapshot", folder.file("german"), "--page", "languages", "--scale", "1"},
            {{"LC_ALL", "de_DE.UTF-8"}});
    ASSERT_EQ(result.exitCode, 0) << result.error;
    EXPECT_NE(contentOf(folder.file("german") + "/languages.png"),
        contentOf(GalleryPictures::shared().file("languages.png")));
}
