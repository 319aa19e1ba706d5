#include <Foundation/NSException.h>

#include <utility>

NSException::NSException(NSString name, NSString reason, RetainPtr<NSDictionary> userInfo)
    : _name(std::move(name))
    , _reason(std::move(reason))
    , _userInfo(std::move(userInfo))
    , _what(_name.UTF8String() + ": " + _reason.UTF8String())
{
}

NSException::NSException(const NSException&) = default;
NSException& NSException::operator=(const NSException&) = default;
NSException::~NSException() = default;

void NSException::raise(const NSString& name, const NSString& reason)
{
    throw NSException(name, reason);
}
