#include "CoreGraphics/PDFPages.h"

#include "CoreGraphics/pdf/DisplayListPlayer.h"
#include "CoreGraphics/pdf/PDFFile.h"
#include "CoreGraphics/pdf/PDFPageContent.h"

#include <mutex>
#include <utility>

namespace {

/// Reads a file with qpdf, and records each page as a display list.
class RecordedPages final : public PDFPages {
public:
    explicit RecordedPages(std::unique_ptr<PDFFile> file)
        : _file(std::move(file))
        , _lists(_file->pages().size())
    {
    }

    std::size_t count() const override { return _file->pages().size(); }
    CGRect box(std::size_t index, CGPDFBox box) const override;
    int rotation(std::size_t index) const override { return _file->pages()[index].rotation; }
    void draw(std::size_t index, CGContextRef context) override;

private:
    struct List {
        std::once_flag recorded;
        std::shared_ptr<const DisplayList> list;
    };

    const DisplayList& list(std::size_t index)
    {
        List& list = _lists[index];
        std::call_once(list.recorded, [&] { list.list = recordPage(*_file, index); });
        return *list.list;
    }

    const std::unique_ptr<PDFFile> _file;
    std::vector<List> _lists; ///< by page
};

CGRect RecordedPages::box(std::size_t index, CGPDFBox box) const
{
    const PDFPageProperties& properties = _file->pages()[index];
    switch (box) {
    case kCGPDFMediaBox:
        return properties.mediaBox;
    case kCGPDFCropBox:
        return properties.cropBox;
    case kCGPDFBleedBox:
        return properties.bleedBox;
    case kCGPDFTrimBox:
        return properties.trimBox;
    case kCGPDFArtBox:
        return properties.artBox;
    }
    return CGRectNull;
}

void RecordedPages::draw(std::size_t index, CGContextRef context)
{
    const DisplayList& recorded = list(index);
    CGContextSaveGState(context);
    DisplayListPlayer player(context);
    player.play(recorded);
    CGContextRestoreGState(context);
    if (player.isExhausted())
        _file->logOnce(index + 1, "the rest of the page is left out: it takes too long to draw");
}

} // namespace

/// Opens the file in `bytes`, which may be null; `name` appears in messages. Null for anything but a PDF file
/// with pages, and for a file that needs a password.
extern "C" KORVID_EXPORT PDFPages* openPDFPages(CGDataProviderRef bytes, const char* name)
{
    auto file = PDFFile::open(bytes, name);
    return file ? new RecordedPages(std::move(file)) : nullptr;
}
