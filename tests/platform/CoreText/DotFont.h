#pragma once

#include "CoreText/testing/PrivateFonts.h"
#include "TestFont.h"
#include "support/TemporaryFolder.h"

#include <AppKit/NSFont.h>
#include <AppKit/NSStringAttributes.h>

#include <gtest/gtest.h>

/// A font for pictures of lines. At 5 points a line is 5 pixels high, 4 of them above the baseline; "a" and
/// the Hebrew alef are 2 wide with a dot of one pixel on the baseline, at their left; the blank is 1 wide;
/// the ellipsis is 2 wide with a bar of one by two pixels. Every other character is a bar of 1.25 by 5.
inline std::string dotFontBytes()
{
    TestFont font("Dots");
    for (const char16_t letter : {u'a', u'\u05D0'})
        font.add(letter, 400, {{0, 0, 200, 200}});
    font.add(u' ', 200, {});
    font.add(u'\u2026', 400, {{0, 0, 200, 400}});
    return font.bytes();
}

/// Tests that see no other font.
class DotFontTest : public testing::Test {
protected:
    DotFontTest()
        : _file(_folder.write("dots.ttf", dotFontBytes()))
        , _fonts(NSString(_folder.path().string()))
    {
    }

    /// Attributes of text in that font.
    static RetainPtr<NSMutableDictionary> dots(CGFloat size = 5)
    {
        auto attributes = make<NSMutableDictionary>();
        attributes->setObject(NSFont::fontWithName("Dots", size), NSFontAttributeName);
        return attributes;
    }

    TemporaryFolder _folder;
    std::string _file;
    PrivateFonts _fonts;
};
