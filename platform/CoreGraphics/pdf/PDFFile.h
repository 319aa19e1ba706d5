#pragma once

#include "CoreGraphics/pdf/PDFObject.h"

#include <CoreGraphics/CGDataProvider.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class QPDF;

/// What a page's dictionary says, inherited entries included.
struct PDFPageProperties {
    PDFObject dictionary;
    PDFObject resources;
    CGRect mediaBox{};
    CGRect cropBox{}; ///< inside the media box
    CGRect bleedBox{};
    CGRect trimBox{};
    CGRect artBox{};
    int rotation = 0; ///< clockwise: 0, 90, 180 or 270 degrees
};

/// An open file: its bytes, its objects and its pages. Objects are read on demand, so that all use of them
/// needs `mutex`.
class PDFFile {
public:
    /// Opens the file in `bytes`, repairing it where needed. `name` appears in messages. Null for anything
    /// but a PDF file with pages, and for a file that needs a password.
    static std::unique_ptr<PDFFile> open(RetainPtr<CGDataProvider> bytes, std::string name);

    PDFFile(const PDFFile&) = delete;
    PDFFile& operator=(const PDFFile&) = delete;
    ~PDFFile();

    std::mutex& mutex() { return _mutex; }
    const std::vector<PDFPageProperties>& pages() const { return _pages; }

    /// The decoded bytes of a stream, at most `most` of them; throws PDFLimitExceeded beyond.
    /// `decodesFilters` is false for the bytes as they are stored (decrypted).
    std::string bytesOf(const PDFObject& stream, bool decodesFilters, std::size_t most) const;
    /// A stream of this file with other filters: `filters` and `parms` are arrays.
    PDFObject makeStream(const std::string& bytes, const PDFObject& filters, const PDFObject& parms);

    /// True unless the optional-content group `group` is off by default. A membership dictionary is visible
    /// when any of its groups is; its policy and visibility expression are not read.
    bool isVisible(const PDFObject& group) const;

    /// Logs "CGPDF: page 2 of icon.pdf: " and `what`, unless `what` was logged before or there were too many
    /// messages. Safe on any thread, without the mutex.
    void logOnce(std::size_t pageNumber, std::string_view what);

private:
    PDFFile(RetainPtr<CGDataProvider> bytes, std::string name);
    void readHiddenGroups();

    std::string _name;
    RetainPtr<CGDataProvider> _bytes;
    std::unique_ptr<QPDF> _pdf;
    std::vector<PDFPageProperties> _pages;
    std::set<PDFObjectID> _hiddenGroups;
    std::mutex _mutex;
    std::mutex _logMutex;
    std::set<std::string, std::less<>> _logged;
};
