#pragma once

#include <map>
#include <string>
#include <string_view>

/// Bytes compressed as the filter FlateDecode expects them.
std::string deflated(std::string_view bytes);
/// The bytes `times` over, compressed without holding them all.
std::string deflated(std::string_view bytes, std::size_t times);

/// A PDF file put together object by object. Checks nothing: what the objects say is the caller's affair,
/// only the cross-reference table and the lengths of streams are right.
class PDFWriter {
public:
    /// Object `number` is `body`, a dictionary, an array or anything else.
    PDFWriter& object(int number, std::string body);
    /// A compressed stream with more entries for its dictionary.
    PDFWriter& stream(int number, std::string_view bytes, std::string_view entries = "");
    /// A stream of bytes that are compressed already, or in no filter: `entries` has to name the filter.
    PDFWriter& rawStream(int number, std::string_view bytes, std::string_view entries);
    /// Entries for the trailer in addition to Size and Root.
    PDFWriter& trailer(std::string entries);

    /// The file. Object 1 is the catalogue.
    std::string file() const;

private:
    std::map<int, std::string> _objects;
    std::string _trailer;
};

/// A writer that has a catalogue, a page tree and one page (objects 1 to 3) of 100 x 100 points with the
/// content as object 4. Objects from 5 on are free.
PDFWriter pageWriter(
    std::string_view content, std::string_view resources = "", std::string_view mediaBox = "0 0 100 100");
/// Like the function above, with a content that is compressed already.
PDFWriter pageWriterWithDeflatedContent(std::string_view content, std::string_view resources = "");
