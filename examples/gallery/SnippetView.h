#pragma once

#include <AppKit/NSButton.h>
#include <Foundation/NSTimer.h>

#include <vector>

/// A card with lines of code, and a button that copies them.
///
/// Lines that are wider than the card continue on further ones, indented. Comments and string literals have
/// colours of their own.
class SnippetView : public NSView {
public:
    explicit SnippetView(NSString code);

    const NSString& code() const { return _code; }
    /// Borrowed.
    NSButton* copyButton() const { return _copyButton.get(); }
    /// The width in which no line needs a further one.
    CGFloat naturalWidth() const;
    /// The height that the card needs at that width.
    CGFloat heightFor(CGFloat width) const;
    /// Puts the code on the general pasteboard, and says so on the button for a while.
    void copy();

    void resizeSubviewsWithOldSize(NSSize oldSize) override;
    void drawRect(NSRect dirtyRect) override;

protected:
    ~SnippetView() override;

private:
    const NSString _code;
    const RetainPtr<NSButton> _copyButton;
    RetainPtr<NSTimer> _timer; ///< until the button has its title again
};

/// A part of a line of code that is drawn in one colour.
struct CodeSpan {
    enum class Kind { Plain, String, Comment };
    Kind kind;
    std::size_t begin, length; ///< in UTF-16 code units

    bool operator==(const CodeSpan&) const = default;
};

/// The parts of a line of C++ from beginning to end, without gaps. String and character literals end in their
/// line.
std::vector<CodeSpan> codeSpans(const NSString& line);

/// A line in pieces of at most so many characters: broken after a space where there is one, further pieces
/// indented by four spaces more than the line.
std::vector<NSString> wrappedCode(const NSString& line, std::size_t columns);
