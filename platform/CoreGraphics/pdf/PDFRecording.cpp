#include "CoreGraphics/pdf/PDFRecording.h"

#include "CoreGraphics/pdf/FontFile.h"
#include "CoreGraphics/pdf/PDFFile.h"

#include <algorithm>
#include <array>

namespace {

/// The long name of a filter: inline images abbreviate some.
std::string filterName(const PDFObject& filter)
{
    const std::string name = filter.name();
    if (name == "DCT")
        return "DCTDecode";
    return name == "CCF" ? "CCITTFaxDecode" : name;
}

bool isPictureFilter(const std::string& name)
{
    constexpr std::array<std::string_view, 4> kFilters{
        "DCTDecode", "JPXDecode", "JBIG2Decode", "CCITTFaxDecode"};
    return std::find(kFilters.begin(), kFilters.end(), name) != kFilters.end();
}

/// The elements of an array; another object alone.
std::vector<PDFObject> listOf(const PDFObject& object)
{
    std::vector<PDFObject> result;
    for (std::size_t index = 0; index < object.size(); ++index)
        result.push_back(object.at(index));
    if (!object.isArray() && !object.isNull())
        result.push_back(object);
    return result;
}

} // namespace

std::string PDFRecording::decode(const PDFObject& stream)
{
    std::string bytes = _file.bytesOf(stream, true, _budget.decodedBytesLeft());
    _budget.spendDecodedBytes(bytes.size());
    if (bytes.empty() && stream["Length"].number() > 0)
        notDrawn("a stream cannot be decoded");
    return bytes;
}

PDFRecording::Stream PDFRecording::decodeImage(const PDFObject& stream)
{
    auto filters = listOf(stream["Filter"]);
    const auto picture = std::find_if(filters.begin(), filters.end(),
        [](const PDFObject& filter) { return isPictureFilter(filterName(filter)); });
    if (picture == filters.end())
        return {decode(stream), {}, {}};

    Stream result;
    result.lastFilter = filterName(*picture);
    auto parms = listOf(stream["DecodeParms"]);
    parms.resize(filters.size());
    result.parms = parms[std::size_t(picture - filters.begin())];
    result.bytes = _file.bytesOf(stream, false, _budget.decodedBytesLeft());
    _budget.spendDecodedBytes(result.bytes.size());
    parms.resize(std::size_t(picture - filters.begin()));
    filters.erase(picture, filters.end());
    if (!filters.empty())
        result.bytes = decode(
            _file.makeStream(result.bytes, PDFObject::makeArray(filters), PDFObject::makeArray(parms)));
    return result;
}

void PDFRecording::notDrawn(std::string_view what)
{
    _file.logOnce(_pageNumber, what);
}

FontFiles& PDFRecording::fontFiles()
{
    if (!_fontFiles)
        _fontFiles = std::make_shared<FontFiles>();
    return *_fontFiles;
}
