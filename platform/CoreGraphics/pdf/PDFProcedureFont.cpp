#include "CoreGraphics/pdf/FontEncoding.h"
#include "CoreGraphics/pdf/FontWidths.h"
#include "CoreGraphics/pdf/PDFFontKinds.h"
#include "CoreGraphics/pdf/PDFRecording.h"

namespace {

/// A Type 3 font.
class ProcedureFont final : public PDFFont {
public:
    explicit ProcedureFont(const PDFObject& dictionary)
        : _encoding(dictionary["Encoding"], std::nullopt)
        , _widths(dictionary, dictionary["FontDescriptor"])
        , _procedures(dictionary["CharProcs"])
        , _resources(dictionary["Resources"])
        , _emFromGlyph(dictionary["FontMatrix"].matrix().value_or(CGAffineTransformMakeScale(0.001, 0.001)))
    {
    }

    double advance(std::uint32_t code, PDFRecording&) const override
    {
        // The widths of these fonts are in glyph space.
        return _widths[std::uint8_t(code)] * 1000 * _emFromGlyph.a;
    }
    Shape shape(std::uint32_t, PDFRecording&) const override { return {}; }
    bool hasProcedures() const override { return true; }
    Procedure procedure(std::uint32_t code, PDFRecording& recording) const override
    {
        const std::string name(_encoding.glyphName(std::uint8_t(code)));
        const PDFObject stream = name.empty() ? PDFObject() : _procedures[name];
        if (!stream.isStream())
            return {};
        auto& content = _contents[std::uint8_t(code)];
        if (!content)
            content = std::make_unique<std::string>(recording.decode(stream));
        return {stream, content.get(), _resources, _emFromGlyph};
    }

private:
    FontEncoding _encoding;
    SimpleWidths _widths;
    PDFObject _procedures;
    PDFObject _resources;
    CGAffineTransform _emFromGlyph;
    mutable std::array<std::unique_ptr<const std::string>, 256> _contents; ///< decoded once
};

} // namespace

std::shared_ptr<const PDFFont> makeProcedureFont(const PDFObject& dictionary, PDFRecording&)
{
    return std::make_shared<ProcedureFont>(dictionary);
}
