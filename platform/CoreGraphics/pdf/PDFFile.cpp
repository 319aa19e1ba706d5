#include "CoreGraphics/pdf/PDFFile.h"

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/pdf/LimitedPipeline.h"
#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/PDFPageTree.h"
#include "CoreGraphics/pdf/PDFScreening.h"
#include "CoreGraphics/pdf/RunLengths.h"

#include <Foundation/NSLog.h>

#include <algorithm>
#include <array>
#include <exception>

namespace {

/// Whether all filters of a stream can be decoded. Where qpdf does not know one, it passes on the bytes as
/// they are.
bool knowsFilters(const PDFObject& filters)
{
    constexpr std::array<std::string_view, 11> kNames{"FlateDecode", "Fl", "LZWDecode", "LZW",
        "ASCIIHexDecode", "AHx", "ASCII85Decode", "A85", "RunLengthDecode", "RL", "Crypt"};
    const auto isKnown = [&](const PDFObject& filter) {
        return std::any_of(
            kNames.begin(), kNames.end(), [&](std::string_view name) { return filter.isName(name); });
    };
    for (std::size_t index = 0; index < filters.size(); ++index) {
        if (!isKnown(filters.at(index)))
            return false;
    }
    return filters.isArray() || filters.isNull() || isKnown(filters);
}

/// False for a predictor with rows so long that qpdf would allocate more than the whole page may decode.
bool hasReasonableRows(const PDFObject& parms)
{
    for (const auto& each : parms.isArray() ? std::vector{parms.at(0), parms.at(1), parms.at(2), parms.at(3)}
                                            : std::vector{parms}) {
        const double bits =
            each["Columns"].number(1) * each["Colors"].number(1) * each["BitsPerComponent"].number(8);
        if (bits > double(kPDFLimits.decodedBytes))
            return false;
    }
    return true;
}

/// What qpdf makes of a stream, up to damage in it.
std::string bytesFromQpdf(QPDFObjectHandle stream, qpdf_stream_decode_level_e level, std::size_t most)
{
    CollectingPipeline pipeline(most);
    try {
        stream.pipeStreamData(&pipeline, nullptr, 0, level, true);
    } catch (const std::exception&) {
        // What was decoded before the damage counts.
    }
    return pipeline.takeBytes();
}

/// Decodes a stream with run lengths among its filters, one filter after the other.
std::string bytesOfEachFilter(QPDF& pdf, const PDFObject& stream, std::size_t most)
{
    const PDFObject filters = stream["Filter"];
    const PDFObject parms = stream["DecodeParms"];
    std::size_t left = kPDFLimits.fileBytes + most; // of all filters together
    std::string bytes = bytesFromQpdf(stream.handle(), qpdf_dl_none, left);
    for (std::size_t index = 0; index < std::max<std::size_t>(filters.size(), 1); ++index) {
        left -= bytes.size();
        const std::size_t limit = std::min(most, left);
        const PDFObject filter = filters.isArray() ? filters.at(index) : filters;
        if (hasRunLengths(filter)) {
            bytes = decodedRunLengths(bytes, limit);
        } else {
            auto part = QPDFObjectHandle::newStream(&pdf);
            part.replaceStreamData(
                bytes, filter.handle(), (parms.isArray() ? parms.at(index) : parms).handle());
            bytes = bytesFromQpdf(part, qpdf_dl_specialized, limit);
        }
    }
    return bytes;
}

} // namespace

PDFFile::PDFFile(RetainPtr<CGDataProvider> bytes, std::string name)
    : _name(std::move(name))
    , _bytes(std::move(bytes))
    , _pdf(std::make_unique<QPDF>())
{
}

PDFFile::~PDFFile() = default;

std::unique_ptr<PDFFile> PDFFile::open(RetainPtr<CGDataProvider> bytes, std::string name)
{
    if (!bytes || bytes->size == 0 || bytes->size > kPDFLimits.fileBytes)
        return nullptr;
    const std::string_view content(reinterpret_cast<const char*>(bytes->bytes), bytes->size);
    if (!hasReasonableTables(content))
        return nullptr;
    std::unique_ptr<PDFFile> file(new PDFFile(std::move(bytes), std::move(name)));
    try {
        QPDF& pdf = *file->_pdf;
        pdf.setSuppressWarnings(true);
        pdf.processMemoryFile(file->_name.c_str(), content.data(), content.size());
        if (!hasReasonableObjectStreams(pdf, content.size()))
            return nullptr;
        const PDFObject catalog(pdf.getRoot());
        file->_pages = readPageTree(catalog["Pages"]);
        file->readHiddenGroups();
    } catch (const std::exception&) {
        return nullptr; // damaged beyond repair, or encrypted
    }
    return file->_pages.empty() ? nullptr : std::move(file);
}

std::string PDFFile::bytesOf(const PDFObject& stream, bool decodesFilters, std::size_t most) const
{
    if (!stream.isStream()
        || (decodesFilters && !(knowsFilters(stream["Filter"]) && hasReasonableRows(stream["DecodeParms"]))))
        return {};
    if (decodesFilters && hasRunLengths(stream["Filter"]))
        return bytesOfEachFilter(*_pdf, stream, most);
    return bytesFromQpdf(stream.handle(), decodesFilters ? qpdf_dl_specialized : qpdf_dl_none, most);
}

PDFObject PDFFile::makeStream(const std::string& bytes, const PDFObject& filters, const PDFObject& parms)
{
    auto stream = QPDFObjectHandle::newStream(_pdf.get());
    stream.replaceStreamData(bytes, filters.handle(), parms.handle());
    return PDFObject(stream);
}

void PDFFile::readHiddenGroups()
{
    const PDFObject off = PDFObject(_pdf->getRoot())["OCProperties"]["D"]["OFF"];
    for (std::size_t index = 0; index < off.size(); ++index)
        _hiddenGroups.insert(off.at(index).id());
}

bool PDFFile::isVisible(const PDFObject& group) const
{
    if (_hiddenGroups.empty() || group.isNull())
        return true;
    if (!group["Type"].isName("OCMD"))
        return !_hiddenGroups.contains(group.id());
    const PDFObject groups = group["OCGs"];
    if (!groups.isArray())
        return !_hiddenGroups.contains(groups.id());
    for (std::size_t index = 0; index < groups.size(); ++index) {
        if (!_hiddenGroups.contains(groups.at(index).id()))
            return true;
    }
    return groups.size() == 0;
}

void PDFFile::logOnce(std::size_t pageNumber, std::string_view what)
{
    // Names of the file may contain anything.
    std::string text(what);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    {
        const std::lock_guard lock(_logMutex);
        if (_logged.size() >= kPDFLimits.loggedLines || !_logged.insert(text).second)
            return;
    }
    NSLogMessage(NSString("CGPDF: page " + std::to_string(pageNumber) + " of " + _name + ": " + text));
}
