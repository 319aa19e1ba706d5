#pragma once

#include <Foundation/NSObject.h>

/// A string as an object, for collections and archives. Immutable; any thread.
class KORVID_EXPORT NSBoxedString : public NSObject {
public:
    /// An object with that string, which may be null.
    explicit NSBoxedString(NSString string);

    /// The string; it may be null.
    const NSString& string() const { return _string; }

    /// True for another NSBoxedString with an equal string.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// The string itself.
    NSString description() const override;

protected:
    ~NSBoxedString() override;

private:
    NSString _string;
};

/// The string as an object; null for the null string, so that nil stays nil.
KORVID_EXPORT RetainPtr<NSBoxedString> box(const NSString& string);
