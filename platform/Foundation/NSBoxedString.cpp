#include <Foundation/NSBoxedString.h>

#include <utility>

NSBoxedString::NSBoxedString(NSString string)
    : _string(std::move(string))
{
}

NSBoxedString::~NSBoxedString() = default;

bool NSBoxedString::isEqual(const NSObject* other) const
{
    const auto* boxed = dynamic_cast<const NSBoxedString*>(other);
    return boxed && boxed->_string == _string;
}

NSUInteger NSBoxedString::hash() const
{
    return _string.hash();
}

NSString NSBoxedString::description() const
{
    return _string;
}

RetainPtr<NSBoxedString> box(const NSString& string)
{
    return string.isNull() ? nullptr : make<NSBoxedString>(string);
}
