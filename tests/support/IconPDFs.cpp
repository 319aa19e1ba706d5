#include "support/IconPDFs.h"

#include "support/PDFWriter.h"

#include <array>
#include <cmath>
#include <numbers>
#include <sstream>

namespace {

constexpr bool singleLayer = true;
constexpr bool severalLayers = false;

/// Starts an icon: its content, and the entries of its resources.
PDFWriter icon(std::string_view content, std::string_view resources = "")
{
    return pageWriter("", resources, "0 0 24 24").rawStream(4, content, "");
}

std::string numbers(std::initializer_list<double> values)
{
    std::ostringstream stream;
    for (const double value : values)
        stream << value << ' ';
    return stream.str();
}

/// A closed circle of four curves.
std::string circle(double x, double y, double radius)
{
    const double k = radius * 0.5522847498;
    return numbers({x + radius, y}) + "m " + numbers({x + radius, y + k, x + k, y + radius, x, y + radius})
        + "c " + numbers({x - k, y + radius, x - radius, y + k, x - radius, y}) + "c "
        + numbers({x - radius, y - k, x - k, y - radius, x, y - radius}) + "c "
        + numbers({x + k, y - radius, x + radius, y - k, x + radius, y}) + "c h ";
}

/// The circle run through the other way round.
std::string hole(double x, double y, double radius)
{
    const double k = radius * 0.5522847498;
    return numbers({x + radius, y}) + "m " + numbers({x + radius, y - k, x + k, y - radius, x, y - radius})
        + "c " + numbers({x - k, y - radius, x - radius, y - k, x - radius, y}) + "c "
        + numbers({x - radius, y + k, x - k, y + radius, x, y + radius}) + "c "
        + numbers({x + k, y + radius, x + radius, y + k, x + radius, y}) + "c h ";
}

/// A closed polygon of points on circles about the centre, each taken `step` points after the last.
std::string polygon(int points, int step, double outer, double inner)
{
    std::string result;
    for (int i = 0; i < points; ++i) {
        const double angle = std::numbers::pi / 2 + 2 * std::numbers::pi * i * step / points;
        const double radius = i % 2 == 0 ? outer : inner;
        result +=
            numbers({12 + radius * std::cos(angle), 12 + radius * std::sin(angle)}) + (i == 0 ? "m " : "l ");
    }
    return result + "h ";
}

std::string gear()
{
    std::string result;
    constexpr int teeth = 8;
    for (int i = 0; i < 4 * teeth; ++i) {
        const double angle = 2 * std::numbers::pi * (i + 0.5) / (4 * teeth);
        const double radius = i % 4 < 2 ? 10.5 : 7.5;
        result +=
            numbers({12 + radius * std::cos(angle), 12 + radius * std::sin(angle)}) + (i == 0 ? "m " : "l ");
    }
    return result + "h " + circle(12, 12, 3.5) + "f*";
}

std::string stripes()
{
    std::string result;
    for (int x = 1; x < 24; x += 4)
        result += numbers({double(x), 0, 2, 24}) + "re ";
    return result + "f";
}

/// A gray picture of n x n pixels in which a disc is darker than its ground, softly.
std::string softDisc(int n)
{
    std::string result;
    for (int y = 0; y < n; ++y) {
        for (int x = 0; x < n; ++x) {
            const double distance = std::hypot(x + 0.5 - n / 2.0, y + 0.5 - n / 2.0) / n;
            result += static_cast<char>(std::lround(255 * std::min(1.0, distance * 2)));
        }
    }
    return result;
}

const std::string grayImage = "/Type /XObject /Subtype /Image /ColorSpace /DeviceGray /BitsPerComponent 8 ";
const std::string form = "/Type /XObject /Subtype /Form /BBox [0 0 24 24] ";
const std::string group = "/Group << /S /Transparency /CS /DeviceRGB /I true >> ";
const std::string ramp = "<< /FunctionType 2 /Domain [0 1] /C0 [1 .3 0] /C1 [.1 .2 .9] /N 1 >>";

IconPDF axialGradient()
{
    const std::string shading =
        "/Shading << /S << /ShadingType 2 /ColorSpace /DeviceRGB /Coords [2 2 22 22] /Function " + ramp
        + " /Extend [true true] >> >>";
    return {"axial gradient", singleLayer, icon(circle(12, 12, 10) + "W n /S sh", shading).file()};
}

IconPDF radialGradient()
{
    const std::string shading =
        "/Shading << /S << /ShadingType 3 /ColorSpace /DeviceRGB /Coords [9 15 1 12 12 11] /Function " + ramp
        + " /Extend [true true] >> >>";
    return {"radial gradient", singleLayer, icon(circle(12, 12, 10) + "W n /S sh", shading).file()};
}

IconPDF stitchedGradient()
{
    const std::string part = "<< /FunctionType 2 /Domain [0 1] /N 1.5 /C0 [1 1 .2] /C1 [.8 0 .3] >> ";
    const std::string shading =
        "/Shading << /S << /ShadingType 2 /ColorSpace /DeviceRGB /Coords [0 0 0 24] /Function "
        "<< /FunctionType 3 /Domain [0 1] /Bounds [.4] /Encode [0 1 1 0] /Functions ["
        + part + part + "] >> >> >>";
    return {"stitched gradient", singleLayer, icon("3 3 18 18 re W n /S sh", shading).file()};
}

IconPDF softMask()
{
    const std::string state = "/ExtGState << /G << /SMask << /S /Luminosity /G 5 0 R >> >> >>";
    const std::string shading =
        "/Resources << /Shading << /S << /ShadingType 2 /ColorSpace /DeviceGray /Coords [4 0 20 0] "
        "/Function << /FunctionType 2 /Domain [0 1] /N 1 /C0 [0] /C1 [1] >> /Extend [true true] >> >> >> ";
    return {"soft mask", singleLayer,
        icon("/G gs .8 .1 .3 rg " + circle(12, 12, 10) + "f", state)
            .rawStream(5, "/S sh", form + "/Group << /S /Transparency /CS /DeviceGray >> " + shading)
            .file()};
}

IconPDF transparencyGroup()
{
    return {"transparency group", severalLayers,
        icon("/G gs /F Do", "/XObject << /F 5 0 R >> /ExtGState << /G << /ca .5 >> >>")
            .rawStream(5, "1 0 0 rg 3 3 12 12 re f 0 0 1 rg 9 9 12 12 re f", form + group)
            .file()};
}

IconPDF glyphText()
{
    const std::string font = "<< /Type /Font /Subtype /Type3 /FontMatrix [.001 0 0 .001 0 0] /FontBBox [0 0 "
                             "700 1000] /FirstChar 97 /LastChar 98"
                             " /Widths [600 600] /Encoding << /Differences [97 /tee /ell] >> /CharProcs << "
                             "/tee 6 0 R /ell 7 0 R >> /Resources << >> >>";
    return {"glyphs of content", singleLayer,
        icon("0 .3 .6 rg BT /F 18 Tf 1 5 Td (ab) Tj ET", "/Font << /F 5 0 R >>")
            .object(5, font)
            .rawStream(6, "600 0 50 0 550 800 d1 50 650 500 150 re 225 0 150 650 re f", "")
            .rawStream(7, "600 0 50 0 550 800 d1 50 0 150 800 re 200 0 350 150 re f", "")
            .file()};
}

IconPDF tiling()
{
    const std::string cell =
        "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 6 6] /XStep 6 /YStep 6 "
        "/Resources << >> ";
    return {"tiling", severalLayers,
        icon("/Pattern cs /P scn 0 0 24 24 re f", "/Pattern << /P 5 0 R >>")
            .rawStream(5, ".5 0 .6 rg " + circle(3, 3, 2.2) + "f", cell)
            .file()};
}

IconPDF image()
{
    return {"image", severalLayers,
        icon("20 0 0 20 2 2 cm /I Do", "/XObject << /I 5 0 R >>")
            .rawStream(5, softDisc(64), grayImage + "/Width 64 /Height 64")
            .file()};
}

IconPDF maskedImage()
{
    return {"masked image", severalLayers,
        icon("20 0 0 20 2 2 cm /I Do", "/XObject << /I 5 0 R >>")
            .rawStream(5, std::string("\xc0\x20\x20", 3),
                "/Type /XObject /Subtype /Image /ColorSpace /DeviceRGB /BitsPerComponent 8 /Width 1 /Height "
                "1 /SMask 6 0 R")
            .rawStream(6, softDisc(64), grayImage + "/Width 64 /Height 64 /Decode [1 0]")
            .file()};
}

IconPDF stencil()
{
    const std::array<unsigned char, 8> rows{0xE7, 0xC3, 0x81, 0x00, 0x00, 0x81, 0xC3, 0xE7};
    return {"stencil", severalLayers,
        icon("0 .5 0 rg 16 0 0 16 4 4 cm /I Do", "/XObject << /I 5 0 R >>")
            .rawStream(5, std::string(rows.begin(), rows.end()),
                "/Type /XObject /Subtype /Image /ImageMask true /Width 8 /Height 8 /BitsPerComponent 1")
            .file()};
}

IconPDF blended()
{
    return {"multiplied discs", severalLayers,
        icon("1 1 0 rg " + circle(9, 12, 7) + "f /G gs 0 1 1 rg " + circle(15, 12, 7) + "f",
            "/ExtGState << /G << /BM /Multiply >> >>")
            .file()};
}

IconPDF translucentDiscs()
{
    return {"translucent discs", severalLayers,
        icon("/G gs 1 0 0 rg " + circle(9, 9, 7) + "f 0 .6 0 rg " + circle(15, 9, 7) + "f 0 0 1 rg "
                + circle(12, 15, 7) + "f",
            "/ExtGState << /G << /ca .4 >> >>")
            .file()};
}

IconPDF repeatedForm()
{
    const std::string at = "/F Do Q ";
    return {"repeated form", singleLayer,
        icon("q " + at + "q 1 0 0 1 12 0 cm " + at + "q 1 0 0 1 0 12 cm " + at + "q .5 0 0 .5 14 14 cm " + at,
            "/XObject << /F 5 0 R >>")
            .rawStream(5, ".2 .2 .2 rg " + circle(6, 6, 4.5) + "f", form)
            .file()};
}

} // namespace

std::vector<IconPDF> iconPDFs()
{
    const auto paths = [](const char* name, bool isSingleLayer, const std::string& content) {
        return IconPDF{name, isSingleLayer, icon(content).file()};
    };
    return {
        paths("disc", singleLayer, circle(12, 12, 10) + "f"),
        paths("ring", singleLayer, "0 0 .7 rg " + circle(12, 12, 10) + circle(12, 12, 6) + "f*"),
        paths("ring with a hole the other way round", singleLayer,
            "0 .5 .5 rg " + circle(12, 12, 10) + hole(12, 12, 6) + "f"),
        paths("star", singleLayer, "1 .6 0 rg " + polygon(10, 1, 11, 4.5) + "f"),
        paths("pentagram", singleLayer, ".5 0 .5 rg " + polygon(5, 2, 11, 11) + "f"),
        paths("pentagram with a hole", singleLayer, ".5 0 .5 rg " + polygon(5, 2, 11, 11) + "f*"),
        paths("heart", singleLayer, ".9 .1 .2 rg 12 3 m -6 14 6 26 12 17 c 18 26 30 14 12 3 c h f"),
        paths("drop", singleLayer,
            ".1 .4 .9 rg 12 23 m 8 15 5 12 5 8 c 5 4 8 1 12 1 c 16 1 19 4 19 8 c 19 12 16 15 12 23 c f"),
        paths("gear", singleLayer, ".3 .3 .35 rg " + gear()),
        paths("check mark", singleLayer, "0 .6 .2 RG 3 w 1 J 1 j 4 12 m 10 6 l 20 18 l S"),
        paths("arrow", severalLayers, "2.5 w 0 J 0 j 3 12 m 20 12 l S 13 19 m 20.5 12 l 13 5 l S"),
        paths("bevelled corners", singleLayer, "3 w 2 J 2 j 5 5 m 5 19 l 19 19 l 19 5 l s"),
        paths("dashed circle", singleLayer, "1.5 w [3 2] 1 d 1 J " + circle(12, 12, 9) + "S"),
        paths("flattened stroke", singleLayer, "2 0 0 .5 0 0 cm 2 w 2 24 m 6 40 l 10 24 l S"),
        paths("thin lines", singleLayer, ".4 w 2 4 m 22 4.5 l S 2 10 m 22 13 l S 4 22 m 9 16 l S"),
        paths("battery", severalLayers, "1.5 w 2 7 18 10 re S 20.5 10 2 4 re f 0 .7 .2 rg 4 9 10 6 re f"),
        paths("clipped stripes", severalLayers,
            "q " + circle(12, 12, 10) + circle(12, 12, 5) + "W* n .1 .5 .1 rg " + stripes() + " Q"),
        paths("magnifying glass", severalLayers,
            "2.5 w " + circle(10, 14, 7) + "S 3.5 w 1 J 15.5 8.5 m 21 3 l S"),
        axialGradient(),
        radialGradient(),
        stitchedGradient(),
        softMask(),
        transparencyGroup(),
        translucentDiscs(),
        blended(),
        glyphText(),
        repeatedForm(),
        tiling(),
        image(),
        maskedImage(),
        stencil(),
    };
}
