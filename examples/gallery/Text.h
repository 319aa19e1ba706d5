#pragma once

#include <CoreGraphics/CGContext.h>
#include <CoreText/CTLine.h>
#include <Foundation/NSString.h>
#include <Foundation/RetainPtr.h>

#include <vector>

/// The look of a text of the gallery. Colours are names for `galleryCGColor`.
struct TextStyle {
    CGFloat size; ///< of the system font
    bool isBold;
    const char* color;
    const char* ground; ///< what the text stands on
};

inline constexpr TextStyle kTitleText{22, true, "zel-menu-fg-lit", "zel-blue-bg"};
inline constexpr TextStyle kWordsText{13, false, "zel-menu-fg", "zel-blue-bg"};
inline constexpr TextStyle kWallText{15, true, "zel-menu-fg-lit", "zel-blue-bg"}; ///< titles of pages
inline constexpr TextStyle kNameText{11, false, "zel-menu-fg", "zel-blue-bg"};    ///< below what it names
inline constexpr TextStyle kCaptionText{12, false, "zel-menu-fg", "zel-button-bg"};
inline constexpr TextStyle kCodeStringText{12, false, "zel-green-highlight", "zel-button-bg"};
inline constexpr TextStyle kCardText{14, false, "zel-white-evenstronger", "zel-button-bg"};
inline constexpr TextStyle kFigureText{44, true, "zel-white-evenstronger", "zel-button-bg"};
inline constexpr TextStyle kListTitleText{15, true, "zel-menu-fg-lit", "zel-button-bg"};
inline constexpr TextStyle kItemText{14, false, "zel-white-evenstronger", "zel-button-bg"};
inline constexpr TextStyle kHoveredItemText{14, false, "zel-white-evenstronger", "gallery-hover"};
inline constexpr TextStyle kSelectedItemText{14, true, "zel-menu-fg-lit", "zel-switch-bg-gray"};
inline constexpr TextStyle kFocusedItemText{14, true, "zel-menu-fg-lit", "gallery-selection"};

/// Every style above.
inline constexpr const TextStyle* kTextStyles[]{&kTitleText, &kWordsText, &kWallText, &kNameText,
    &kCaptionText, &kCodeStringText, &kCardText, &kFigureText, &kListTitleText, &kItemText, &kHoveredItemText,
    &kSelectedItemText, &kFocusedItemText};

/// From one baseline to the next, in whole points.
CGFloat lineHeight(const TextStyle& style);

/// The text as a line in the style, in the colour for the appearance in force.
RetainPtr<const CTLine> makeTextLine(const NSString& text, const TextStyle& style);

CGFloat textWidth(const NSString& text, const TextStyle& style);

/// The lines of a text that is broken at spaces and after hyphens, and anywhere in words wider than a line.
std::vector<NSString> wrappedText(const NSString& text, const TextStyle& style, CGFloat width);

/// The text, if need be shortened and with an ellipsis at its end, so that it is at most that wide.
NSString shortenedText(const NSString& text, const TextStyle& style, CGFloat width);

/// How a label is placed at its point.
enum class LabelPlace {
    FromBaseline,   ///< the baseline starts at the point
    CentredOnPoint, ///< the baseline is at the point's y, its middle at x, to a whole point
    Around,         ///< the glyphs' bounding box is centred on the point
};

/// Draws a line of text.
void drawLabel(CGContextRef context, const NSString& text, CGPoint point, const TextStyle& style,
    LabelPlace place = LabelPlace::FromBaseline);

/// Draws lines from the top down, the first one's baseline at `point`.
void drawLabels(
    CGContextRef context, const std::vector<NSString>& lines, CGPoint point, const TextStyle& style);
