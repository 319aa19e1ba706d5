#include "TextFixture.h"

#include "Foundation/testing/NSLogCapture.h"

#include <limits>

namespace {

NSString nameOf(const NSString& wanted)
{
    return CTFontCopyPostScriptName(adopt(CTFontCreateWithName(wanted, 12)).get());
}

TEST(CTFontTest, IsFoundByPostScriptNameFullNameAndFamily)
{
    TemporaryFolder folder;
    folder.write("regular.ttf", squareFontBytes("My Squares"));
    folder.write("bold.ttf", squareFontBytes("My Squares", kBold));
    const PrivateFonts fonts(NSString(folder.path().string()));

    EXPECT_EQ(nameOf("MySquares-Bold"), "MySquares-Bold");
    EXPECT_EQ(nameOf("My Squares Bold"), "MySquares-Bold");
    EXPECT_EQ(nameOf("My Squares"), "MySquares") << "of a family the regular face";
    EXPECT_EQ(nameOf("mysquares BOLD"), "MySquares-Bold") << "ignoring blanks and case";
    EXPECT_EQ(CTFontCopyFamilyName(adopt(CTFontCreateWithName("My Squares Bold", 12)).get()), "My Squares");
}

TEST(CTFontTest, TakesTheNearestFaceForAMissingName)
{
    TemporaryFolder folder;
    folder.write("regular.ttf", squareFontBytes("Squares"));
    folder.write("bold.ttf", squareFontBytes("Squares", kBold));
    folder.write("sans.ttf", squareFontBytes("Liberation Sans"));
    folder.write("sansbold.ttf", squareFontBytes("Liberation Sans", kBold));
    const PrivateFonts fonts(NSString(folder.path().string()));

    EXPECT_EQ(nameOf("Squares Heavy"), "Squares-Bold") << "the family itself, where it is installed";
    EXPECT_EQ(nameOf("Squares-Light"), "Squares");
    for (const char* name : {"Helvetica", "Helvetica Neue", "HelveticaNeue-Light", "Helvetica Neue Regular",
             "Helvetica Neue Ultra Light", "Helvetica-Oblique", "ArialMT", "No Such Font", ""})
        EXPECT_EQ(nameOf(name), "LiberationSans") << name;
    for (const char* name : {"Helvetica Bold", "Helvetica-Bold", "HelveticaNeue-Bold", "Helvetica Neue Black",
             "Arial-BoldMT", "Helvetica-BoldOblique", "Bold", "HelveticaNeue-CondensedBold"})
        EXPECT_EQ(nameOf(name), "LiberationSans-Bold") << name;
    EXPECT_EQ(nameOf(NSString()), "LiberationSans");
}

/// Writes a font of each family into the folder.
void writeFamilies(const TemporaryFolder& folder, std::initializer_list<std::string> families)
{
    for (const std::string& family : families)
        folder.write(family + ".ttf", squareFontBytes(family));
}

TEST(CTFontTest, TakesFamiliesInTheOrderOfTheTableWhateverTheSystemSubstitutes)
{
    // The system takes other families for all of these.
    constexpr std::string_view kRules = R"(<fontconfig>
        <alias binding="same"><family>Helvetica</family><accept><family>Nimbus Sans</family></accept></alias>
        <alias binding="same"><family>Arimo</family><prefer><family>Others</family></prefer></alias>
        <alias binding="same"><family>sans-serif</family><prefer><family>Others</family></prefer></alias>
        </fontconfig>)";
    const auto nameAmong = [&](const NSString& name, std::initializer_list<std::string> families) {
        const TemporaryFolder folder;
        folder.write("fonts.conf", kRules);
        writeFamilies(folder, families);
        const PrivateFonts fonts(NSString(folder.path().string()));
        return nameOf(name);
    };
    EXPECT_EQ(
        nameAmong("Helvetica", {"Nimbus Sans", "Arimo", "Liberation Sans", "Others"}), "LiberationSans");
    EXPECT_EQ(nameAmong("Helvetica", {"Nimbus Sans", "Others"}), "NimbusSans");
    EXPECT_EQ(nameAmong("Helvetica", {"Aaa", "Others"}), "Others") << "what stands for sans-serif";
    EXPECT_EQ(nameAmong("Helvetica Bold", {"Helvetica", "Nimbus Sans"}), "Helvetica") << "the family itself";
    EXPECT_EQ(nameAmong("Helvetica", {"Nimbus Sans", "Arimo", "Others"}), "NimbusSans")
        << "a family that the system replaces by another one counts as not installed";
    EXPECT_EQ(nameAmong("Arimo", {"Nimbus Sans", "Arimo", "Others"}), "NimbusSans")
        << "asked for by name, too";
}

TEST(CTFontTest, TakesTheNearestFaceOfAFamily)
{
    TemporaryFolder folder;
    const TestFontStyle styles[] = {{"Light", 300}, {"Regular", 400}, {"Bold", 700}, {"Italic", 400, true},
        {"Condensed Bold", 700, false, 3}};
    for (const TestFontStyle& style : styles)
        folder.write(style.name + ".ttf", squareFontBytes("Squares", style));
    const PrivateFonts fonts(NSString(folder.path().string()));
    EXPECT_EQ(nameOf("Squares Thin"), "Squares-Light");
    EXPECT_EQ(nameOf("Squares Medium"), "Squares");
    EXPECT_EQ(nameOf("Squares Semibold"), "Squares-Bold");
    EXPECT_EQ(nameOf("Squares Oblique"), "Squares-Italic");
    EXPECT_EQ(nameOf("Squares Bold Italic"), "Squares-Italic") << "a slant counts more than a weight";
    EXPECT_EQ(nameOf("Squares Narrow"), "Squares") << "and a weight more than a width";
    EXPECT_EQ(nameOf("Squares Narrow Bold"), "Squares-CondensedBold");
    EXPECT_EQ(nameOf("Squares"), "Squares");
}

TEST(CTFontTest, HasItsFacesHeightsAndTraits)
{
    TemporaryFolder folder;
    folder.write("bold.ttf", squareFontBytes("Squares", kBold));
    const PrivateFonts fonts(NSString(folder.path().string()));
    const auto font = adopt(CTFontCreateWithName("Squares", 20));
    EXPECT_EQ(CTFontGetSize(font), 20);
    EXPECT_EQ(CTFontGetAscent(font), 16);
    EXPECT_EQ(CTFontGetDescent(font), 4);
    EXPECT_EQ(CTFontGetLeading(font), 2);
    EXPECT_EQ(CTFontGetSymbolicTraits(font), kCTFontTraitBold);
    EXPECT_EQ(font->description(), "Squares-Bold 20.00 pt.");
}

TEST(CTFontTest, IsItalicWhereItsFaceIs)
{
    TemporaryFolder folder;
    folder.write("italic.ttf", squareFontBytes("Squares", {"Italic", 400, true}));
    const PrivateFonts fonts(NSString(folder.path().string()));
    EXPECT_EQ(CTFontGetSymbolicTraits(adopt(CTFontCreateWithName("Squares", 20)).get()), kCTFontTraitItalic);
}

TEST(CTFontTest, WithAnInvalidSizeHasTwelvePoints)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double size : {0.0, -5.0, kInfinity, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(CTFontGetSize(adopt(CTFontCreateWithName("Helvetica", size)).get()), 12) << size;
}

TEST(CTFontTest, EqualsAnotherOfTheSameFaceAndSize)
{
    const auto font = adopt(CTFontCreateWithName("Helvetica", 12));
    const auto same = adopt(CTFontCreateWithName("Helvetica", 12));
    EXPECT_TRUE(font->isEqual(same));
    EXPECT_EQ(font->hash(), same->hash());
    EXPECT_FALSE(font->isEqual(adopt(CTFontCreateWithName("Helvetica", 13)).get()));
    EXPECT_FALSE(font->isEqual(adopt(CTFontCreateWithName("Helvetica Bold", 12)).get()));
    EXPECT_FALSE(font->isEqual(nullptr));
}

TEST(CTFontTest, FunctionsReturnNothingForNull)
{
    EXPECT_EQ(CTFontGetSize(nullptr), 0);
    EXPECT_EQ(CTFontGetAscent(nullptr), 0);
    EXPECT_EQ(CTFontGetSymbolicTraits(nullptr), 0);
    EXPECT_TRUE(CTFontCopyPostScriptName(nullptr).isNull());
    EXPECT_TRUE(CTFontCopyFamilyName(nullptr).isNull());
}

TEST(CTFontTest, WithoutAnyFontSaysSoOnce)
{
    const TemporaryFolder folder;
    const PrivateFonts fonts(NSString(folder.path().string()));
    const NSLogCapture log;
    (void)adopt(CTFontCreateWithName("Helvetica", 12));
    (void)adopt(CTFontCreateWithName("Helvetica Bold", 12));
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{
            "No usable font is installed: text is not drawn. Install TrueType or OpenType "
            "fonts, such as Debian's package fonts-liberation."});
}

TEST(CTFontTest, WithoutAnyFontThereAreFontsWithoutGlyphs)
{
    const TemporaryFolder folder;
    const PrivateFonts fonts(NSString(folder.path().string()));
    const NSLogCapture log;
    const auto font = adopt(CTFontCreateWithName("Helvetica", 12));
    ASSERT_TRUE(font);
    EXPECT_EQ(CTFontGetAscent(font), 0);
    const auto text = make<NSAttributedString>("Text");
    const auto line = adopt(CTLineCreateWithAttributedString(text));
    EXPECT_EQ(CTLineGetTypographicBounds(line, nullptr, nullptr, nullptr), 0);
    const Canvas canvas(4, 2);
    CTLineDraw(line, canvas.context());
    EXPECT_COVERAGE(canvas,
        "...."
        "....");
}

TEST(CTFontTest, WithAFileDamagedAfterItWasFoundIsReplacedByTheNext)
{
    for (const std::string& damage :
        {std::string(), std::string("no font at all"), squareFontBytes().substr(0, 60)}) {
        TemporaryFolder folder;
        const std::string file = folder.write("a.ttf", squareFontBytes("Squares"));
        folder.write("b.ttf", squareFontBytes("Others"));
        const PrivateFonts fonts(NSString(folder.path().string()));
        folder.write("a.ttf", damage);
        EXPECT_EQ(nameOf("Squares"), "Others") << damage.size();
        EXPECT_EQ(nameOf("Others"), "Others");
    }
}

TEST(CTFontTest, WithAFileRemovedAfterItWasFoundIsReplacedByTheNext)
{
    TemporaryFolder folder;
    const std::filesystem::path file = folder.write("a.ttf", squareFontBytes("Squares"));
    folder.write("b.ttf", squareFontBytes("Others"));
    const PrivateFonts fonts(NSString(folder.path().string()));
    std::filesystem::remove(file);
    EXPECT_EQ(nameOf("Squares"), "Others");
}

TEST(CTFontTest, StillDrawsWhenItsFileIsRemovedAfterUse)
{
    TemporaryFolder folder;
    const std::filesystem::path file = folder.write("a.ttf", squareFontBytes("Squares"));
    const PrivateFonts fonts(NSString(folder.path().string()));
    const auto font = adopt(CTFontCreateWithName("Squares", 2));
    std::filesystem::remove(file);
    const auto attributes = make<NSMutableDictionary>();
    attributes->setObject(const_cast<CTFont*>(font.get()), kCTFontAttributeName);
    const auto text = make<NSAttributedString>("A", attributes);
    const Canvas canvas(3, 2);
    CTLineDraw(adopt(CTLineCreateWithAttributedString(text)).get(), canvas.context());
    EXPECT_COVERAGE(canvas,
        "##."
        "##.");
}

} // namespace
