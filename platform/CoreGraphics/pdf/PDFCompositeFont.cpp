#include "CoreGraphics/pdf/FontFile.h"
#include "CoreGraphics/pdf/FontWidths.h"
#include "CoreGraphics/pdf/PDFFontKinds.h"
#include "CoreGraphics/pdf/PDFRecording.h"

#include <optional>

namespace {

/// A Type 0 font with the Identity encoding: the two bytes of a code are the CID.
class CompositeFont final : public PDFFont {
public:
    CompositeFont(const PDFObject& dictionary, const PDFObject& descendant, PDFRecording& recording)
        : _isVertical(dictionary["Encoding"].isName("Identity-V"))
        , _widths(descendant["W"], 1, recording.budget())
        , _defaultWidth(descendant["DW"].number(1000))
        , _verticalMetrics(descendant["W2"], 3, recording.budget())
    {
        if (const auto defaults = descendant["DW2"].numbers(2); defaults.size() == 2) {
            _defaultOriginY = defaults[0];
            _defaultVerticalAdvance = defaults[1];
        }
        openFile(dictionary, descendant, recording);
        const PDFObject map = descendant["CIDToGIDMap"];
        if (_file && map.isStream() && descendant["Subtype"].isName("CIDFontType2"))
            _glyphsByCID = recording.decode(map);
    }

    Code firstCode(std::string_view string) const override
    {
        const auto byte = [string](std::size_t index) {
            return index < string.size() ? static_cast<unsigned char>(string[index]) : 0u;
        };
        return {byte(0) << 8 | byte(1), 2};
    }

    double advance(std::uint32_t code, PDFRecording&) const override { return width(code) / 1000; }
    bool isVertical() const override { return _isVertical; }
    VerticalMetrics verticalMetrics(std::uint32_t code) const override
    {
        if (const auto stated = _verticalMetrics.find(code); !stated.empty())
            return {stated[0] / 1000, CGPointMake(stated[1] / 1000, stated[2] / 1000)};
        return {_defaultVerticalAdvance / 1000, CGPointMake(width(code) / 2000, _defaultOriginY / 1000)};
    }

    Shape shape(std::uint32_t code, PDFRecording& recording) const override
    {
        if (!_file)
            return {};
        return {_file->glyph(glyphForCID(code, recording), recording.budget()).outline.get()};
    }

private:
    /// Leaves the file null, and logs why, when text in this font cannot be drawn.
    void openFile(const PDFObject& dictionary, const PDFObject& descendant, PDFRecording& recording)
    {
        const std::string text = "text in " + readableFontName(dictionary) + " is not drawn ";
        const PDFObject program = fontProgram(descendant["FontDescriptor"]);
        const PDFObject encoding = dictionary["Encoding"];
        if (!encoding.isName("Identity-H") && !encoding.isName("Identity-V"))
            return recording.notDrawn(
                text + "(CMap " + (encoding.isName() ? encoding.name() : std::string("in the file")) + ")");
        if (program.isNull())
            return recording.notDrawn(text + "(a CID font that the file does not contain)");
        _file = recording.fontFiles().open(program, recording);
        if (!_file)
            recording.notDrawn(text + "(damaged font)");
    }

    double width(std::uint32_t cid) const
    {
        const auto stated = _widths.find(cid);
        return stated.empty() ? _defaultWidth : stated[0];
    }

    std::uint32_t glyphForCID(std::uint32_t cid, PDFRecording& recording) const
    {
        if (!_glyphsByCID)
            return _file->isTrueType() ? cid : _file->glyphForCID(cid, recording.budget());
        const std::size_t index = std::size_t(cid) * 2;
        if (index + 1 >= _glyphsByCID->size())
            return 0;
        const auto byte = [this](std::size_t at) { return static_cast<unsigned char>((*_glyphsByCID)[at]); };
        return std::uint32_t(byte(index) << 8 | byte(index + 1));
    }

    bool _isVertical;
    CIDMetrics _widths;
    double _defaultWidth; // thousandths of an em, like the next ones
    CIDMetrics _verticalMetrics;
    double _defaultOriginY = 880;
    double _defaultVerticalAdvance = -1000;
    std::optional<std::string> _glyphsByCID; ///< two bytes each; none where CIDs are the glyphs' own numbers
    std::shared_ptr<FontFile> _file;
};

} // namespace

std::shared_ptr<const PDFFont> makeCompositeFont(const PDFObject& dictionary, PDFRecording& recording)
{
    return std::make_shared<CompositeFont>(dictionary, dictionary["DescendantFonts"].at(0), recording);
}
