#include "HostilePDFs.h"
#include "support/PDFWriter.h"

namespace {

constexpr const char* paintShading = "/S sh";

std::string axialShading()
{
    return "/Shading << /S << /ShadingType 2 /ColorSpace /DeviceGray /Coords [0 0 99 0] /Function 5 0 R >> "
           ">>";
}

std::string functionShading(const std::string& domain = "0 1 0 1")
{
    return "/Shading << /S << /ShadingType 1 /Domain [" + domain
        + "] /ColorSpace /DeviceGray /Function 5 0 R >> >>";
}

std::string functionThatUsesItself()
{
    return pageWriter(paintShading, axialShading())
        .object(5,
            "<< /FunctionType 3 /Domain [0 1] /Functions [5 0 R 5 0 R 5 0 R] /Bounds [.3 .6] /Encode [0 1 0 "
            "1 0 1] >>")
        .file();
}

/// Each function stitches the next one together 200 times.
std::string functionsThatMultiply()
{
    std::string bounds;
    for (int i = 1; i < 200; ++i)
        bounds += std::to_string(i / 200.0) + " ";
    auto writer = pageWriter(paintShading, axialShading());
    for (int i = 5; i < 11; ++i) {
        writer.object(i,
            "<< /FunctionType 3 /Domain [0 1] /Functions [" + repeated(std::to_string(i + 1) + " 0 R ", 200)
                + "] /Bounds [" + bounds + "] /Encode [" + repeated("0 1 ", 200) + "] >>");
    }
    return writer.object(11, "<< /FunctionType 2 /Domain [0 1] /N 1 >>").file();
}

HostilePDF calculator(const char* name, std::string program)
{
    return {name, [program = std::move(program)] {
                return pageWriter(paintShading, functionShading("0 100 0 100"))
                    .stream(5, program, "/FunctionType 4 /Domain [0 100 0 100] /Range [0 1]")
                    .file();
            }};
}

HostilePDF sampled(const char* name, const std::string& entries)
{
    return {name,
        [entries] { return pageWriter(paintShading, functionShading()).stream(5, "x", entries).file(); }};
}

HostilePDF shading(const char* name, const std::string& dictionary)
{
    return {name, [dictionary] {
                return pageWriter(repeated("/S sh ", 50),
                    "/Shading << /S << " + dictionary + " /ColorSpace /DeviceGray >> >>")
                    .object(5, "<< /FunctionType 2 /Domain [0 1] /N 1 >>")
                    .file();
            }};
}

/// A mesh of random bytes.
HostilePDF mesh(const char* name, int type, std::size_t bytes, const std::string& more)
{
    return {
        name, [=] {
            return pageWriter(paintShading, "/Shading << /S 5 0 R >>")
                .stream(5, randomBytes(bytes),
                    "/ShadingType " + std::to_string(type)
                        + " /ColorSpace /DeviceRGB /BitsPerCoordinate 8 /BitsPerComponent 8 /BitsPerFlag 8"
                          " /Decode [-100 200 -100 200 0 1 0 1 0 1] "
                        + more)
                .file();
        }};
}

HostilePDF colorSpace(const char* name, const std::string& space)
{
    return {name, [space] {
                return pageWriter("/C cs 1 sc 0 0 9 9 re f", "/ColorSpace << /C " + space + " >>")
                    .object(5, "[/Indexed 5 0 R 255 <00>]")
                    .object(6, "[/Separation /Spot 6 0 R << /FunctionType 2 /Domain [0 1] /N 1 >>]")
                    .object(7, "[/ICCBased 8 0 R]")
                    .stream(8, "x", "/N 3 /Alternate 7 0 R")
                    .file();
            }};
}

HostilePDF text(const char* name, std::string content, std::string font, std::string program = "")
{
    return {name, [content = std::move(content), font = std::move(font), program = std::move(program)] {
                return pageWriter(content, "/Font << /F 5 0 R >>").object(5, font).stream(6, program).file();
            }};
}

} // namespace

std::vector<HostilePDF> hostileResources()
{
    const std::string abc = "BT /F 9 Tf 9 9 Td (abc) Tj ET";
    const std::string helvetica = "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica ";
    const std::string embedded = "/BaseFont /X /FontDescriptor << /Type /FontDescriptor /Flags 4 ";
    return {
        {"function that uses itself", functionThatUsesItself},
        {"functions that multiply", functionsThatMultiply},
        sampled("samples of 60,000 x 60,000",
            "/FunctionType 0 /Domain [0 1 0 1] /Range [0 1] /Size [60000 60000] /BitsPerSample 8"),
        sampled("samples of negative size",
            "/FunctionType 0 /Domain [0 1 0 1] /Range [0 1] /Size [-3 0] /BitsPerSample 7"),
        sampled("samples of 32 dimensions",
            "/FunctionType 0 /Domain [" + repeated("0 1 ", 32) + "] /Range [0 1] /Size [" + repeated("2 ", 32)
                + "] /BitsPerSample 1"),
        calculator("calculator of 8,000 steps", "{ " + repeated("dup mul 1 add sqrt ", 2'000) + "pop }"),
        calculator("calculator of 100,000 braces", repeated("{ ", 100'000)),
        calculator("calculator that fills its stack", "{ " + repeated("dup 99 copy ", 4'000) + "}"),
        calculator("calculator of numbers that are none",
            "{ 0 div 0 0 div add ln -1 sqrt 1e300 1e300 mul cvi -99 bitshift 5 -7 roll 1e9 index }"),
        shading("axial shading without a length",
            "/ShadingType 2 /Coords [5 5 5 5] /Extend [true true] /Function 5 0 R"),
        shading("radial shading of equal circles",
            "/ShadingType 3 /Coords [5 5 9 5 5 9] /Extend [true true] /Function 5 0 R"),
        shading("radial shading of huge and negative circles",
            "/ShadingType 3 /Coords [-1e9 5 -3 1e9 5 1e9] /Extend [true true] /Function 5 0 R"),
        shading("shading of an unknown type", "/ShadingType 99"),
        mesh("triangles of 3 megabytes", 4, 3'000'000, ""),
        mesh("a lattice of one vertex a row", 5, 300'000, "/VerticesPerRow 1"),
        mesh("a lattice of a billion vertices a row", 5, 300'000, "/VerticesPerRow 1000000000"),
        mesh("Coons patches of 3 megabytes", 6, 3'000'000, ""),
        mesh("tensor patches of 3 megabytes", 7, 3'000'000, ""),
        mesh("a mesh of 99 bits", 4, 30'000, "/BitsPerCoordinate 99 /BitsPerComponent 99 /BitsPerFlag 99"),
        colorSpace("palette of itself", "5 0 R"),
        colorSpace("separation of itself", "6 0 R"),
        colorSpace("profile of itself", "7 0 R"),
        colorSpace("colour space named as itself", "/C"),
        colorSpace("colour space of a million components",
            "[/DeviceN [" + repeated("/a ", 100'000) + "] /DeviceRGB 5 0 R]"),
        text("TrueType font of random bytes", abc,
            "<< /Type /Font /Subtype /TrueType " + embedded + "/FontFile2 6 0 R >> >>", randomBytes(5'000)),
        text("Type 1 font of random bytes", abc,
            "<< /Type /Font /Subtype /Type1 " + embedded + "/FontFile 6 0 R >> >>",
            "%!PS-AdobeFont-1.0\n" + randomBytes(5'000)),
        text("compact font of random bytes", abc,
            "<< /Type /Font /Subtype /Type1 " + embedded + "/FontFile3 6 0 R >> >>",
            "\1" + randomBytes(5'000)),
        text("widths that are none", abc,
            helvetica + "/FirstChar -5 /LastChar 2000000000 /Widths [(a) 1e30 -1e30] >>"),
        text("composite font of itself", abc,
            "<< /Type /Font /Subtype /Type0 /Encoding /Identity-H /DescendantFonts [5 0 R] /W [0 1000000000 "
            "5] >>"),
        text("a font of a billion points", "BT /F 1000000000 Tf (abc) Tj 1e9 Tc (abc) Tj 1e9 Tz (abc) Tj ET",
            helvetica + ">>"),
        text("1,300,000 letters", "BT /F 1 Tf " + repeated("(abcdefghijklmnopqrstuvwxyz) Tj ", 50'000) + "ET",
            helvetica + ">>"),
        text("50,000 text clips", repeated("BT /F 9 Tf 7 Tr (abcdefghij) Tj ET ", 50'000) + "0 0 99 99 re f",
            helvetica + ">>"),
    };
}
