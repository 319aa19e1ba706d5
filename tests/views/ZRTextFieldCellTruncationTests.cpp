#include "Foundation/testing/NSLogCapture.h"
#include "PlainTruncation.h"
#include "TextFields.h"

#include <CoreText/CTLine.h>
#include <Foundation/NSNumber.h>
#include <random>

namespace {

using ZRTextFieldCellTruncation = TextFieldTest;

RetainPtr<PlainField> truncating(RetainPtr<PlainField> field)
{
    field->setLineBreakMode(NSLineBreakByTruncatingMiddle);
    return field;
}

RetainPtr<NSDictionary> lineAttributes(const char* font, double size, double kern)
{
    return make<NSDictionary>(NSDictionary::Map{{NSFontAttributeName, NSFont::fontWithName(font, size)},
        {NSKernAttributeName, NSNumber::numberWithDouble(kern)}});
}

} // namespace

// What the cell does.

TEST_F(ZRTextFieldCellTruncation, DrawsAnEllipsisInTheMiddleAndHasTheTextAsToolTip)
{
    const auto text = truncating(field<PlainField>("aaaaaaaaaa", 13, 2)); // 20 wide
    EXPECT_COVERAGE(drawn(text),
        "......#......" // three, the ellipsis and two are 12 wide
        "#.#.#.#.#.#..");
    EXPECT_EQ(text->toolTip(), "aaaaaaaaaa");
}

TEST_F(ZRTextFieldCellTruncation, TextThatFitsIsDrawnWholeAndRemovesTheToolTip)
{
    const auto text = truncating(field<PlainField>("aaa", 6, 1));
    text->setToolTip("before");
    EXPECT_COVERAGE(drawn(text), "#.#.#.");
    EXPECT_TRUE(text->toolTip().isNull());
}

TEST_F(ZRTextFieldCellTruncation, TextThatNeverFitsIsShortenedAsFarAsPossible)
{
    const auto text = truncating(field<PlainField>("aaa", 1, 2));
    Canvas canvas(5, 2);
    NSGraphicsContext::setCurrentContext(
        NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false));
    CGContextConcatCTM(canvas.context(), {1, 0, 0, -1, 0, 2});
    text->cell()->drawWithFrame(text->bounds(), text);
    NSGraphicsContext::setCurrentContext(nullptr);
    EXPECT_COVERAGE(canvas,
        "..#.."
        "#.#..");
    EXPECT_EQ(text->toolTip(), "aaa");
}

TEST_F(ZRTextFieldCellTruncation, TextOfTwoUnitsStaysAsItIs)
{
    const auto text = truncating(field<PlainField>("aa", 3, 1));
    EXPECT_COVERAGE(drawn(text), "#.#");
    EXPECT_EQ(text->toolTip(), "aa") << "it does not fit";
}

TEST_F(ZRTextFieldCellTruncation, OnlyTheFirstOfSeveralLinesIsDrawn)
{
    const NSLogCapture log;
    const auto text = truncating(field<PlainField>("aa\n a", 4, 2));
    text->setToolTip("before");
    EXPECT_COVERAGE(drawn(text),
        "#.#."
        "....");
    EXPECT_TRUE(text->toolTip().isNull());
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{
            "ZRTextFieldCell had multiple lines when NSLineBreakByTruncatingMiddle was set. "
            "Drawing only first line."});
    text->setStringValue("aaa\n a");
    EXPECT_EQ(dotColumns(text), "0 2");
    EXPECT_EQ(text->toolTip(), "aaa\n a") << "all lines";
}

TEST_F(ZRTextFieldCellTruncation, OtherModesCutNothingAndLeaveTheToolTip)
{
    for (const NSLineBreakMode mode : {NSLineBreakByWordWrapping, NSLineBreakByCharWrapping,
             NSLineBreakByClipping, NSLineBreakByTruncatingHead, NSLineBreakByTruncatingTail}) {
        SCOPED_TRACE(mode);
        const auto text = field<PlainField>("aaa aaa", 5, 1);
        text->setLineBreakMode(mode);
        text->setToolTip("before");
        EXPECT_EQ(dotColumns(text), "0 2 4");
        EXPECT_EQ(text->toolTip(), "before");
    }
}

TEST_F(ZRTextFieldCellTruncation, TextWithoutCharactersRemovesTheToolTip)
{
    const auto text = truncating(field<PlainField>("", 5, 1));
    text->setToolTip("before");
    drawn(text);
    EXPECT_TRUE(text->toolTip().isNull());
}

TEST_F(ZRTextFieldCellTruncation, TheSpaceBetweenCharactersCounts)
{
    const auto text = field<StyledField>("aaaaaa", 12, 2);
    text->setLineBreakMode(NSLineBreakByTruncatingMiddle);
    EXPECT_EQ(dotColumns(text), "0 2 4 6 8 10");
    text->setKernMultiplier(0.2); // one more for each of four
    EXPECT_EQ(dotColumns(text), "0 3 6 9");
}

TEST(ZRTextFieldCell, HalfOfASurrogatePairIsDrawnAsTheReplacementCharacter)
{
    const auto shown = [](const NSString& string) {
        auto text = make<PlainField>(NSMakeRect(0, 0, 60, 20));
        text->setStringValue(string);
        return text;
    };
    const auto cut = shown("😀😀");
    cut->setFrameSize(NSMakeSize(1, 20));
    cut->setLineBreakMode(NSLineBreakByTruncatingMiddle);
    const auto picture = [](const RetainPtr<PlainField>& field) {
        Canvas canvas(60, 20);
        NSGraphicsContext::setCurrentContext(
            NSGraphicsContext::graphicsContextWithCGContext(canvas.context(), false));
        CGContextConcatCTM(canvas.context(), {1, 0, 0, -1, 0, 20});
        field->cell()->drawWithFrame(field->bounds(), field);
        NSGraphicsContext::setCurrentContext(nullptr);
        return canvas.picture();
    };
    EXPECT_EQ(picture(cut), picture(shown("\uFFFD…")));
    EXPECT_NE(picture(cut), picture(shown("…")));
}

// The rule.

TEST_F(ZRTextFieldCellTruncation, UnitsAreLostByTurnsBehindAndBeforeTheEllipsis)
{
    // The a and the ellipsis are 2 wide, other letters 1.25: the longest candidate is 12.75.
    const auto attributes = lineAttributes("Dots", 5, 0);
    const std::pair<double, const char*> cases[]{{12.8, "abcde…hij"}, {12.7, "abcd…hij"}, {11.4, "abcd…ij"},
        {10.2, "abc…ij"}, {8.9, "abc…j"}, {7.7, "ab…j"}, {6.4, "ab…"}, {5.2, "a…"}, {1, "a…"}, {0, "a…"},
        {-10, "a…"}, {std::nan(""), "a…"}, {-std::numeric_limits<double>::infinity(), "a…"}};
    for (const auto& [width, result] : cases)
        EXPECT_EQ(ZRTruncatedInMiddle("abcdefghij", width, attributes, {5, 0}).UTF8String(), result) << width;
    EXPECT_EQ(ZRTruncatedInMiddle("abc", 1, attributes, {5, 0}), "a…");
    EXPECT_EQ(ZRTruncatedInMiddle("abc", 6, attributes, {5, 0}), "a…")
        << "two units become one at the first step";
    EXPECT_EQ(ZRTruncatedInMiddle("ab", 1, attributes, {5, 0}), "ab");
    EXPECT_EQ(ZRTruncatedInMiddle("a", 1, attributes, {5, 0}), "a");
}

namespace {

/// Texts in which widths depend on neighbours: pair kerning, ligatures, joined letters, directions, fonts of
/// other scripts, sequences of emoji.
class RandomTexts {
public:
    explicit RandomTexts(unsigned seed)
        : _random(seed)
    {
    }

    NSString text(std::size_t pieceCount)
    {
        static const std::vector<std::vector<std::u16string>> alphabets{
            {u"A", u"V", u"T", u"o", u"y", u".", u",", u"W", u"a", u"i", u"l", u" "},
            {u"f", u"i", u"l", u"ff", u"fi", u"ffi", u"t", u"j", u" "},
            {u"1", u"7", u"4", u".", u"-", u"(", u")", u"/"},
            {u"א", u"ב", u"ג", u" ", u"(", u")", u"1", u"a", u"b", u"."},
            {u"م", u"ح", u"د", u"ل", u"ا", u"لا", u" ", u"َ", u"ّ"},
            {u"漢", u"字", u"か", u"。", u"a", u" "},
            {u"😀", u"👨‍👩‍👧‍👦", u"👍🏽", u"🇩🇪", u"🇫🇷", u"🇺", u"1️⃣", u"❤️", u"a",
                u" "},
            {u"e\u0301", u"a\u0308", u"\u0301", u"\u200D", u"\u200B", u"\u00AD", u"n", u"…"},
            {std::u16string(1, 0xD83D), std::u16string(1, 0xDE00), u"😀", u"x"},
            {u"                                        ", u"א", u"م", u"w", u"漢", u"1"},
        };
        const auto& first = alphabets[pick(alphabets.size())];
        const auto& second = alphabets[pick(alphabets.size())];
        std::u16string units;
        for (std::size_t i = 0; i < pieceCount; ++i) {
            const auto& alphabet = pick(4) == 0 ? second : first;
            units += alphabet[pick(alphabet.size())];
        }
        return NSString(std::u16string_view(units));
    }
    std::size_t pick(std::size_t count) { return _random() % count; }
    double fraction() { return double(_random() % 1000) / 1000; }

private:
    std::mt19937 _random;
};

void compareWithThePlainRule(const NSString& text, double share, const char* font, double kern)
{
    constexpr double kSize = 13;
    const auto attributes = lineAttributes(font, kSize, kern);
    const double whole = ZRLineWidth(text, attributes);
    const double width = whole * share;
    if (whole <= width)
        return; // a negative one: nothing is cut
    const NSString expected = plainTruncation(text, width, attributes);
    const NSString actual = ZRTruncatedInMiddle(text, width, attributes, {kSize, kern});
    EXPECT_EQ(actual, expected) << text.UTF8String() << "\nin " << font << " at " << width << " kern " << kern
                                << "\nis " << actual.UTF8String() << "\nnot " << expected.UTF8String();
}

} // namespace

TEST(ZRMiddleTruncation, IsThatOfThePlainRuleForRandomTexts)
{
    RandomTexts texts(20240817);
    constexpr double kKerns[]{0, 0, 0.7, -0.4, -3, 20};
    for (int i = 0; i < 150; ++i) {
        const NSString text = texts.text(3 + texts.pick(i % 4 == 0 ? 90 : 25));
        const char* const font = texts.pick(2) ? "Liberation Sans" : "DejaVu Sans";
        compareWithThePlainRule(text, texts.fraction(), font, kKerns[texts.pick(6)]);
    }
}

TEST(ZRMiddleTruncation, IsThatOfThePlainRuleForLongTexts)
{
    RandomTexts texts(7);
    for (int i = 0; i < 2; ++i)
        compareWithThePlainRule(texts.text(250), i % 2 ? 0.1 : 0.7, "DejaVu Sans", 0);
}

TEST(ZRMiddleTruncation, LooksAtFewCandidates)
{
    std::string words;
    for (std::mt19937 random(3); words.size() < 10000;)
        words += "AVATo fi wy"[random() % 11];
    const NSString text(words);
    const auto attributes = lineAttributes("Liberation Sans", 13, 0);
    for (const double width : {100.0, 1000.0, 0.9 * ZRLineWidth(text, attributes)}) {
        const auto before = fontWork().layouts;
        ZRTruncatedInMiddle(text, width, attributes, {13, 0});
        EXPECT_LT(fontWork().layouts - before, 100U) << width;
    }
}

TEST(ZRMiddleTruncation, LooksAtFewCandidatesOfUnusualTexts)
{
    const auto attributes = lineAttributes("DejaVu Sans", 13, 0);
    const std::pair<const char*, NSString> cases[]{
        {"blanks", NSString(std::string(10000, ' '))},
        {"blanks and words",
            [] {
                std::string text;
                while (text.size() < 10000)
                    text += std::string(500, ' ') + "word";
                return NSString(text);
            }()},
        {"digits", NSString(std::string(10000, '1'))},
    };
    for (const auto& [name, text] : cases) {
        const auto before = fontWork().layouts;
        ZRTruncatedInMiddle(text, 200, attributes, {13, 0});
        EXPECT_LT(fontWork().layouts - before, 500U) << name;
    }
}
