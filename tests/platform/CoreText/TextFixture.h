#pragma once

#include "CoreText/testing/PrivateFonts.h"
#include "TestFont.h"
#include "support/Canvas.h"
#include "support/TemporaryFolder.h"

#include <CoreText/CoreText.h>
#include <Foundation/NSNumber.h>

/// A font whose square letters fill one em: A from (0, 0) to (1000, 1000); b a quarter of it, at the bottom
/// left; the blank half as wide as A; x as wide as A, with ink from -500 to 500 beside the pen and from -500
/// to 250 above it.
inline std::string squareFontBytes(const std::string& family = "Squares", const TestFontStyle& style = {})
{
    TestFont font(family, style);
    font.add(u'A', 1000, {{0, 0, 1000, 1000}});
    font.add(u'b', 1000, {{0, 0, 500, 500}});
    font.add(u' ', 500, {});
    font.add(u'x', 1000, {{-500, -500, 500, 250}});
    return font.bytes();
}

/// A line of text in an installed font.
inline RetainPtr<const CTLine> lineIn(
    const NSString& font, const NSString& text, CGFloat size = 16, CGFloat kern = 0)
{
    const auto attributes = make<NSMutableDictionary>();
    const auto made = adopt(CTFontCreateWithName(font, size));
    attributes->setObject(const_cast<CTFont*>(made.get()), kCTFontAttributeName);
    attributes->setObject(NSNumber::numberWithDouble(kern), kCTKernAttributeName);
    return adopt(CTLineCreateWithAttributedString(make<NSAttributedString>(text, attributes).get()));
}

/// Tests that see no font but "Squares".
class SquareFontTest : public testing::Test {
protected:
    SquareFontTest()
        : _file(_folder.write("squares.ttf", squareFontBytes()))
        , _fonts(NSString(_folder.path().string()))
    {
    }

    /// A text in the font's regular face.
    static RetainPtr<NSAttributedString> squares(const NSString& text, CGFloat size, CGFloat kern = 0)
    {
        const auto attributes = make<NSMutableDictionary>();
        const auto font = adopt(CTFontCreateWithName("Squares", size));
        attributes->setObject(const_cast<CTFont*>(font.get()), kCTFontAttributeName);
        attributes->setObject(NSNumber::numberWithDouble(kern), kCTKernAttributeName);
        return make<NSAttributedString>(text, attributes);
    }
    static RetainPtr<const CTLine> squareLine(const NSString& text, CGFloat size, CGFloat kern = 0)
    {
        return adopt(CTLineCreateWithAttributedString(squares(text, size, kern).get()));
    }

    TemporaryFolder _folder;
    std::string _file;
    PrivateFonts _fonts;
};
