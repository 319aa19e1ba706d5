#pragma once

#include "CoreGraphics/pdf/ContentLexer.h"
#include "CoreGraphics/pdf/PDFFont.h"
#include "CoreGraphics/pdf/PDFGraphicsState.h"
#include "CoreGraphics/pdf/PDFRecording.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct PDFImage;
struct PDFImageData;

/// Turns content streams into a display list.
///
/// Each operator is a member function, found by name in a table (ContentInterpreter.cpp). The functions lie
/// by subject in ContentPaths.cpp, ContentColors.cpp, ContentForms.cpp and so on. An operator with missing or
/// wrong operands is skipped. All functions may throw PDFLimitExceeded; what was recorded before is a valid
/// list.
class ContentInterpreter {
public:
    /// `initial` is the state in which content starts.
    explicit ContentInterpreter(PDFRecording& recording, PDFGraphicsState initial = {});
    ContentInterpreter(const ContentInterpreter&) = delete;
    ContentInterpreter& operator=(const ContentInterpreter&) = delete;
    ~ContentInterpreter();

    /// Records one content stream, in the current state, which is the same afterwards: what is open at the
    /// end of the stream is closed there. Patterns in it are placed from the space that the user space is at
    /// its start. `ignoresColors` skips the operators that set colours, for uncoloured patterns and glyphs.
    void run(std::string_view content, const PDFObject& resources, bool ignoresColors = false);

    /// What was recorded so far. The interpreter starts a new list.
    std::shared_ptr<const DisplayList> takeList();

    PDFRecording& recording() { return _recording; }
    PDFGraphicsState& state() { return _state; }

    // For the operators of all files.

    /// What one operator may refer to: an entry of a category ("Font") of the current stream's resources.
    PDFObject resource(const char* category, const std::string& name) const;
    /// All of them; null before the first stream runs.
    PDFObject resources() const { return _stream ? _stream->resources : PDFObject(); }

    /// Saves and restores the graphics state, like q and Q, but without their limit.
    void pushState();
    void popState();

    /// Appends an item that is counted.
    void append(DisplayItem item);
    /// Intersects the clip with a path in page space. An empty path leaves nothing.
    void clipToPath(RetainPtr<const CGPath> path, bool isEvenOdd);
    /// Fills a path in page space with the state's fill paint.
    void fillPath(RetainPtr<const CGPath> path, bool isEvenOdd);
    /// Strokes a path in the space that `pageFromPath` maps to page space with the state's stroke paint and
    /// line style, which is in the same space.
    void strokePath(RetainPtr<const CGPath> path, const CGAffineTransform& pageFromPath);
    /// Paints a shape with a colour or a pattern.
    void paintShape(PDFShape shape, const PDFPaint& paint, float alpha);
    /// Paints a shape with a tiling or shading pattern.
    void paintPattern(PDFShape shape, const PDFPaint& paint, float alpha);
    /// The current blend mode and soft mask with an alpha.
    PDFCompositing compositing(float alpha) const;

    /// Records a form XObject in the current state. Refuses forms that contain themselves.
    void drawForm(const PDFObject& form);

private:
    /// Dispatches operators by name.
    struct Operator;
    struct OperatorTable;

    /// What belongs to one content stream while it runs.
    struct Stream {
        Stream(std::string_view content, PDFObject resources)
            : lexer(content)
            , resources(std::move(resources))
        {
        }

        ContentLexer lexer;
        PDFObject resources;
        CGAffineTransform pageFromContent; ///< user space at the start: patterns are placed from there
        bool ignoresColors = false;
        bool isGlyph = false;            ///< of a Type 3 font
        std::size_t bottomOfStack = 0;   ///< states below belong to the streams around
        std::size_t uncountedSaves = 0;  ///< q operators beyond the limit
        std::vector<bool> markedContent; ///< a level each; true where it hides its content
        std::size_t hiddenLevels = 0;
        std::size_t compatibilityLevels = 0; ///< of BX: unknown operators are ignored silently
        enum class PendingClip { None, Winding, EvenOdd } pendingClip = PendingClip::None;
        CGPoint currentPoint{};
        CGPoint subpathStart{};
        // Of text: from BT to ET.
        CGAffineTransform textMatrix = CGAffineTransformIdentity;
        CGAffineTransform lineMatrix = CGAffineTransformIdentity;
        RetainPtr<CGPath> textClip; ///< null unless a render mode adds to the clip
    };

    void run(Stream& stream);
    void runOperators();
    void runOperator(const ContentToken& token);
    bool isHidden() const { return _stream->hiddenLevels > 0; }
    /// An operand from the last: 0 is the last one. The null token beyond the first.
    const ContentToken& operand(std::size_t fromLast = 0) const;
    std::size_t operandCount() const { return _operandCount; }
    /// The numbers of an operator that takes some, in order.
    double number(std::size_t index) const { return _numbers[index]; }
    CGPoint point(std::size_t index) const { return {_numbers[index], _numbers[index + 1]}; }
    /// The numbers among all operands, for operators that take any number of them.
    std::vector<double> numericOperands() const;
    /// An operand as an object of the file.
    static PDFObject objectOf(const ContentToken& token);

    // Graphics state.
    void save();
    void restore();
    void concatenate();
    void concatenate(const CGAffineTransform& transform);
    void setLineWidth();
    void setLineCap();
    void setLineJoin();
    void setMiterLimit();
    void setDash();
    void ignore() { }
    void setExtendedState();
    void applyExtendedState(const PDFObject& parameters);
    void setDash(const std::vector<double>& lengths, double phase);
    void setBlendMode(const PDFObject& nameOrArray);
    void setSoftMask(const PDFObject& mask);
    /// Null when the mask is invalid.
    std::shared_ptr<const PDFSoftMask> makeSoftMask(const PDFObject& mask);

    // Paths.
    void moveTo();
    void lineTo();
    void curveTo();
    void curveFromCurrentPoint();
    void curveToEndPoint();
    void addCurve(CGPoint control1, CGPoint control2, CGPoint end);
    void closePath();
    void rectangle();
    void stroke();
    void closeAndStroke();
    void fill();
    void fillEvenOdd();
    void fillAndStroke();
    void fillEvenOddAndStroke();
    void closeFillAndStroke();
    void closeFillEvenOddAndStroke();
    void endPath();
    void clip();
    void clipEvenOdd();
    enum class FillRule { None, Winding, EvenOdd };
    void paintPath(FillRule rule, bool strokes);

    // Colours.
    void setFillSpace();
    void setStrokeSpace();
    void setFillColor();
    void setStrokeColor();
    void setFillGray();
    void setStrokeGray();
    void setFillRGB();
    void setStrokeRGB();
    void setFillCMYK();
    void setStrokeCMYK();
    void setSpace(PDFPaint& paint);
    void setColor(PDFPaint& paint);
    void setDeviceColor(PDFPaint& paint, const std::shared_ptr<const PDFColorSpace>& space);

    // XObjects, images and shadings.
    void drawObject();
    void runForm(const PDFObject& form);
    /// Records a transparency group: as an item of its own where it does not look the same without.
    void drawGroup(const PDFObject& form);
    void appendGroup(const std::shared_ptr<DisplayList>& group, const PDFCompositing& compositing, CGRect box,
        bool isIsolated);
    void drawImage(const PDFObject& image);
    void drawInlineImage();
    void appendImage(const PDFImage& image);
    void paintStencilWithPattern(const PDFImage& stencil);
    /// Reads from behind BI to behind EI. Without filter, the length of the data follows from the image's
    /// size; otherwise they end where EI stands between white space.
    PDFImageData readInlineImage();
    /// With all names in full.
    PDFObject readInlineDictionary();
    /// Nothing where the length does not follow from the dictionary.
    std::optional<std::size_t> lengthOfInlineData(const PDFObject& dictionary);
    void paintShading();
    void paintShadingPattern(
        PDFShape shape, const PDFPaint& paint, const CGAffineTransform& pageFromPattern, float alpha);
    void paintTiling(
        PDFShape shape, const PDFPaint& paint, const CGAffineTransform& pageFromPattern, float alpha);
    /// The items of a tiling's cell, in pattern space. Null where the cell contains itself.
    std::shared_ptr<const DisplayList> recordCell(
        const PDFObject& pattern, const PDFRGB& color, bool isUncolored);

    // Text.
    void beginText();
    void endText();
    void setCharacterSpacing();
    void setWordSpacing();
    void setHorizontalScale();
    void setLeading();
    void setFont();
    void setRenderMode();
    void setRise();
    void moveLine();
    void moveLineAndSetLeading();
    void setTextMatrix();
    void nextLine();
    void showText();
    void showTextWithOffsets();
    void showTextOnNextLine();
    void showTextOnNextLineWithSpacing();
    void setGlyphWidthAndBox();
    struct TextPaths;
    void setFont(const PDFObject& dictionary, double size);
    void moveLine(double x, double y);
    void showString(std::string_view string, TextPaths& paths);
    void showGlyph(const PDFFont& font, PDFFont::Code code, TextPaths& paths);
    void addOutline(const PDFFont::Shape& shape, const CGAffineTransform& userFromEm, TextPaths& paths);
    void runGlyph(const PDFFont::Procedure& procedure, const CGAffineTransform& userFromEm);
    void paintText(const TextPaths& paths);
    /// Moves the place of the next glyph along the line.
    void moveText(double distance);

    // Marked content and compatibility.
    void beginMarkedContent();
    void beginMarkedContentWithProperties();
    void endMarkedContent();
    void beginCompatibility();
    void endCompatibility();

    /// The soft mask made last: content often selects one repeatedly.
    struct LastMask {
        std::shared_ptr<const PDFSoftMask> mask;
        PDFObject dictionary;
        CGAffineTransform pageFromUser{};
    };

    PDFRecording& _recording;
    PDFGraphicsState _state;
    std::vector<PDFGraphicsState> _stack;
    std::shared_ptr<DisplayList> _list;
    Stream* _stream = nullptr;           ///< the innermost that runs
    std::vector<ContentToken> _operands; ///< their memory is reused: only the first `_operandCount` are meant
    std::size_t _operandCount = 0;
    std::array<double, 6> _numbers{};
    LastMask _lastMask;
    RetainPtr<CGPath> _path; ///< the current path in user space
};
