#include <Foundation/NSError.h>

#include <utility>

NSError::NSError(NSString domain, NSInteger code, RetainPtr<NSDictionary> userInfo)
    : _domain(std::move(domain))
    , _code(code)
    , _userInfo(userInfo ? std::move(userInfo) : make<NSDictionary>())
{
}

NSError::~NSError() = default;

RetainPtr<NSError> NSError::errorWithDomain(
    const NSString& domain, NSInteger code, RetainPtr<NSDictionary> userInfo)
{
    return adopt(new NSError(domain, code, std::move(userInfo)));
}

NSString NSError::localizedDescription() const
{
    NSString text = _userInfo->stringForKey(NSLocalizedDescriptionKey);
    if (text)
        return text;
    return NSString("The operation could not be completed. (" + _domain.UTF8String() + " error "
        + std::to_string(_code) + ".)");
}

bool NSError::isEqual(const NSObject* other) const
{
    const auto* error = dynamic_cast<const NSError*>(other);
    return error && error->_domain == _domain && error->_code == _code
        && error->_userInfo->isEqual(_userInfo);
}

NSUInteger NSError::hash() const
{
    return _domain.hash() + static_cast<NSUInteger>(_code);
}

NSString NSError::description() const
{
    return NSString("Error " + _domain.UTF8String() + " " + std::to_string(_code) + ": "
        + localizedDescription().UTF8String());
}
