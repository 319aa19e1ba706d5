#pragma once

#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/PDFObject.h"

#include <concepts>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

class FontFiles;
class PDFFile;

/// What everything that records one page shares: the file, the budget, caches of resources. Used under the
/// file's mutex, and not after the recording.
class PDFRecording {
public:
    /// `pageNumber` counts from 1 and appears in messages.
    PDFRecording(PDFFile& file, std::size_t pageNumber)
        : _file(file)
        , _pageNumber(pageNumber)
    {
    }
    PDFRecording(const PDFRecording&) = delete;
    PDFRecording& operator=(const PDFRecording&) = delete;

    PDFBudget& budget() { return _budget; }
    PDFFile& file() { return _file; }

    /// The bytes of a stream behind its filters. What was decoded before an error counts; empty for anything
    /// but a stream and where a filter is unknown. Throws PDFLimitExceeded.
    std::string decode(const PDFObject& stream);
    /// The bytes of an image's stream, and the filter before which decoding stopped.
    struct Stream {
        std::string bytes;
        std::string lastFilter; ///< DCTDecode, JPXDecode, JBIG2Decode or CCITTFaxDecode; otherwise empty
        PDFObject parms;        ///< parameters of that filter
    };
    /// Decodes up to a filter that compresses pictures only. Otherwise like `decode`.
    Stream decodeImage(const PDFObject& stream);

    /// Logs once a document that a part of the page is not drawn as the file says: "an image is not drawn
    /// (JPXDecode)" becomes "CGPDF: page 2 of icon.pdf: an image is not drawn (JPXDecode)".
    void notDrawn(std::string_view what);

    /// A level of nested content: a form, a pattern, a glyph procedure. Throws PDFLimitExceeded when there
    /// are too many.
    class Nesting {
    public:
        explicit Nesting(PDFRecording& recording)
            : _recording(recording)
        {
            if (_recording._nesting >= kPDFLimits.nesting)
                throw PDFLimitExceeded{"nested forms"};
            ++_recording._nesting;
        }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;
        ~Nesting() { --_recording._nesting; }

    private:
        PDFRecording& _recording;
    };

    /// Marks a stream whose content is being recorded, to refuse forms that contain themselves.
    class StreamUse {
    public:
        StreamUse(PDFRecording& recording, const PDFObject& stream)
            : _recording(recording)
            , _id(stream.id())
            , _isFirst(!_id.isIndirect() || recording._streamsInUse.insert(_id).second)
        {
        }
        StreamUse(const StreamUse&) = delete;
        StreamUse& operator=(const StreamUse&) = delete;
        ~StreamUse()
        {
            if (_isFirst)
                _recording._streamsInUse.erase(_id);
        }
        /// False when the stream is in use already: it must not be recorded inside itself.
        explicit operator bool() const { return _isFirst; }

    private:
        PDFRecording& _recording;
        PDFObjectID _id;
        bool _isFirst;
    };

    /// The resource that `make` returns for `object`, which may be null. An indirect object's is made once a
    /// page.
    template <class Resource, std::invocable Make>
    std::shared_ptr<const Resource> cached(const PDFObject& object, Make make)
    {
        const PDFObjectID id = object.id();
        if (!id.isIndirect())
            return make();
        const std::pair key(static_cast<const void*>(&kTypeOf<Resource>), id);
        if (const auto found = _resources.find(key); found != _resources.end())
            return std::static_pointer_cast<const Resource>(found->second);
        std::shared_ptr<const Resource> resource = make();
        _resources.emplace(key, resource);
        return resource;
    }

    FontFiles& fontFiles();

private:
    template <class Resource> static inline const char kTypeOf = 0; ///< its address stands for the type

    PDFFile& _file;
    std::size_t _pageNumber;
    PDFBudget _budget;
    std::size_t _nesting = 0;
    std::set<PDFObjectID> _streamsInUse;
    std::map<std::pair<const void*, PDFObjectID>, std::shared_ptr<const void>> _resources;
    std::shared_ptr<FontFiles> _fontFiles; ///< null until a font is used
};
