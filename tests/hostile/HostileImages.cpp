#include "HostilePDFs.h"
#include "support/PDFWriter.h"

namespace {

constexpr const char* drawImage = "100 0 0 100 0 0 cm /I Do";
constexpr const char* imageName = "/XObject << /I 5 0 R >>";

/// The entries of an image's dictionary.
std::string image(const std::string& width, const std::string& height, const std::string& more = "")
{
    return "/Type /XObject /Subtype /Image /Width " + width + " /Height " + height
        + (more.empty() ? " /ColorSpace /DeviceGray /BitsPerComponent 8 " : " " + more + " ");
}

HostilePDF imagePage(
    const char* name, const std::string& entries, std::string bytes = "123", std::string content = drawImage)
{
    return {name, [=] { return pageWriter(content, imageName).stream(5, bytes, entries).file(); }};
}

std::string deflatedFourTimes()
{
    auto bytes = deflated(std::string(1'000'000, '\0'), 30);
    for (int i = 0; i < 3; ++i)
        bytes = deflated(bytes);
    return pageWriter(drawImage, imageName)
        .rawStream(5, bytes, image("9000", "3000") + "/Filter [" + repeated("/FlateDecode ", 4) + "]")
        .file();
}

std::string filters10000()
{
    return pageWriter(drawImage, imageName)
        .rawStream(5, "313233>", image("9", "3") + "/Filter [" + repeated("/ASCIIHexDecode ", 10'000) + "]")
        .file();
}

std::string imageOf190Megabytes()
{
    return pageWriter(drawImage, imageName)
        .rawStream(
            5, deflated(std::string(1'000'000, '\0'), 192), image("32000", "6000") + "/Filter /FlateDecode")
        .file();
}

std::string runLengthBomb()
{
    return pageWriter(drawImage, imageName)
        .rawStream(5, repeated("\x81z", 4'000'000), image("20000", "20000") + "/Filter /RunLengthDecode")
        .file();
}

std::string maskThatIsTheImage()
{
    return pageWriter(drawImage, imageName)
        .stream(5, std::string(64, 'x'), image("8", "8") + "/SMask 5 0 R /Mask 5 0 R")
        .file();
}

std::string predictorOfABillionColumns()
{
    return pageWriter(drawImage, imageName)
        .stream(5, std::string(1'000, '\2'),
            image("9", "3")
                + "/DecodeParms << /Predictor 15 /Columns 1000000000 /Colors 32 /BitsPerComponent 16 >>")
        .file();
}

std::string truncatedJPEG()
{
    return pageWriter(drawImage, imageName)
        .rawStream(5,
            std::string(
                "\xff\xd8\xff\xc0\x00\x11\x08\xff\xff\xff\xff\x03\x01\x22\x00\x02\x11\x01\x03\x11\x01", 21),
            image("65535", "65535", "/ColorSpace /DeviceRGB /BitsPerComponent 8") + "/Filter /DCTDecode")
        .file();
}

} // namespace

std::vector<HostilePDF> hostileImages()
{
    const std::string many = std::string("q 1 0 0 1 0 0 cm /I Do Q ");
    return {
        {"image of 190 megabytes", imageOf190Megabytes},
        imagePage("image that claims two billion rows",
            image("2000000000", "2000000000", "/ColorSpace /DeviceRGB /BitsPerComponent 8")),
        imagePage("image of negative size", image("-5", "-5")),
        imagePage("image of no size", image("0", "0")),
        imagePage("image of 99 bits", image("9", "9", "/ColorSpace /DeviceRGB /BitsPerComponent 99")),
        imagePage("image without data", image("4000", "4000"), ""),
        imagePage("image of a palette that is too short",
            image("64", "64", "/ColorSpace [/Indexed /DeviceRGB 255 <00>] /BitsPerComponent 8"),
            std::string(4'096, '\xff')),
        imagePage("20,000 times one large image", image("3000", "3000"),
            repeated(std::string(3'000, '\0'), 3'000), repeated("/I Do ", 20'000)),
        imagePage("50,000 small images", image("8", "8"), std::string(64, 'x'), repeated(many, 50'000)),
        imagePage(
            "image of one row and millions of columns", image("4000000", "1"), std::string(4'000'000, 'x')),
        {"mask that is the image", maskThatIsTheImage},
        {"deflated four times", deflatedFourTimes},
        {"10,000 filters", filters10000},
        {"run lengths of half a gigabyte", runLengthBomb},
        {"predictor of a billion columns", predictorOfABillionColumns},
        {"truncated JPEG of 65,535 rows", truncatedJPEG},
        {"50,000 inline images",
            [] {
                return pageWriter(repeated("BI /W 100 /H 100 /CS /G /BPC 8 /F /AHx ID > EI\n", 50'000))
                    .file();
            }},
        {"inline image that claims gigabytes",
            [] { return pageWriter("BI /W 60000 /H 60000 /CS /RGB /BPC 8 ID xyz EI 0 0 9 9 re f").file(); }},
        {"inline image without an end",
            [] { return pageWriter("BI /W 9 /H 9 /F /Fl ID " + repeated("EI", 500'000)).file(); }},
    };
}
