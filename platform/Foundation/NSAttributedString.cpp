#include <Foundation/NSAttributedString.h>
#include <Foundation/NSException.h>

#include "Foundation/AttributeRuns.h"

#include <algorithm>
#include <typeinfo>
#include <utility>

namespace {

NSString emptyForNull(NSString string)
{
    return string.isNull() ? NSString("") : std::move(string);
}

} // namespace

RetainPtr<NSDictionary> unchangingAttributes(RetainPtr<NSDictionary> attributes)
{
    if (!attributes) {
        // All strings without attributes share one dictionary, which lives as long as the process.
        static auto* const none = new NSDictionary;
        return none;
    }
    // Objects of derived classes may be mutable.
    if (typeid(*attributes) != typeid(NSDictionary))
        return make<NSDictionary>(NSDictionary::Map(attributes->begin(), attributes->end()));
    return attributes;
}

NSAttributedString::NSAttributedString(NSString string)
    : NSAttributedString(std::move(string), nullptr)
{
}

NSAttributedString::NSAttributedString(NSString string, RetainPtr<NSDictionary> attributes)
    : _string(emptyForNull(std::move(string)))
    , _onlyRun{{0, _string.length()}, unchangingAttributes(std::move(attributes))}
{
}

NSAttributedString::NSAttributedString(const NSAttributedString* attributedString)
    : _string("")
{
    if (!attributedString)
        return;
    _string = attributedString->_string;
    _onlyRun = attributedString->_onlyRun;
    _runs = attributedString->_runs;
}

NSAttributedString::~NSAttributedString() = default;

void NSAttributedString::requireRange(NSRange range) const
{
    if (range.location > length() || range.length > length() - range.location)
        NSException::raise(NSRangeException, "The range reaches beyond the end of the attributed string.");
}

void NSAttributedString::assign(NSString string, std::vector<Run> runs)
{
    _string = std::move(string);
    _runs = std::move(runs);
    if (_runs.size() > 1)
        return;
    _onlyRun = _runs.empty() ? Run() : std::move(_runs.front());
    _runs.clear();
}

NSDictionary* NSAttributedString::attributesAtIndex(NSUInteger index, NSRange* effectiveRange) const
{
    if (index >= length())
        NSException::raise(NSRangeException, "The attributed string has no character at that index.");
    const auto runs = attributeRuns();
    const auto behind = std::partition_point(
        runs.begin(), runs.end(), [index](const Run& run) { return run.range.location <= index; });
    const Run& run = *std::prev(behind);
    if (effectiveRange)
        *effectiveRange = run.range;
    return run.attributes.get();
}

NSObject* NSAttributedString::attributeAtIndex(
    const NSAttributedStringKey& name, NSUInteger index, NSRange* effectiveRange) const
{
    return attributesAtIndex(index, effectiveRange)->objectForKey(name);
}

RetainPtr<NSAttributedString> NSAttributedString::attributedSubstringFromRange(NSRange range) const
{
    requireRange(range);
    AttributeRuns runs;
    runs.append(attributeRuns(), range);
    auto result = make<NSAttributedString>();
    result->assign(_string.substringWithRange(range), runs.take());
    return result;
}

RetainPtr<NSAttributedString> NSAttributedString::copy() const
{
    return const_cast<NSAttributedString*>(this);
}

RetainPtr<NSMutableAttributedString> NSAttributedString::mutableCopy() const
{
    return make<NSMutableAttributedString>(this);
}

bool NSAttributedString::isEqual(const NSObject* other) const
{
    const auto* text = dynamic_cast<const NSAttributedString*>(other);
    if (!text || text->_string != _string)
        return false;
    const auto mine = attributeRuns();
    const auto theirs = text->attributeRuns();
    return std::equal(mine.begin(), mine.end(), theirs.begin(), theirs.end(), [](const Run& a, const Run& b) {
        return a.range.length == b.range.length && haveEqualAttributes(a, b);
    });
}

NSUInteger NSAttributedString::hash() const
{
    return _string.hash();
}

NSString NSAttributedString::description() const
{
    NSString text = "";
    for (const Run& run : attributeRuns())
        text = text.stringByAppendingString(_string.substringWithRange(run.range))
                   .stringByAppendingString(run.attributes->description());
    return text;
}
