#pragma once

#include <Foundation/NSDictionary.h>

#include <span>
#include <vector>

class NSMutableAttributedString;

/// The name of an attribute, such as `NSFontAttributeName` in <AppKit/NSStringAttributes.h>.
using NSAttributedStringKey = NSString;

/// A text whose parts have attributes: font, colour, letter spacing and whatever else a name is made up for.
///
/// Indexes and ranges count UTF-16 code units. Neighbouring units with equal attributes are one run, however
/// they came together. A text that is one run is one allocation, so that it can be made for each drawing:
///
///     const auto label = make<NSAttributedString>("42 %", attributes);
///     for (const auto& run : label->attributeRuns())
///         layOut(run.range, run.attributes->objectForKey(NSFontAttributeName));
///
/// Immutable, if it is not an NSMutableAttributedString; then any thread, as far as the attributes are.
class KORVID_EXPORT NSAttributedString : public NSObject {
public:
    /// A part of the text as long as the attributes are equal; never empty.
    struct Run {
        NSRange range;
        RetainPtr<NSDictionary> attributes; ///< never null
    };

    /// Without attributes. A null text counts as empty.
    explicit NSAttributedString(NSString string = "");
    /// The same attributes for the whole text; null for none. They are retained, or copied if they can
    /// change.
    NSAttributedString(NSString string, RetainPtr<NSDictionary> attributes);
    /// The same text with the same attributes; an empty one for null.
    explicit NSAttributedString(const NSAttributedString* attributedString);

    /// The text alone; never null.
    const NSString& string() const { return _string; }
    NSUInteger length() const { return _string.length(); }

    /// The runs from beginning to end, one behind the other; none for an empty text. Valid until the text
    /// changes or goes.
    std::span<const Run> attributeRuns() const
    {
        return _runs.empty() ? std::span(&_onlyRun, length() > 0 ? 1 : 0) : std::span(_runs);
    }

    /// The attributes of the unit at an index, empty if it has none; never null. Borrowed, until the text
    /// changes or goes. `effectiveRange`, if not null, is set to the run around the index. Raises
    /// NSRangeException when there is no such index, which is every index of an empty text.
    NSDictionary* attributesAtIndex(NSUInteger index, NSRange* effectiveRange = nullptr) const;
    /// One of these attributes; null when there is none of that name. The range is that of the whole run,
    /// with all its attributes. Raises as above.
    NSObject* attributeAtIndex(
        const NSAttributedStringKey& name, NSUInteger index, NSRange* effectiveRange = nullptr) const;

    /// The units of a range with their attributes. Raises NSRangeException when the range reaches beyond the
    /// end.
    RetainPtr<NSAttributedString> attributedSubstringFromRange(NSRange range) const;

    /// One that stays as it is now: the same object, unless it can change.
    virtual RetainPtr<NSAttributedString> copy() const;
    /// Another one with the same text and attributes, which can change.
    RetainPtr<NSMutableAttributedString> mutableCopy() const;

    /// True for another one with the same text and equal attributes, whether it can change or not.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// The text of each run, followed by its attributes in braces.
    NSString description() const override;

protected:
    ~NSAttributedString() override;

    /// Raises NSRangeException when the range reaches beyond the end.
    void requireRange(NSRange range) const;
    /// Becomes this text with these runs, which lie one behind the other and reach to its end.
    void assign(NSString string, std::vector<Run> runs);

private:
    NSString _string;
    Run _onlyRun{};         ///< in use while `_runs` is empty and the text is not
    std::vector<Run> _runs; ///< two at least, or empty
};

/// An attributed text that can change. One thread at a time.
///
/// A range that reaches beyond the end raises NSRangeException, and nothing changes. An empty range changes
/// no attributes.
class KORVID_EXPORT NSMutableAttributedString : public NSAttributedString {
public:
    using NSAttributedString::NSAttributedString;

    /// These take the place of all attributes in the range; null for none.
    void setAttributes(RetainPtr<NSDictionary> attributes, NSRange range);
    /// Retains the value, which takes the place of one of that name; other attributes stay. A null name or
    /// value raises NSInvalidArgumentException.
    void addAttribute(const NSAttributedStringKey& name, RetainPtr<NSObject> value, NSRange range);
    /// The same for each of these; null adds nothing.
    void addAttributes(const NSDictionary* attributes, NSRange range);
    /// Where there is none of that name, nothing changes.
    void removeAttribute(const NSAttributedStringKey& name, NSRange range);

    /// Puts a text in the place of a range; null and the empty text delete it. The new units take the
    /// attributes of the first one replaced; for an empty range those of the unit before it, or at the
    /// beginning of the text those of the first unit.
    void replaceCharactersInRange(NSRange range, const NSString& string);
    /// The same with a text that has its own attributes. It may be this one.
    void replaceCharactersInRange(NSRange range, const NSAttributedString* attributedString);
    /// Puts a text with its own attributes at the end, which may be this one; null adds nothing.
    void appendAttributedString(const NSAttributedString* attributedString);

    /// A new object.
    RetainPtr<NSAttributedString> copy() const override;

protected:
    ~NSMutableAttributedString() override;

private:
    template <class Change> void changeAttributes(NSRange range, const Change& changed);
    void replace(NSRange range, const NSString& string, std::span<const Run> runs);
};

/// Core Foundation's name for the same object.
using CFAttributedStringRef = const NSAttributedString*;
