#pragma once

#include <Foundation/NSDictionary.h>

#include <exception>
#include <string>

/// Raised where a call is a mistake in the program: an invalid index, a missing observer, a repeated removal.
///
/// Thrown by value, caught by reference like every C++ exception:
///
///     try { … } catch (const NSException& exception) { NSLog("%@", exception.reason()); }
class KORVID_EXPORT NSException : public std::exception {
public:
    /// An exception to be thrown. `userInfo` is retained and may be null.
    NSException(NSString name, NSString reason, RetainPtr<NSDictionary> userInfo = nullptr);
    /// Copies share `userInfo`.
    NSException(const NSException&);
    /// Copies share `userInfo`.
    NSException& operator=(const NSException&);
    ~NSException() override;

    /// The kind of mistake, for programs: one of the names below or the caller's own.
    const NSString& name() const { return _name; }
    /// A sentence for developers.
    const NSString& reason() const { return _reason; }
    /// More about it, or null. Borrowed.
    NSDictionary* userInfo() const { return _userInfo.get(); }
    /// "name: reason" in UTF-8.
    const char* what() const noexcept override { return _what.c_str(); }

    /// Throws an exception of that name and reason.
    [[noreturn]] static void raise(const NSString& name, const NSString& reason);

private:
    NSString _name;
    NSString _reason;
    RetainPtr<NSDictionary> _userInfo;
    std::string _what;
};

/// An invalid argument.
inline constexpr const char* NSInvalidArgumentException = "NSInvalidArgumentException";
/// An index beyond the end.
inline constexpr const char* NSRangeException = "NSRangeException";
/// A call in the wrong order, or repeated.
inline constexpr const char* NSInternalInconsistencyException = "NSInternalInconsistencyException";
/// A key that an object has no value for.
inline constexpr const char* NSUndefinedKeyException = "NSUndefinedKeyException";
