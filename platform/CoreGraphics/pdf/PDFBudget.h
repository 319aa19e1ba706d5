#pragma once

#include <cstddef>

/// What a document may cost. PDF files come from anywhere: without limits, a file of 1 kB can keep a
/// processor busy for hours or fill the memory. Real pages stay far below all of these.
struct PDFLimits {
    std::size_t fileBytes = 64 << 20; ///< larger files do not open
    std::size_t pages = 10'000;       ///< further pages do not exist
    std::size_t pageTreeDepth = 64;   ///< of the page tree, and of a page's ancestors
    std::size_t arrayItems = 100'000; ///< further elements of an array do not exist
    std::size_t loggedLines = 32;     ///< further messages about a document are not logged

    // What recording one page may cost; the rest of the page is left out.
    std::size_t operators = 500'000; ///< starting a content stream counts as `operatorsPerStream`
    std::size_t operatorsPerStream = 50;
    std::size_t items = 100'000;         ///< of the display list, those of forms and patterns included
    std::size_t points = 1'000'000;      ///< of all paths
    std::size_t decodedBytes = 32 << 20; ///< of all streams, behind their filters
    std::size_t imagePixels = 16 << 20;  ///< of all images
    std::size_t functionNodes = 4'096;   ///< functions, those inside others included
    double recordingWork = 2e9;          ///< of colours that are converted, in the units of `drawWork`
    std::size_t nesting = 16;            ///< of forms, patterns, glyph procedures and the like
    std::size_t savedStates = 512;       ///< deeper `q` operators are counted only
    std::size_t operandNesting = 32;     ///< of arrays and dictionaries in a content stream
    std::size_t operands = 512;          ///< of one operator; further ones replace the last

    // What one draw may cost, in units of 0.2 to 0.5 ns; the rest of the page is left out.
    double drawWork = 8e8;
    double drawWorkPerClipPixel = 4'000; ///< more work that each pixel of the clip allows
    double workPerItem = 2'000;
    double workPerStroke = 16'000; ///< more for a stroke, whose outline is made first
    double workPerClip = 60'000;   ///< more for a clip, which may be multiplied by the one before
    double workPerImagePixel = 16; ///< each pixel of an image is read, also where the image is drawn small
    double workPerTile = 6'000;
    double workPerCrossingOfFill = 0.5;  ///< for each pair of crossings in a row of pixels
    double workPerCrossingOfLines = 4;   ///< the same in a stroke of straight lines
    double workPerCrossingOfCurves = 20; ///< the same in a stroke of curves
    double dashes = 20'000;              ///< of one stroke; with more it is solid
    double shortestDash = 0.05; ///< sum of all dashes and gaps in pixels; with less a stroke is solid
    double dashesPerRow = 64;   ///< of pixels, in one stroke; more of them are sorted in each row
    double dashRows = 15'000; ///< of all dashes of a stroke with more of them in a row; with more it is solid
    double workPerDashRow = 40'000; ///< for each of these
};

inline constexpr PDFLimits kPDFLimits;

/// Thrown where a limit is exceeded, and caught where the recording of a page ends. No std::exception, so
/// that libraries which catch those of their callbacks let it pass.
struct PDFLimitExceeded {
    const char* what; ///< the plural of what there are too many of
};

/// What recording one page may still cost. Each function takes its share, and throws PDFLimitExceeded when
/// less is left.
class PDFBudget {
public:
    void spendOperators(std::size_t count) { spend(_operators, count, "operators"); }
    void spendItems(std::size_t count) { spend(_items, count, "items"); }
    void spendPoints(std::size_t count) { spend(_points, count, "points"); }
    void spendDecodedBytes(std::size_t count) { spend(_decodedBytes, count, "decoded bytes"); }
    void spendImagePixels(std::size_t count) { spend(_imagePixels, count, "image pixels"); }
    void spendFunctionNodes(std::size_t count) { spend(_functionNodes, count, "functions"); }
    /// For colours: `work` is what PDFColorSpace::work() says, for each of them.
    void spendWork(double work)
    {
        _work -= work;
        if (!(_work >= 0))
            throw PDFLimitExceeded{"costly colours"};
    }

    std::size_t decodedBytesLeft() const { return _decodedBytes; }
    std::size_t imagePixelsLeft() const { return _imagePixels; }

private:
    static void spend(std::size_t& left, std::size_t count, const char* what)
    {
        if (count > left)
            throw PDFLimitExceeded{what};
        left -= count;
    }

    std::size_t _operators = kPDFLimits.operators;
    std::size_t _items = kPDFLimits.items;
    std::size_t _points = kPDFLimits.points;
    std::size_t _decodedBytes = kPDFLimits.decodedBytes;
    std::size_t _imagePixels = kPDFLimits.imagePixels;
    std::size_t _functionNodes = kPDFLimits.functionNodes;
    double _work = kPDFLimits.recordingWork;
};
