#include "CoreGraphics/pdf/ContentInterpreter.h"
#include "CoreGraphics/pdf/PDFFile.h"
#include "CoreGraphics/pdf/PDFImage.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct Abbreviation {
    std::string_view shortName;
    std::string_view longName;
};

constexpr std::array kKeys{
    Abbreviation{"BPC", "BitsPerComponent"},
    Abbreviation{"CS", "ColorSpace"},
    Abbreviation{"D", "Decode"},
    Abbreviation{"DP", "DecodeParms"},
    Abbreviation{"F", "Filter"},
    Abbreviation{"H", "Height"},
    Abbreviation{"I", "Interpolate"},
    Abbreviation{"IM", "ImageMask"},
    Abbreviation{"W", "Width"},
};
constexpr std::array kColorSpaces{
    Abbreviation{"CMYK", "DeviceCMYK"},
    Abbreviation{"G", "DeviceGray"},
    Abbreviation{"I", "Indexed"},
    Abbreviation{"RGB", "DeviceRGB"},
};
constexpr std::array kFilters{
    Abbreviation{"A85", "ASCII85Decode"},
    Abbreviation{"AHx", "ASCIIHexDecode"},
    Abbreviation{"CCF", "CCITTFaxDecode"},
    Abbreviation{"DCT", "DCTDecode"},
    Abbreviation{"Fl", "FlateDecode"},
    Abbreviation{"LZW", "LZWDecode"},
    Abbreviation{"RL", "RunLengthDecode"},
};

/// The name itself when it is none of the abbreviations.
std::string expanded(const std::string& name, std::span<const Abbreviation> abbreviations)
{
    const auto found = std::ranges::find(abbreviations, name, &Abbreviation::shortName);
    return found != abbreviations.end() ? std::string(found->longName) : name;
}

/// Expands a name, or the names in an array.
void expandNames(ContentToken& token, std::span<const Abbreviation> abbreviations)
{
    if (token.isName())
        token.text = expanded(token.text, abbreviations);
    for (ContentToken& item : token.items)
        expandNames(item, abbreviations);
}

/// An array of `size` elements, missing ones null; another object is the first element.
PDFObject arrayOf(const PDFObject& object, std::size_t size)
{
    std::vector<PDFObject> items(size);
    for (std::size_t i = 0; i < size; ++i)
        items[i] = object.isArray() ? object.at(i) : i == 0 ? object : PDFObject();
    return PDFObject::makeArray(items);
}

/// Bytes that data compressed to noise rarely has in a row.
bool isText(std::string_view bytes)
{
    return std::ranges::all_of(
        bytes, [](char c) { return (c >= ' ' && c <= '~') || c == '\n' || c == '\r' || c == '\t'; });
}

/// Where the operator EI lies: from white space, or from `from`, to white space or the end. The end of the
/// content without one.
std::size_t findEndOfImage(std::string_view content, std::size_t from)
{
    constexpr std::size_t kCheckedBytes = 12; // of the operators behind it
    for (std::size_t at = content.find("EI", from); at != std::string_view::npos;
         at = content.find("EI", at + 1)) {
        const bool startsWord = at == from || ContentLexer::isSpace(content[at - 1]);
        const bool endsWord = at + 2 == content.size() || ContentLexer::isSpace(content[at + 2]);
        if (startsWord && endsWord && isText(content.substr(at + 2, kCheckedBytes)))
            return at;
    }
    return content.size();
}

} // namespace

PDFObject ContentInterpreter::readInlineDictionary()
{
    std::map<std::string, PDFObject> entries;
    ContentToken key;
    ContentToken value;
    const auto isStart = [](const ContentToken& token) {
        return token.kind == ContentToken::Kind::Operator && token.text == "ID";
    };
    while (_stream->lexer.next(key) && !isStart(key)) {
        if (!key.isName())
            continue;
        if (!_stream->lexer.next(value) || isStart(value))
            break;
        const std::string name = expanded(key.text, kKeys);
        if (name == "ColorSpace")
            expandNames(value, kColorSpaces);
        else if (name == "Filter")
            expandNames(value, kFilters);
        entries[name] = objectOf(value);
    }
    return PDFObject::makeDictionary(entries);
}

/// Nothing where the length does not follow from the dictionary.
std::optional<std::size_t> ContentInterpreter::lengthOfInlineData(const PDFObject& dictionary)
{
    const bool isStencil = dictionary["ImageMask"].boolean();
    const auto space =
        isStencil ? nullptr : PDFColorSpace::make(dictionary["ColorSpace"], resources(), _recording);
    if (!dictionary["Filter"].isNull() || (!space && !isStencil))
        return std::nullopt;
    const double bits = isStencil ? 1 : dictionary["BitsPerComponent"].number() * double(space->components());
    const double bytes = std::ceil(dictionary["Width"].number() * bits / 8) * dictionary["Height"].number();
    return bytes >= 0 && bytes < 1e9 ? std::optional(std::size_t(bytes)) : std::nullopt;
}

PDFImageData ContentInterpreter::readInlineImage()
{
    const PDFObject dictionary = readInlineDictionary();
    ContentLexer& lexer = _stream->lexer;
    const std::string_view content = lexer.content();
    std::size_t start = lexer.position();
    // One white space belongs to ID.
    if (content.substr(start).starts_with("\r\n"))
        start += 2;
    else if (start < content.size() && ContentLexer::isSpace(content[start]))
        ++start;
    const auto length = lengthOfInlineData(dictionary);
    const std::size_t end = findEndOfImage(content, std::min(start + length.value_or(0), content.size()));
    lexer.setPosition(end + 2);

    PDFImageData data;
    data.dictionary = dictionary;
    data.bytes = content.substr(start, length.value_or(end - start));
    _recording.budget().spendDecodedBytes(data.bytes.size());
    const PDFObject filter = dictionary["Filter"];
    if (filter.isNull())
        return data;
    const std::size_t filters = filter.isArray() ? filter.size() : 1;
    PDFRecording::Stream decoded = _recording.decodeImage(_recording.file().makeStream(
        data.bytes, arrayOf(filter, filters), arrayOf(dictionary["DecodeParms"], filters)));
    data.bytes = std::move(decoded.bytes);
    data.pictureFilter = std::move(decoded.lastFilter);
    data.filterParameters = decoded.parms;
    return data;
}
