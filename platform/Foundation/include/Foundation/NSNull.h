#pragma once

#include <Foundation/NSObject.h>

/// Stands in collections for a missing value, like `null` in JSON. One object for the process; any thread.
class KORVID_EXPORT NSNull : public NSObject {
public:
    /// Borrowed; never null, never destroyed.
    static NSNull* null();

    /// "<null>".
    NSString description() const override;

protected:
    NSNull();
    ~NSNull() override;
};
