#include <Foundation/NSNull.h>

NSNull::NSNull() = default;

NSNull::~NSNull() = default;

NSNull* NSNull::null()
{
    static NSNull* const shared = new NSNull;
    return shared;
}

NSString NSNull::description() const
{
    return "<null>";
}
