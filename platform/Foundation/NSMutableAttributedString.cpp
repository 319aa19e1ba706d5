#include <Foundation/NSAttributedString.h>
#include <Foundation/NSException.h>

#include "Foundation/AttributeRuns.h"

#include <string>
#include <utility>

NSMutableAttributedString::~NSMutableAttributedString() = default;

RetainPtr<NSAttributedString> NSMutableAttributedString::copy() const
{
    return make<NSAttributedString>(this);
}

/// Replaces the dictionary of each run in the range by the result of `changed` for it.
template <class Change> void NSMutableAttributedString::changeAttributes(NSRange range, const Change& changed)
{
    requireRange(range);
    const auto old = attributeRuns();
    const NSUInteger end = NSMaxRange(range);
    AttributeRuns runs;
    runs.append(old, {0, range.location});
    runs.append(old, range, changed);
    runs.append(old, {end, length() - end});
    assign(string(), runs.take());
}

void NSMutableAttributedString::setAttributes(RetainPtr<NSDictionary> attributes, NSRange range)
{
    changeAttributes(
        range, [unchanging = unchangingAttributes(std::move(attributes))](const RetainPtr<NSDictionary>&) {
            return unchanging;
        });
}

void NSMutableAttributedString::addAttribute(
    const NSAttributedStringKey& name, RetainPtr<NSObject> value, NSRange range)
{
    if (name.isNull() || !value)
        NSException::raise(
            NSInvalidArgumentException, "An attributed string takes neither null names nor null attributes.");
    addAttributes(make<NSDictionary>(NSDictionary::Map{{name, std::move(value)}}).get(), range);
}

void NSMutableAttributedString::addAttributes(const NSDictionary* attributes, NSRange range)
{
    changeAttributes(range, [attributes](const RetainPtr<NSDictionary>& old) {
        if (!attributes || attributes->count() == 0)
            return old;
        NSDictionary::Map entries(old->begin(), old->end());
        for (const auto& [name, value] : *attributes)
            entries.insert_or_assign(name, value);
        return make<NSDictionary>(std::move(entries));
    });
}

void NSMutableAttributedString::removeAttribute(const NSAttributedStringKey& name, NSRange range)
{
    changeAttributes(range, [&name](const RetainPtr<NSDictionary>& old) {
        if (!old->objectForKey(name))
            return old;
        NSDictionary::Map entries(old->begin(), old->end());
        entries.erase(name);
        return make<NSDictionary>(std::move(entries));
    });
}

void NSMutableAttributedString::replace(NSRange range, const NSString& string, std::span<const Run> runs)
{
    const NSUInteger end = NSMaxRange(range);
    const auto old = attributeRuns();
    AttributeRuns result;
    result.append(old, {0, range.location});
    result.append(runs, {0, string.length()});
    result.append(old, {end, length() - end});

    const auto units = this->string().view();
    std::u16string text;
    text.reserve(units.size() - range.length + string.length());
    text.append(units.substr(0, range.location)).append(string.view()).append(units.substr(end));
    assign(NSString(text), result.take());
}

void NSMutableAttributedString::replaceCharactersInRange(NSRange range, const NSString& string)
{
    requireRange(range);
    RetainPtr<NSDictionary> attributes = unchangingAttributes(nullptr);
    if (length() > 0) {
        const bool isBehindAUnit = range.length == 0 && range.location > 0;
        attributes = attributesAtIndex(isBehindAUnit ? range.location - 1 : range.location);
    }
    const Run run{{0, string.length()}, std::move(attributes)};
    replace(range, string, {&run, 1});
}

void NSMutableAttributedString::replaceCharactersInRange(
    NSRange range, const NSAttributedString* attributedString)
{
    requireRange(range);
    if (attributedString)
        replace(range, attributedString->string(), attributedString->attributeRuns());
    else
        replace(range, "", {});
}

void NSMutableAttributedString::appendAttributedString(const NSAttributedString* attributedString)
{
    replaceCharactersInRange({length(), 0}, attributedString);
}
