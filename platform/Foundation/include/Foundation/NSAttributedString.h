#pragma once

#include <Foundation/NSDictionary.h>

#include <span>
#include <vector>

class NSMutableAttributedString;

/// The name of an attribute, such as `NSFontAttributeName` in <AppKit/NSStringAttributes.h>.
using NSAttributedStringKey = NSString;

/// A string whose parts have attributes: font, colour, letter spacing and any others, identified by names.
///
/// Indexes and ranges count UTF-16 code units. Adjacent units with equal attributes always form one run. A
/// string of one run takes one allocation, so that it can be made for each drawing:
///
///     const auto label = make<NSAttributedString>("42 %", attributes);
///     for (const auto& run : label->attributeRuns())
///         layOut(run.range, run.attributes->objectForKey(NSFontAttributeName));
///
/// Immutable, unless it is an NSMutableAttributedString; then safe on any thread if the attributes are.
class KORVID_EXPORT NSAttributedString : public NSObject {
public:
    /// The longest part of the string around a unit with equal attributes; never empty.
    struct Run {
        NSRange range;                      ///< in code units
        RetainPtr<NSDictionary> attributes; ///< never null
    };

    /// Without attributes. A null string counts as empty.
    explicit NSAttributedString(NSString string = "");
    /// The same attributes for the whole string; null for none. They are retained, or copied if they can
    /// change.
    NSAttributedString(NSString string, RetainPtr<NSDictionary> attributes);
    /// The same string with the same attributes; an empty one for null.
    explicit NSAttributedString(const NSAttributedString* attributedString);

    /// The string alone; never null.
    const NSString& string() const { return _string; }
    /// Number of UTF-16 code units.
    NSUInteger length() const { return _string.length(); }

    /// The runs from beginning to end, without gaps; none for an empty string. Valid until the string changes
    /// or is destroyed.
    std::span<const Run> attributeRuns() const
    {
        return _runs.empty() ? std::span(&_onlyRun, length() > 0 ? 1 : 0) : std::span(_runs);
    }

    /// The attributes of the unit at an index, empty if it has none; never null. Borrowed, until the string
    /// changes or is destroyed. `effectiveRange`, if not null, is set to the run around the index. Raises
    /// NSRangeException when there is no such index, which is every index of an empty string.
    NSDictionary* attributesAtIndex(NSUInteger index, NSRange* effectiveRange = nullptr) const;
    /// One of these attributes; null when there is none of that name. The range is that of the whole run,
    /// with all its attributes. Raises as above.
    NSObject* attributeAtIndex(
        const NSAttributedStringKey& name, NSUInteger index, NSRange* effectiveRange = nullptr) const;

    /// The units in a range with their attributes. Raises NSRangeException when the range reaches beyond the
    /// end.
    RetainPtr<NSAttributedString> attributedSubstringFromRange(NSRange range) const;

    /// An immutable copy: the same object, unless it is mutable.
    virtual RetainPtr<NSAttributedString> copy() const;
    /// A mutable copy.
    RetainPtr<NSMutableAttributedString> mutableCopy() const;

    /// True for another one with the same string and equal attributes, mutable or not.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// The string of each run, followed by its attributes in braces.
    NSString description() const override;

protected:
    ~NSAttributedString() override;

    /// Raises NSRangeException when the range reaches beyond the end.
    void requireRange(NSRange range) const;
    /// Takes this string with these runs, which cover it without gaps.
    void assign(NSString string, std::vector<Run> runs);

private:
    NSString _string;
    Run _onlyRun{};         ///< in use while `_runs` is empty and the string is not
    std::vector<Run> _runs; ///< two at least, or empty
};

/// An attributed string that can be changed. One thread at a time.
///
/// A range that reaches beyond the end raises NSRangeException, and nothing changes. An empty range changes
/// no attributes.
class KORVID_EXPORT NSMutableAttributedString : public NSAttributedString {
public:
    using NSAttributedString::NSAttributedString;

    /// Replaces all attributes in the range; null removes them.
    void setAttributes(RetainPtr<NSDictionary> attributes, NSRange range);
    /// Retains the value, which replaces one of that name; other attributes stay. A null name or value raises
    /// NSInvalidArgumentException.
    void addAttribute(const NSAttributedStringKey& name, RetainPtr<NSObject> value, NSRange range);
    /// The same for each of these; null adds nothing.
    void addAttributes(const NSDictionary* attributes, NSRange range);
    /// Where there is none of that name, nothing changes.
    void removeAttribute(const NSAttributedStringKey& name, NSRange range);

    /// Replaces a range by a string; null and the empty string delete it. The new units take the
    /// attributes of the first one replaced; for an empty range those of the unit before it, or at the
    /// beginning of the string those of the first unit.
    void replaceCharactersInRange(NSRange range, const NSString& string);
    /// The same with a string that has its own attributes. It may be this one.
    void replaceCharactersInRange(NSRange range, const NSAttributedString* attributedString);
    /// Appends a string with its own attributes, which may be this one; null adds nothing.
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
