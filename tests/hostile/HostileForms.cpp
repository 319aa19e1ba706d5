#include "HostilePDFs.h"
#include "support/PDFWriter.h"

namespace {

const std::string form = "/Type /XObject /Subtype /Form /BBox [0 0 99 99] ";
const std::string tiling = "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 ";
const std::string group = "/Group << /S /Transparency /I true >> ";
const std::string grayGroup = "/Group << /S /Transparency /CS /DeviceGray >> ";
const std::string luminosityMask = "<< /SMask << /S /Luminosity /G 5 0 R >> >>";
const std::string fillWithPattern = "/Pattern cs /P scn 0 0 100 100 re f";

std::string reference(int number)
{
    return std::to_string(number) + " 0 R";
}

std::string namedForm(int number)
{
    return "/XObject << /F " + reference(number) + " >>";
}

/// Forms 5, 6, … of which each draws the next one `times` times.
PDFWriter formChain(std::string_view content, int count, std::size_t times, const std::string& entries = "",
    const std::string& resources = "")
{
    auto writer = pageWriter(content, namedForm(5) + resources);
    for (int i = 0; i < count; ++i) {
        const auto body = i + 1 < count ? repeated("/F Do ", times) : std::string("0 0 9 9 re f");
        writer.stream(5 + i, body, form + entries + "/Resources << " + namedForm(6 + i) + " >>");
    }
    return writer;
}

std::string twoFormsThatDrawEachOther()
{
    return pageWriter("/F Do", namedForm(5))
        .stream(5, "/F Do", form + "/Resources << " + namedForm(6) + " >>")
        .stream(6, "/F Do", form + "/Resources << " + namedForm(5) + " >>")
        .file();
}

std::string tileOf(std::string_view content, const std::string& geometry)
{
    return pageWriter(fillWithPattern, "/Pattern << /P 5 0 R >>")
        .stream(5, content, tiling + geometry + " /Resources << /Pattern << /P 5 0 R >> >>")
        .file();
}

std::string nestedTiles()
{
    auto writer = pageWriter(fillWithPattern, "/Pattern << /P 5 0 R >>");
    for (int i = 5; i < 13; ++i) {
        writer.stream(i, fillWithPattern,
            tiling + "/BBox [0 0 1 1] /XStep 1 /YStep 1 /Resources << /Pattern << /P " + reference(i + 1)
                + " >> >>");
    }
    return writer.stream(13, "0 0 1 1 re f", tiling + "/BBox [0 0 1 1] /XStep 1 /YStep 1").file();
}

std::string maskThatUsesItself()
{
    return pageWriter("/G gs 0 0 99 99 re f", "/ExtGState << /G 6 0 R >>")
        .stream(5, "/G gs 0 0 99 99 re f", form + grayGroup + "/Resources << /ExtGState << /G 6 0 R >> >>")
        .object(6, luminosityMask)
        .file();
}

std::string maskedBy(const std::string& content)
{
    return pageWriter(content, "/ExtGState << /G 6 0 R >>")
        .stream(5, "1 g 0 0 50 99 re f", form + grayGroup)
        .object(6, luminosityMask)
        .file();
}

/// Soft masks within soft masks.
std::string maskChain()
{
    auto writer = pageWriter("/G gs 0 0 99 99 re f", "/ExtGState << /G 5 0 R >>");
    for (int i = 5; i < 105; i += 2) {
        writer.object(i, "<< /SMask << /S /Alpha /G " + reference(i + 1) + " >> >>");
        writer.stream(i + 1, "/G gs 0 0 99 99 re f /G gs 0 0 99 99 re f",
            form + grayGroup + "/Resources << /ExtGState << /G " + reference(i + 2) + " >> >>");
    }
    return writer.file();
}

std::string fontOf(int procedure, int nextFont)
{
    return "<< /Type /Font /Subtype /Type3 /FontMatrix [.1 0 0 .1 0 0] /FontBBox [0 0 9 9] /FirstChar 97 "
           "/LastChar 97"
           " /Widths [9] /Encoding << /Differences [97 /a] >> /CharProcs << /a "
        + reference(procedure) + " >> /Resources << /Font << /F " + reference(nextFont) + " >> >> >>";
}

std::string glyphThatDrawsItself()
{
    return pageWriter("BT /F 9 Tf (aaaa) Tj ET", "/Font << /F 5 0 R >>")
        .object(5, fontOf(6, 5))
        .stream(6, "9 0 d0 BT /F 9 Tf (aaaaaaaaaa) Tj ET")
        .file();
}

std::string glyphsThatMultiply()
{
    auto writer = pageWriter("BT /F 9 Tf (aaaa) Tj ET", "/Font << /F 5 0 R >>");
    for (int i = 5; i < 45; i += 2) {
        writer.object(i, fontOf(i + 1, i + 2));
        writer.stream(i + 1, "9 0 d0 0 0 9 9 re f BT /F 9 Tf (aaaaaaaaaaaaaaaaaaaa) Tj ET");
    }
    return writer.file();
}

} // namespace

std::vector<HostilePDF> hostileForms()
{
    return {
        {"form that draws itself",
            [] {
                return pageWriter("/F Do", namedForm(5))
                    .stream(5, "0 0 9 9 re f /F Do", form + "/Resources << " + namedForm(5) + " >>")
                    .file();
            }},
        {"two forms that draw each other", twoFormsThatDrawEachOther},
        {"forms that multiply", [] { return formChain("/F Do", 20, 10).file(); }},
        {"groups that multiply",
            [] {
                return formChain("/G gs /F Do", 20, 10, group, " /ExtGState << /G << /ca .5 /BM /Hue >> >>")
                    .file();
            }},
        {"2,000 forms within each other", [] { return formChain("/F Do", 2'000, 1).file(); }},
        {"form of 120 megabytes",
            [] {
                return pageWriter("/F Do", namedForm(5))
                    .rawStream(
                        5, deflated(repeated("0 0 1 1 re f\n", 1'000), 9'000), form + "/Filter /FlateDecode")
                    .file();
            }},
        {"20,000 groups",
            [] {
                return pageWriter(
                    "/G gs " + repeated("/F Do ", 20'000), namedForm(5) + " /ExtGState << /G << /ca .5 >> >>")
                    .stream(5, "0 0 99 99 re f", form + group)
                    .file();
            }},
        {"tiles of a ten-thousandth of a point",
            [] { return tileOf("0 0 1 1 re f", "/BBox [0 0 1 1] /XStep .0001 /YStep .0001"); }},
        {"tiles without a step", [] { return tileOf("0 0 1 1 re f", "/BBox [0 0 1 1] /XStep 0 /YStep 0"); }},
        {"tiles of a billion points",
            [] { return tileOf("0 0 1e9 1e9 re f", "/BBox [-1e9 -1e9 1e9 1e9] /XStep .5 /YStep .5"); }},
        {"tile that paints with itself",
            [] { return tileOf("/Pattern cs /P scn 0 0 9 9 re f", "/BBox [0 0 9 9] /XStep 9 /YStep 9"); }},
        {"tiles within each other", nestedTiles},
        {"mask that uses itself", maskThatUsesItself},
        {"mask around 20,000 fills", [] { return maskedBy("/G gs " + repeated("0 0 99 99 re f ", 20'000)); }},
        {"20,000 masks", [] { return maskedBy(repeated("/G gs 0 0 99 99 re f ", 20'000)); }},
        {"masks within masks", maskChain},
        {"glyph that draws itself", glyphThatDrawsItself},
        {"glyphs that multiply", glyphsThatMultiply},
    };
}
