#include "SnippetView.h"

#include "Page.h"
#include "Text.h"

#include <AppKit/NSFont.h>
#include <AppKit/NSPasteboard.h>
#include <Foundation/NSAttributedString.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

constexpr CGFloat kCodeSize = 12, kCodeLine = 17;
/// Between the sides of the card and the code.
constexpr CGFloat kCodeMargin = 16;
/// Above the first line, with the title and the button.
constexpr CGFloat kHeader = 48;
/// So high that the baseline of the title is at a whole point.
constexpr NSSize kCopySize{76, 25};
constexpr CFTimeInterval kCopiedSeconds = 1.5;

/// The first of these fonts that is installed, else the system font.
RetainPtr<NSFont> codeFont()
{
    static const auto font = [] {
        for (const char* name : {"Liberation Mono", "DejaVu Sans Mono", "Noto Sans Mono", "Nimbus Mono PS"}) {
            if (auto found = NSFont::fontWithName(name, kCodeSize))
                return found;
        }
        return NSFont::systemFontOfSize(kCodeSize);
    }();
    return font;
}

/// The width of a character.
CGFloat codeAdvance()
{
    static const CGFloat advance = [] {
        const auto attributes = make<NSDictionary>(NSDictionary::Map{{kCTFontAttributeName, codeFont()}});
        const auto string = make<NSAttributedString>("0", attributes);
        const auto line = adopt(CTLineCreateWithAttributedString(string));
        return CTLineGetTypographicBounds(line, nullptr, nullptr, nullptr);
    }();
    return advance;
}

const char* colorOf(CodeSpan::Kind kind)
{
    switch (kind) {
    case CodeSpan::Kind::String:
        return kCodeStringText.color;
    case CodeSpan::Kind::Comment:
        return kCaptionText.color;
    case CodeSpan::Kind::Plain:
        break;
    }
    return kCardText.color;
}

std::vector<NSString> codeLines(const NSString& code)
{
    std::vector<NSString> lines;
    std::u16string_view rest = code.view();
    while (!rest.empty()) {
        const auto end = std::min(rest.find(u'\n'), rest.size());
        lines.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return lines;
}

/// The lines as they are drawn in a card of that width.
std::vector<NSString> drawnLines(const NSString& code, CGFloat width)
{
    const auto columns = std::size_t(std::max(20.0, std::floor((width - 2 * kCodeMargin) / codeAdvance())));
    std::vector<NSString> drawn;
    for (const NSString& line : codeLines(code)) {
        for (auto& piece : wrappedCode(line, columns))
            drawn.push_back(std::move(piece));
    }
    return drawn;
}

void drawCodeLine(CGContextRef context, const NSString& line, CGPoint point)
{
    const auto string = make<NSMutableAttributedString>(line);
    string->addAttribute(kCTFontAttributeName, codeFont(), {0, line.length()});
    for (const CodeSpan& span : codeSpans(line))
        string->addAttribute(kCTForegroundColorAttributeName, box(galleryCGColor(colorOf(span.kind))),
            {span.begin, span.length});
    const auto drawn = adopt(CTLineCreateWithAttributedString(string));
    CGContextSetTextPosition(context, point.x, point.y);
    CTLineDraw(drawn, context);
}

/// The end of the literal that starts at `begin` with its quote.
std::size_t endOfLiteral(std::u16string_view line, std::size_t begin)
{
    const char16_t quote = line[begin];
    std::size_t end = begin + 1;
    while (end < line.size() && line[end] != quote)
        end += line[end] == u'\\' ? 2 : 1;
    return std::min(end + 1, line.size());
}

} // namespace

std::vector<CodeSpan> codeSpans(const NSString& line)
{
    using Kind = CodeSpan::Kind;
    const std::u16string_view text = line.view();
    std::vector<CodeSpan> spans;
    const auto add = [&](Kind kind, std::size_t begin, std::size_t end) {
        if (end > begin)
            spans.push_back({kind, begin, end - begin});
    };
    std::size_t plain = 0, at = 0;
    while (at < text.size()) {
        if (text.substr(at).starts_with(u"//")) {
            add(Kind::Plain, plain, at);
            add(Kind::Comment, at, text.size());
            return spans;
        }
        if (text[at] != u'"' && text[at] != u'\'') {
            ++at;
            continue;
        }
        add(Kind::Plain, plain, at);
        const std::size_t end = endOfLiteral(text, at);
        add(Kind::String, at, end);
        plain = at = end;
    }
    add(Kind::Plain, plain, at);
    return spans;
}

std::vector<NSString> wrappedCode(const NSString& line, std::size_t columns)
{
    std::u16string rest(line.view());
    const std::size_t indent = std::min(rest.find_first_not_of(u' '), rest.size()) + 4;
    std::vector<NSString> pieces;
    while (rest.size() > columns && indent < columns) {
        const std::size_t blank = rest.rfind(u' ', columns - 1);
        // A break within the indentation would leave a piece without code.
        const bool hasBlank = blank != std::u16string::npos && blank >= indent;
        const std::size_t end = hasBlank ? blank + 1 : columns;
        pieces.emplace_back(rest.substr(0, hasBlank ? blank : end));
        rest = std::u16string(indent, u' ') + rest.substr(end);
    }
    pieces.emplace_back(rest);
    return pieces;
}

SnippetView::SnippetView(NSString code)
    : _code(std::move(code))
    , _copyButton(NSButton::buttonWithTitle("Copy", this, selector<&SnippetView::copy>))
{
    _copyButton->setFrameSize(kCopySize);
    _copyButton->setToolTip("Copies these lines to the clipboard");
    addSubview(_copyButton);
}

SnippetView::~SnippetView()
{
    if (_timer)
        _timer->invalidate();
}

CGFloat SnippetView::naturalWidth() const
{
    std::size_t longest = 0;
    for (const NSString& line : codeLines(_code))
        longest = std::max(longest, std::size_t(line.length()));
    return std::ceil(CGFloat(longest) * codeAdvance()) + 2 * kCodeMargin;
}

CGFloat SnippetView::heightFor(CGFloat width) const
{
    return kHeader + kCodeLine * CGFloat(drawnLines(_code, width).size()) + kCodeMargin;
}

void SnippetView::copy()
{
    NSPasteboard* const pasteboard = NSPasteboard::generalPasteboard();
    pasteboard->clearContents();
    pasteboard->setString(_code, NSPasteboardTypeString);
    _copyButton->setTitle("Copied");
    if (_timer)
        _timer->invalidate();
    _timer = NSTimer::scheduledTimerWithTimeInterval(
        kCopiedSeconds, false, [button = _copyButton](NSTimer*) { button->setTitle("Copy"); });
}

void SnippetView::resizeSubviewsWithOldSize(NSSize)
{
    const NSSize size = bounds().size;
    _copyButton->setFrameOrigin({size.width - 12 - kCopySize.width, size.height - 12 - kCopySize.height});
}

void SnippetView::drawRect(NSRect dirtyRect)
{
    CGContextRef context = ZRGraphics::sharedContext();
    fillGalleryCard(context, bounds());
    const CGFloat top = bounds().size.height;
    drawLabel(context, "Code", {kCodeMargin, top - 29}, kCaptionText);
    CGFloat baseline = top - kHeader - kCodeSize;
    for (const NSString& line : drawnLines(_code, bounds().size.width)) {
        if (baseline - kCodeLine < NSMaxY(dirtyRect) && baseline + kCodeLine > NSMinY(dirtyRect))
            drawCodeLine(context, line, {kCodeMargin, baseline});
        baseline -= kCodeLine;
    }
}
