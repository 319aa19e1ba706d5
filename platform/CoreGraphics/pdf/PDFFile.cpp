#include "CoreGraphics/pdf/PDFFile.h"

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/pdf/LimitedPipeline.h"
#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/PDFPageTree.h"
#include "CoreGraphics/pdf/PDFScreening.h"

#include <Foundation/NSLog.h>

#include <algorithm>
#include <array>
#include <exception>

namespace {

/// Whether qpdf decodes all filters of a stream. Where it does not know one, it passes on the bytes as they
/// are.
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
    CollectingPipeline pipeline(most);
    try {
        QPDFObjectHandle handle = stream.handle();
        handle.pipeStreamData(
            &pipeline, nullptr, 0, decodesFilters ? qpdf_dl_specialized : qpdf_dl_none, true);
    } catch (const std::exception&) {
        // What was decoded before the damage counts.
    }
    return pipeline.takeBytes();
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
