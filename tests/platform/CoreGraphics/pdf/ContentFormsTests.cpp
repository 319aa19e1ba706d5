#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"
#include "support/Repeated.h"

#include <gtest/gtest.h>

namespace {

const std::string kForm = "/Type /XObject /Subtype /Form ";

/// A page of 6 × 4 points. `forms` are named F0, F1 and so on.
Canvas draw(
    std::string_view content, const std::vector<PDFObjectText>& forms, std::string_view resources = "")
{
    std::string names = "/XObject << ";
    for (std::size_t index = 0; index < forms.size(); ++index)
        names += "/F" + std::to_string(index) + " " + std::to_string(kFirstPDFObject + int(index)) + " 0 R ";
    names += ">> ";
    return drawPage(makePDF(content, names + std::string(resources), "/MediaBox [0 0 6 4]", forms), 1, 6, 4);
}

TEST(PDFForms, AreDrawnInTheCurrentState)
{
    const auto canvas =
        draw("1 0 0 rg 1 0 0 1 2 1 cm /F0 Do", {pdfStream(kForm + "/BBox [0 0 6 4]", "0 0 1 2 re f")});
    EXPECT_COVERAGE(canvas,
        "......"
        "..#..."
        "..#..."
        "......");
    EXPECT_EQ(canvas.pixel(2, 1), rgba(255, 0, 0, 255));
}

TEST(PDFForms, ApplyTheirMatrixBeforeTheCurrentOne)
{
    EXPECT_COVERAGE(draw("1 0 0 1 1 0 cm /F0 Do",
                        {pdfStream(kForm + "/BBox [0 0 2 2] /Matrix [2 0 0 1 0 1]", "0 0 1 1 re f")}),
        "......"
        "......"
        ".##..."
        "......");
}

TEST(PDFForms, AreClippedToTheirBox)
{
    EXPECT_COVERAGE(draw("/F0 Do 5 0 1 1 re f", {pdfStream(kForm + "/BBox [3 3 1 1]", "0 0 6 4 re f")}),
        "......"
        ".##..."
        ".##..."
        ".....#");
    EXPECT_COVERAGE(draw("/F0 Do", {pdfStream(kForm, "0 0 6 4 re f")}),
        "######"
        "######"
        "######"
        "######");
}

TEST(PDFForms, DoNotChangeTheState)
{
    const auto canvas = draw("q /F0 Do 0 0 1 1 re f Q 1 0 1 1 re f",
        {pdfStream(kForm + "/BBox [0 0 6 4]", "1 0 0 rg 9 0 0 9 0 0 cm Q Q Q q q 1 1 1 1 re W n")});
    EXPECT_EQ(canvas.pixel(0, 3), rgba(0, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(1, 3), rgba(0, 0, 0, 255));
}

TEST(PDFForms, LeaveTheCurrentPathAndOperandsAlone)
{
    EXPECT_COVERAGE(
        draw("0 0 1 1 re /F0 Do f", {pdfStream(kForm + "/BBox [0 0 6 4]", "3 0 1 1 re f 5 0 1 1 re")}),
        "......"
        "......"
        "......"
        "#..#..");
}

TEST(PDFForms, UseTheirOwnResourcesOrTheirParents)
{
    const std::string form = "/A gs 0 0 1 1 re f";
    const std::string pageResources = "/ExtGState << /A << /ca 0.5 >> >>";
    EXPECT_EQ(draw("/F0 Do", {pdfStream(kForm, form)}, pageResources).alpha(0, 3), 128);
    EXPECT_EQ(draw("/F0 Do", {pdfStream(kForm + "/Resources << /ExtGState << /A << /ca 0.25 >> >> >>", form)},
                  pageResources)
                  .alpha(0, 3),
        64);
    EXPECT_EQ(draw("/F0 Do", {pdfStream(kForm + "/Resources << >>", form)}, pageResources).alpha(0, 3), 255);
}

TEST(PDFForms, DoNotContainThemselves)
{
    const NSLogCapture capture;
    const std::string nested = "/Resources << /XObject << /A 10 0 R /B 11 0 R >> >>";
    EXPECT_COVERAGE(draw("/F0 Do /F1 Do",
                        {pdfStream(kForm + nested, "0 0 1 1 re f /A Do /B Do"),
                            pdfStream(kForm + nested, "2 0 1 1 re f /A Do /B Do")}),
        "......"
        "......"
        "......"
        "#.#...");
    ASSERT_EQ(capture.messages().size(), 1u);
    EXPECT_NE(capture.messages()[0].find("a form that contains itself is not drawn"), std::string::npos);
}

TEST(PDFForms, EndThePageWhereTheyAreNestedTooDeeply)
{
    // Each form draws a pixel and the next form.
    std::vector<PDFObjectText> forms;
    for (int level = 0; level < 20; ++level)
        forms.push_back(pdfStream(kForm + "/Resources << /XObject << /N "
                + std::to_string(kFirstPDFObject + level + 1) + " 0 R >> >>",
            std::to_string(level % 6) + " " + std::to_string(level / 6) + " 1 1 re f /N Do"));
    const NSLogCapture capture;
    EXPECT_COVERAGE(draw("/F0 Do 5 3 1 1 re f", forms),
        "......"
        "###..."
        "######"
        "######");
    ASSERT_EQ(capture.messages().size(), 1u);
    EXPECT_NE(capture.messages()[0].find("too many nested forms"), std::string::npos);
}

TEST(PDFForms, EndThePageWhereTheyMultiply)
{
    // Ten levels of ten forms each would be 10,000,000,000 forms.
    std::vector<PDFObjectText> forms;
    for (int level = 0; level < 10; ++level)
        forms.push_back(pdfStream(kForm + "/Resources << /XObject << /N "
                + std::to_string(kFirstPDFObject + level + 1) + " 0 R >> >>",
            repeated("/N Do ", 10)));
    const NSLogCapture capture;
    draw("/F0 Do", forms);
    ASSERT_EQ(capture.messages().size(), 1u);
    EXPECT_NE(capture.messages()[0].find("too many operators"), std::string::npos);
}

TEST(PDFForms, HiddenByOptionalContentAreNotDrawn)
{
    const auto drawWithGroups = [](std::string_view content) {
        return drawPage(
            openPDF(pdfBytesOfObjects({
                "<< /Type /Catalog /Pages 2 0 R /OCProperties << /OCGs [6 0 R 7 0 R] /D << /OFF [6 0 R] >> "
                ">> >>",
                "<< /Type /Pages /Kids [3 0 R] >>",
                "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << /XObject << /F 5 0 R /G 8 0 R >> "
                "/Properties << /Off 6 0 R /On 7 0 R /Any << /Type /OCMD /OCGs [6 0 R 7 0 R] >> "
                "/None << /Type /OCMD /OCGs 6 0 R >> >> >> >>",
                pdfStream("", content),
                pdfStream(kForm + "/OC 6 0 R", "0 0 1 1 re f"),
                "<< /Type /OCG /Name (Off) >>",
                "<< /Type /OCG /Name (On) >>",
                pdfStream(kForm + "/OC 7 0 R", "0 0 1 1 re f"),
            })),
            1, 2, 1);
    };
    EXPECT_COVERAGE(drawWithGroups("/F Do"), "..");
    EXPECT_COVERAGE(drawWithGroups("/G Do"), "#.");
    EXPECT_COVERAGE(drawWithGroups("/OC /Off BDC 0 0 1 1 re f /G Do EMC 1 0 1 1 re f"), ".#");
    EXPECT_COVERAGE(drawWithGroups("/OC /On BDC 0 0 1 1 re f EMC"), "#.");
    EXPECT_COVERAGE(drawWithGroups("/OC /Any BDC 0 0 1 1 re f EMC"), "#.");
    EXPECT_COVERAGE(drawWithGroups("/OC /None BDC 0 0 1 1 re f EMC"), "..");
    EXPECT_COVERAGE(
        drawWithGroups("/OC /Off BDC /P BMC EMC /OC /On BDC 0 0 1 1 re f EMC EMC 1 0 1 1 re f"), ".#");
    // What is hidden still changes the state.
    EXPECT_COVERAGE(drawWithGroups("/OC /Off BDC 1 0 1 1 re W n 1 0 0 1 1 0 cm EMC 0 0 9 9 re f"), ".#");
}

TEST(PDFForms, MarkedContentIsDrawn)
{
    EXPECT_COVERAGE(
        draw("/P MP /P << /K 1 >> DP /Span << /T (a) >> BDC 0 0 1 1 re f EMC EMC /P BMC 1 0 1 1 re f", {}),
        "......"
        "......"
        "......"
        "##....");
}

TEST(PDFForms, CompatibilitySectionsSilenceUnknownOperators)
{
    const NSLogCapture capture;
    draw("BX 1 odd BX EX 2 strange EX EX", {});
    EXPECT_TRUE(capture.messages().empty());
    draw("BX EX 1 odd", {});
    EXPECT_EQ(capture.messages().size(), 1u);
}

TEST(PDFForms, MissingObjectsAreIgnored)
{
    EXPECT_COVERAGE(draw("/Nothing Do (F0) Do Do /F0 gs 0 0 1 1 re f", {pdfStream("", "9 9 re")}),
        "......"
        "......"
        "......"
        "#.....");
}

} // namespace
