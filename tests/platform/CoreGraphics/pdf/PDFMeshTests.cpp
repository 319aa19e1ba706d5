#include "Foundation/testing/NSLogCapture.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>

namespace {

/// The data of a mesh: bytes, of which coordinates count sixteenths of the page.
std::string bytes(std::initializer_list<int> values)
{
    std::string result;
    for (const int value : values)
        result += char(value);
    return result;
}

std::string meshEntries(int type, const std::string& further = "")
{
    return "/ShadingType " + std::to_string(type)
        + " /ColorSpace /DeviceRGB /BitsPerCoordinate 8 /BitsPerComponent 8 /BitsPerFlag 8"
          " /Decode [0 255 0 255 0 1 0 1 0 1] "
        + further;
}

/// Paints the page of 16 × 16 points with a mesh.
Canvas drawMesh(const std::string& entries, const std::string& data)
{
    return drawContent("/S sh", "/Shading << /S 10 0 R >>", {pdfStream(entries, data)});
}

bool isInvalidMesh(const std::string& entries)
{
    const NSLogCapture log;
    const auto canvas = drawMesh(entries, std::string(1000, 'x'));
    return canvas.alpha(8, 8) == 0 && log.messages().size() == 1
        && log.messages()[0].ends_with("a shading is invalid, and not drawn");
}

/// The byte of a share of 255 that is measured from the centre of a pixel of sixteen.
int centre(int pixel)
{
    return int((pixel + 0.5) / 16 * 255 + 0.5);
}

TEST(PDFMeshTriangles, PaintTheCentresInside)
{
    const auto canvas = drawMesh(
        meshEntries(4), bytes({0, 0, 0, 255, 0, 0, /**/ 0, 16, 0, 255, 0, 0, /**/ 0, 0, 4, 255, 0, 0}));
    EXPECT_COVERAGE(canvas,
        std::string(12 * 16, '.')
            + "##.............."
              "######.........."
              "##########......"
              "##############..");
}

TEST(PDFMeshTriangles, InterpolateColors)
{
    // Red grows to the right, green upward.
    const auto canvas = drawMesh(
        meshEntries(4), bytes({0, 0, 0, 0, 0, 0, /**/ 0, 16, 0, 255, 0, 0, /**/ 0, 0, 16, 0, 255, 0}));
    EXPECT_EQ(canvas.pixel(2, 15), rgba(centre(2), centre(0), 0, 255));
    EXPECT_EQ(canvas.pixel(7, 9), rgba(centre(7), centre(6), 0, 255));
    EXPECT_EQ(canvas.alpha(10, 2), 0);
}

TEST(PDFMeshTriangles, ShareEdges)
{
    const std::string first = bytes({0, 0, 16, 255, 0, 0, /**/ 0, 8, 16, 255, 0, 0, /**/ 0, 0, 8, 255, 0, 0});
    // The second triangle takes the last two corners of the first one, or its first and its last.
    const auto lastTwo = drawMesh(meshEntries(4), first + bytes({1, 8, 8, 0, 255, 0}));
    EXPECT_EQ(lastTwo.pixel(1, 1), rgba(255, 0, 0, 255));
    EXPECT_EQ(lastTwo.alpha(7, 7), 255);
    EXPECT_EQ(lastTwo.alpha(7, 9), 0);
    const auto firstAndLast = drawMesh(meshEntries(4), first + bytes({2, 0, 0, 255, 0, 0}));
    EXPECT_EQ(firstAndLast.alpha(7, 7), 0);
    const auto other = drawMesh(meshEntries(4), first + bytes({2, 16, 0, 255, 0, 0}));
    EXPECT_EQ(other.alpha(6, 7), 255); // between (0, 16), (0, 8) and (16, 0)
    EXPECT_EQ(other.alpha(2, 13), 0);
}

TEST(PDFMeshTriangles, IgnoreATriangleThatIsCutOff)
{
    const auto canvas =
        drawMesh(meshEntries(4), bytes({0, 0, 0, 255, 0, 0, /**/ 0, 16, 0, 255, 0, 0, /**/ 0, 0, 16}));
    EXPECT_EQ(canvas.alpha(1, 14), 0);
}

TEST(PDFMeshTriangles, TakeTheirColorsFromAFunction)
{
    const std::string entries =
        "/ShadingType 4 /ColorSpace /DeviceRGB /BitsPerCoordinate 8 /BitsPerComponent 8"
        " /BitsPerFlag 8 /Decode [0 255 0 255 0 1] /Function << /FunctionType 3 /Domain [0 1]"
        " /Bounds [0.5] /Encode [0 1 0 1] /Functions ["
        "<< /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [1 0 0] /N 1 >>"
        "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 1] /C1 [0 0 1] /N 1 >>] >>";
    // The input grows to the right: the function applies to each pixel, not to the corners.
    const auto canvas = drawMesh(entries, bytes({0, 0, 0, 0, /**/ 0, 16, 0, 255, /**/ 0, 0, 32, 0}));
    EXPECT_EQ(canvas.pixel(7, 15), rgba(255, 0, 0, 255));
    EXPECT_EQ(canvas.pixel(8, 15), rgba(0, 0, 255, 255));
}

TEST(PDFMeshTriangles, InterpolateInTheirColorSpace)
{
    const std::string entries =
        "/ShadingType 4 /ColorSpace /DeviceCMYK /BitsPerCoordinate 8 /BitsPerComponent 8"
        " /BitsPerFlag 8 /Decode [0 255 0 255 0 1 0 1 0 1 0 1]";
    // From cyan on the left to yellow on the right.
    const auto canvas = drawMesh(
        entries, bytes({0, 0, 0, 255, 0, 0, 0, /**/ 0, 16, 0, 0, 0, 255, 0, /**/ 0, 0, 32, 255, 0, 0, 0}));
    EXPECT_EQ(canvas.pixel(7, 15), drawContent("0.53125 0 0.46875 0 k 0 0 16 16 re f").pixel(8, 8));
}

TEST(PDFMeshTriangles, ReadNumbersOfAllSizes)
{
    // Flags of 2 bits, coordinates of 4 and components of 1, each vertex padded to 2 bytes.
    const std::string entries =
        "/ShadingType 4 /ColorSpace /DeviceRGB /BitsPerCoordinate 4 /BitsPerComponent 1"
        " /BitsPerFlag 2 /Decode [0 15 0 15 0 1 0 1 0 1]";
    // 00 0000 0000 101 000, 00 1000 0000 101 000, 00 0000 1000 101 000
    const auto canvas = drawMesh(entries, bytes({0x00, 0x28, 0x20, 0x28, 0x02, 0x28}));
    EXPECT_EQ(canvas.pixel(1, 14), rgba(255, 0, 255, 255));
    EXPECT_EQ(canvas.pixel(6, 15), rgba(255, 0, 255, 255));
    EXPECT_EQ(canvas.alpha(8, 15), 0);
    EXPECT_EQ(canvas.alpha(6, 10), 0);
}

TEST(PDFMeshLattice, JoinsItsRows)
{
    const std::string data = bytes({0, 16, 0, 255, 0, /**/ 8, 16, 128, 255, 0, /**/ 16, 16, 255, 255, 0, //
        0, 0, 0, 0, 0, /**/ 8, 0, 128, 0, 0, /**/ 16, 0, 255, 0, 0});
    const auto canvas = drawMesh(meshEntries(5, "/VerticesPerRow 3"), data);
    EXPECT_COVERAGE(canvas, std::string(256, '#'));
    EXPECT_EQ(canvas.pixel(0, 8), rgba(8, centre(7), 0, 255));
    EXPECT_EQ(canvas.pixel(3, 2), rgba(56, centre(13), 0, 255)); // 3.5 / 8 of 128
    EXPECT_EQ(canvas.pixel(15, 15), rgba(247, centre(0), 0, 255));
    EXPECT_TRUE(isInvalidMesh(meshEntries(5, "/VerticesPerRow 1")));
    EXPECT_TRUE(isInvalidMesh(meshEntries(5)));
}

/// The points of a square from (x, y) to (x + 12, y + 12), first upward, a third of a side apart; `count`
/// from `first`.
std::string squareOutline(int x, int y, std::size_t first = 0, std::size_t count = 12)
{
    constexpr int kPoints[12][2] = {{0, 0}, {0, 4}, {0, 8}, {0, 12}, {4, 12}, {8, 12}, {12, 12}, {12, 8},
        {12, 4}, {12, 0}, {8, 0}, {4, 0}};
    std::string result;
    for (std::size_t i = first; i < first + count; ++i)
        result += bytes({x + kPoints[i][0], y + kPoints[i][1]});
    return result;
}

const std::string kMeshBlack = bytes({0, 0, 0});
const std::string kMeshRed = bytes({255, 0, 0});
const std::string kMeshGreen = bytes({0, 255, 0});
const std::string kYellow = bytes({255, 255, 0});

/// Computed in single precision at the corners of small triangles.
constexpr int kPatchTolerance = 1;

void expectColor(const Canvas& canvas, int column, int row, int red, int green)
{
    const auto pixel = canvas.pixel(column, row);
    EXPECT_NEAR(pixel.bytes[0], red, kPatchTolerance);
    EXPECT_NEAR(pixel.bytes[1], green, kPatchTolerance);
    EXPECT_EQ(pixel.bytes[2], 0);
    EXPECT_EQ(pixel.bytes[3], 255);
}

/// A square of 12 × 12 pixels from (2, 2): green grows upward, red to the right.
void expectSquare(const Canvas& canvas)
{
    for (int row = 0; row < 16; ++row) {
        for (int column = 0; column < 16; ++column) {
            const bool isInside = column >= 2 && column < 14 && row >= 2 && row < 14;
            ASSERT_EQ(canvas.alpha(column, row), isInside ? 255 : 0) << column << ", " << row;
        }
    }
    const auto share = [](int pixel) { return int((pixel + 0.5) / 12 * 255 + 0.5); };
    expectColor(canvas, 2, 13, share(0), share(0));
    expectColor(canvas, 2, 2, share(0), share(11));
    expectColor(canvas, 13, 4, share(11), share(9));
    expectColor(canvas, 7, 9, share(5), share(4));
}

TEST(PDFMeshPatches, OfCoonsFillTheirOutline)
{
    expectSquare(drawMesh(
        meshEntries(6), bytes({0}) + squareOutline(2, 2) + kMeshBlack + kMeshGreen + kYellow + kMeshRed));
}

TEST(PDFMeshPatches, OfTensorsHaveInnerPoints)
{
    const std::string outline = bytes({0}) + squareOutline(2, 2);
    const std::string colors = kMeshBlack + kMeshGreen + kYellow + kMeshRed;
    expectSquare(drawMesh(meshEntries(7), outline + bytes({6, 6, 6, 10, 10, 10, 10, 6}) + colors));
    // All inner points in the lower left: the middle of the colours moves there, the outline does not.
    const auto pulled = drawMesh(meshEntries(7), outline + bytes({2, 2, 2, 2, 2, 2, 2, 2}) + colors);
    EXPECT_EQ(pulled.alpha(2, 2), 255);
    EXPECT_EQ(pulled.alpha(1, 8), 0);
    EXPECT_GT(pulled.pixel(7, 8).bytes[0], 150);
    EXPECT_GT(pulled.pixel(7, 8).bytes[1], 150);
}

TEST(PDFMeshPatches, ShareEachOfTheirEdges)
{
    const std::string colors = kMeshBlack + kMeshGreen + kYellow + kMeshRed;
    const std::string first = bytes({0}) + squareOutline(2, 2) + colors;
    // A small patch that continues at an edge, outside of it: two more corners, and their colours.
    const struct {
        int flag;
        std::initializer_list<int> points; // eight of them, from the end of the shared edge
        int column, row;                   // in the second patch, next to the corner where it starts
        int red, green;
    } cases[] = {
        // The upper edge from left to right, of a strip above it.
        {1, {14, 15, 14, 15, 14, 16, 10, 16, 6, 16, 2, 16, 2, 15, 2, 15}, 2, 1, 10, 255},
        // The right edge from top to bottom, of a strip to its right.
        {2, {15, 2, 15, 2, 16, 2, 16, 6, 16, 10, 16, 14, 15, 14, 15, 14}, 14, 2, 255, 245},
        // The lower edge from right to left, of a strip below it.
        {3, {2, 1, 2, 1, 2, 0, 6, 0, 10, 0, 14, 0, 14, 1, 14, 1}, 13, 14, 245, 0},
    };
    for (const auto& [flag, points, column, row, red, green] : cases) {
        SCOPED_TRACE(flag);
        // The far corners have the colours of the near ones.
        const std::string ofEnd = flag == 1 ? kYellow : flag == 2 ? kMeshRed : kMeshBlack;
        const std::string ofStart = flag == 1 ? kMeshGreen : flag == 2 ? kYellow : kMeshRed;
        const auto canvas = drawMesh(meshEntries(6), first + bytes({flag}) + bytes(points) + ofEnd + ofStart);
        ASSERT_EQ(canvas.alpha(column, row), 255);
        expectColor(canvas, column, row, red, green);
    }
}

TEST(PDFMeshPatches, CurveTheirEdges)
{
    // The left edge bulges by 4 to the left at most: three quarters of its control points' distance.
    std::string outline = squareOutline(4, 2);
    outline[2] = outline[4] = 0; // (4, 6) and (4, 10) move to x = 0
    const auto canvas =
        drawMesh(meshEntries(6), bytes({0}) + outline + kMeshRed + kMeshRed + kMeshRed + kMeshRed);
    EXPECT_EQ(canvas.alpha(1, 8), 255); // 4 - 3 = 1
    EXPECT_EQ(canvas.alpha(0, 8), 0);
    EXPECT_EQ(canvas.alpha(3, 13), 0); // near the corner
    EXPECT_EQ(canvas.alpha(15, 8), 255);
}

TEST(PDFMeshPatches, LeaveNoGapsAtAnyScale)
{
    const auto document = makePDF("/S sh", "/Shading << /S 10 0 R >>", "/MediaBox [0 0 16 16]",
        {pdfStream(meshEntries(6),
            bytes({0}) + squareOutline(2, 2) + kMeshBlack + kMeshGreen + kYellow + kMeshRed)});
    const auto canvas = drawPage(document, 1, 16, 16, 7.3);
    for (int row = 20; row < 90; ++row) {
        for (int column = 20; column < 90; ++column)
            ASSERT_EQ(canvas.alpha(column, row), 255) << column << ", " << row;
    }
}

TEST(PDFMesh, IsInvalidWithNumbersOfOtherSizes)
{
    const auto entries = [](int coordinate, int component, int flag, const std::string& decode) {
        return "/ShadingType 4 /ColorSpace /DeviceRGB /BitsPerCoordinate " + std::to_string(coordinate)
            + " /BitsPerComponent " + std::to_string(component) + " /BitsPerFlag " + std::to_string(flag)
            + " /Decode [" + decode + "]";
    };
    const std::string decode = "0 255 0 255 0 1 0 1 0 1";
    EXPECT_FALSE(isInvalidMesh(entries(8, 8, 8, decode)));
    EXPECT_TRUE(isInvalidMesh(entries(0, 8, 8, decode)));
    EXPECT_TRUE(isInvalidMesh(entries(99, 8, 8, decode)));
    EXPECT_TRUE(isInvalidMesh(entries(8, 0, 8, decode)));
    EXPECT_TRUE(isInvalidMesh(entries(8, 24, 8, decode)));
    EXPECT_TRUE(isInvalidMesh(entries(8, 8, 0, decode)));
    EXPECT_TRUE(isInvalidMesh(entries(8, 8, 1, decode)));
    EXPECT_TRUE(isInvalidMesh(entries(8, 8, 8, "0 255 0 255 0 1 0 1 0")));
}

TEST(PDFMesh, EndsWithExtremeCoordinates)
{
    std::string data;
    for (int i = 0; i < 3000; ++i)
        data += bytes({i % 4, i * 7, i * 13, i * 29, i * 31, i * 37, i * 41, i * 43});
    for (const int type : {4, 6, 7}) {
        for (const char* decode :
            {"-1000000000 1000000000 -1000000000 1000000000", "0 0 0 0", "16 -16 16 0"}) {
            SCOPED_TRACE(std::to_string(type) + ": " + decode);
            const auto canvas = drawMesh("/ShadingType " + std::to_string(type)
                    + " /ColorSpace /DeviceRGB /BitsPerCoordinate 32 /BitsPerComponent 16 /BitsPerFlag 8 "
                      "/Decode ["
                    + decode + " 0 1 0 1 0 1]",
                data);
            EXPECT_EQ(canvas.width(), 16);
        }
    }
}

TEST(PDFMesh, StopsWhereItTakesTooLong)
{
    // Triangles as large as the page, drawn again and again.
    std::string data;
    for (int i = 0; i < 20'000; ++i)
        data += bytes({0, 0, 0, 255, 0, 0, 0, 255, 0, 255, 0, 0, 0, 0, 255, 255, 0, 0});
    std::string content;
    for (int i = 0; i < 1'000; ++i)
        content += "/S sh ";
    const NSLogCapture log;
    drawContent(content, "/Shading << /S 10 0 R >>", {pdfStream(meshEntries(4), data)});
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_TRUE(log.messages()[0].ends_with("the rest of the page is left out: it takes too long to draw"));
}

} // namespace
