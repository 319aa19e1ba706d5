#pragma once

#include <Foundation/NSDictionary.h>

/// Why an operation failed: a domain, a code in it, and details for users. Immutable; safe on any thread.
class KORVID_EXPORT NSError : public NSObject {
public:
    /// A null `userInfo` counts as an empty one.
    static RetainPtr<NSError> errorWithDomain(
        const NSString& domain, NSInteger code, RetainPtr<NSDictionary> userInfo = nullptr);

    /// What the code belongs to, such as NSCocoaErrorDomain.
    const NSString& domain() const { return _domain; }
    /// What went wrong, as a number that the domain defines.
    NSInteger code() const { return _code; }
    /// Borrowed; never null.
    NSDictionary* userInfo() const { return _userInfo.get(); }
    /// The string under NSLocalizedDescriptionKey, else one made of domain and code.
    NSString localizedDescription() const;

    /// True for another error of equal domain, code and `userInfo`.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// Domain, code and description on a line.
    NSString description() const override;

protected:
    ~NSError() override;

private:
    NSError(NSString domain, NSInteger code, RetainPtr<NSDictionary> userInfo);

    NSString _domain;
    NSInteger _code;
    RetainPtr<NSDictionary> _userInfo;
};

/// Key in an error's `userInfo` of the sentence to show to the user.
inline constexpr const char* NSLocalizedDescriptionKey = "NSLocalizedDescription";
/// The domain of errors of the platform layer's own.
inline constexpr const char* NSCocoaErrorDomain = "NSCocoaErrorDomain";
