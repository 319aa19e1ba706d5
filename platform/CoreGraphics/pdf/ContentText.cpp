#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/pdf/ContentInterpreter.h"
#include "CoreGraphics/pdf/PDFFont.h"

#include <algorithm>

namespace {

// The render modes come in fours: fill, stroke, both, neither; from 4 on they add to the clip too.

bool fills(int renderMode)
{
    return renderMode % 4 == 0 || renderMode % 4 == 2;
}

bool strokes(int renderMode)
{
    return renderMode % 4 == 1 || renderMode % 4 == 2;
}

bool clips(int renderMode)
{
    return renderMode >= 4;
}

constexpr int kInvisible = 3;

/// Characters of a string that cost as much as an operator.
constexpr std::size_t kCharactersPerOperator = 8;

} // namespace

/// What an operator paints: the outlines of all its glyphs are one path, so that overlapping ones do not show
/// through.
struct ContentInterpreter::TextPaths {
    explicit TextPaths(int renderMode)
        : page(fills(renderMode) || clips(renderMode) ? adopt(CGPathCreateMutable()) : nullptr)
        , user(strokes(renderMode) ? adopt(CGPathCreateMutable()) : nullptr)
    {
    }

    RetainPtr<CGPath> page; ///< in page space, to fill and clip; null when the render mode does neither
    RetainPtr<CGPath> user; ///< in user space, to stroke; null when the render mode does not
};

void ContentInterpreter::beginText()
{
    _stream->textMatrix = CGAffineTransformIdentity;
    _stream->lineMatrix = CGAffineTransformIdentity;
    _stream->textClip = nullptr;
}

void ContentInterpreter::endText()
{
    // Text without outlines, such as blanks, does not clip.
    if (const auto clip = std::exchange(_stream->textClip, nullptr); clip && !clip->isEmpty())
        clipToPath(clip, false);
}

void ContentInterpreter::setCharacterSpacing()
{
    _state.text.characterSpacing = number(0);
}

void ContentInterpreter::setWordSpacing()
{
    _state.text.wordSpacing = number(0);
}

void ContentInterpreter::setHorizontalScale()
{
    _state.text.horizontalScale = number(0) / 100;
}

void ContentInterpreter::setLeading()
{
    _state.text.leading = number(0);
}

void ContentInterpreter::setFont()
{
    if (operand(1).isName())
        setFont(resource("Font", operand(1).text), number(0));
}

void ContentInterpreter::setFont(const PDFObject& dictionary, double size)
{
    _state.text.size = size;
    _state.text.font = dictionary.isDictionary() ? PDFFont::make(dictionary, _recording) : nullptr;
    if (!_state.text.font)
        _recording.notDrawn("text in a font that does not exist is not drawn");
}

void ContentInterpreter::setRenderMode()
{
    if (const double mode = number(0); mode >= 0 && mode <= 7)
        _state.text.renderMode = int(mode);
}

void ContentInterpreter::setRise()
{
    _state.text.rise = number(0);
}

void ContentInterpreter::moveLine()
{
    moveLine(number(0), number(1));
}

void ContentInterpreter::moveLine(double x, double y)
{
    const auto matrix = CGAffineTransformTranslate(_stream->lineMatrix, x, y);
    if (isUsable(matrix))
        _stream->lineMatrix = _stream->textMatrix = matrix;
}

void ContentInterpreter::moveLineAndSetLeading()
{
    _state.text.leading = -number(1);
    moveLine();
}

void ContentInterpreter::setTextMatrix()
{
    _stream->lineMatrix = {number(0), number(1), number(2), number(3), number(4), number(5)};
    _stream->textMatrix = _stream->lineMatrix;
}

void ContentInterpreter::nextLine()
{
    moveLine(0, -_state.text.leading);
}

void ContentInterpreter::showText()
{
    if (!operand().isString())
        return;
    TextPaths paths(_state.text.renderMode);
    showString(operand().text, paths);
    paintText(paths);
}

void ContentInterpreter::showTextWithOffsets()
{
    if (!operand().isArray())
        return;
    TextPaths paths(_state.text.renderMode);
    // The token stays where it is while procedures of glyphs use operands of their own.
    for (const ContentToken& item : operand().items) {
        if (item.isString())
            showString(item.text, paths);
        else if (item.isNumber())
            moveText(-item.number / 1000 * _state.text.size);
    }
    paintText(paths);
}

void ContentInterpreter::showTextOnNextLine()
{
    if (!operand().isString())
        return;
    nextLine();
    showText();
}

void ContentInterpreter::showTextOnNextLineWithSpacing()
{
    if (!operand(2).isNumber() || !operand(1).isNumber() || !operand().isString())
        return;
    _state.text.wordSpacing = operand(2).number;
    _state.text.characterSpacing = operand(1).number;
    showTextOnNextLine();
}

void ContentInterpreter::showString(std::string_view string, TextPaths& paths)
{
    const auto font = _state.text.font; // a procedure may set another one
    if (!font)
        return;
    _recording.budget().spendOperators(string.size() / kCharactersPerOperator);
    while (!string.empty()) {
        const PDFFont::Code code = font->firstCode(string);
        string.remove_prefix(std::min(code.byteCount, string.size()));
        showGlyph(*font, code, paths);
    }
}

void ContentInterpreter::showGlyph(const PDFFont& font, PDFFont::Code code, TextPaths& paths)
{
    const PDFTextState& text = _state.text;
    const bool isVertical = font.isVertical();
    const auto vertical = isVertical ? font.verticalMetrics(code.value) : PDFFont::VerticalMetrics();
    if (!isHidden() && text.renderMode != kInvisible) {
        const CGAffineTransform textFromEm{text.size * text.horizontalScale, 0, 0, text.size, 0, text.rise};
        auto userFromEm = CGAffineTransformConcat(textFromEm, _stream->textMatrix);
        if (isVertical)
            userFromEm = CGAffineTransformTranslate(userFromEm, -vertical.origin.x, -vertical.origin.y);
        if (font.hasProcedures())
            runGlyph(font.procedure(code.value, _recording), userFromEm);
        else
            addOutline(font.shape(code.value, _recording), userFromEm, paths);
    }
    const double advance = isVertical ? vertical.advance : font.advance(code.value, _recording);
    moveText(advance * _state.text.size + _state.text.characterSpacing
        + (code.isWordSpace() ? _state.text.wordSpacing : 0));
}

void ContentInterpreter::moveText(double distance)
{
    const bool isVertical = _state.text.font && _state.text.font->isVertical();
    const auto matrix = CGAffineTransformTranslate(_stream->textMatrix,
        isVertical ? 0 : distance * _state.text.horizontalScale, isVertical ? distance : 0);
    if (isUsable(matrix))
        _stream->textMatrix = matrix;
}

void ContentInterpreter::addOutline(
    const PDFFont::Shape& shape, const CGAffineTransform& userFromEm, TextPaths& paths)
{
    if (!shape.outline)
        return;
    const auto userFromOutline = CGAffineTransformScale(userFromEm, shape.widthScale, 1);
    const auto pageFromOutline = CGAffineTransformConcat(userFromOutline, _state.pageFromUser);
    if (!isUsable(userFromOutline) || !isUsable(pageFromOutline))
        return;
    const std::size_t points = shape.outline->points().size();
    if (paths.page) {
        _recording.budget().spendPoints(points);
        CGPathAddPath(paths.page, &pageFromOutline, shape.outline);
    }
    if (paths.user) {
        _recording.budget().spendPoints(points);
        CGPathAddPath(paths.user, &userFromOutline, shape.outline);
    }
}

void ContentInterpreter::paintText(const TextPaths& paths)
{
    const int renderMode = _state.text.renderMode;
    if (fills(renderMode) && !paths.page->isEmpty())
        fillPath(paths.page, false);
    if (paths.user && !paths.user->isEmpty())
        strokePath(paths.user, _state.pageFromUser);
    if (!clips(renderMode))
        return;
    if (!_stream->textClip)
        _stream->textClip = adopt(CGPathCreateMutable());
    CGPathAddPath(_stream->textClip, nullptr, paths.page);
}

void ContentInterpreter::runGlyph(const PDFFont::Procedure& procedure, const CGAffineTransform& userFromEm)
{
    const auto userFromGlyph = CGAffineTransformConcat(procedure.emFromGlyph, userFromEm);
    const auto pageFromGlyph = CGAffineTransformConcat(userFromGlyph, _state.pageFromUser);
    if (!procedure.content || !isUsable(pageFromGlyph))
        return;
    const PDFRecording::StreamUse use(_recording, procedure.stream);
    if (!use) {
        _recording.notDrawn("a glyph that shows itself is not drawn");
        return;
    }
    pushState();
    _state.pageFromUser = pageFromGlyph;
    Stream stream(*procedure.content, procedure.resources.isDictionary() ? procedure.resources : resources());
    stream.ignoresColors = _stream->ignoresColors;
    stream.isGlyph = true;
    run(stream);
    popState();
}

void ContentInterpreter::setGlyphWidthAndBox()
{
    if (!_stream->isGlyph)
        return;
    // The glyph is a shape without a colour, to be painted as other text is.
    _stream->ignoresColors = true;
    _state.stroke = _state.fill;
    _state.strokeAlpha = _state.fillAlpha;
}
