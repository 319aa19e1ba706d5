#pragma once

#include <Foundation/NSObject.h>

/// A location: a file's, or any other that can be written as a URL. Immutable; safe on any thread.
class KORVID_EXPORT NSURL : public NSObject {
public:
    /// The URL of a file; a path that does not begin with "/" counts from the current folder. Null for a
    /// null or empty path.
    ///
    /// Differs: the file system is not consulted, and "." and ".." are resolved; the URL of a folder has no
    /// slash at its end, like that of any other file.
    static RetainPtr<NSURL> fileURLWithPath(const NSString& path);
    /// The URL in the string. Null for null and for an invalid URL.
    static RetainPtr<NSURL> URLWithString(const NSString& string);

    /// All of it, percent-encoded.
    NSString absoluteString() const;
    /// Like "file" or "https"; null when there is none.
    NSString scheme() const;
    /// The path, percent escapes decoded and without a slash at its end; empty when there is none.
    NSString path() const;
    /// Whether the scheme is "file".
    bool isFileURL() const;
    /// The last component of the path; see `NSString::lastPathComponent`.
    NSString lastPathComponent() const;
    /// The extension of the path; see `NSString::pathExtension`.
    NSString pathExtension() const;
    /// With one more component at the end of the path. Null where that makes no URL.
    RetainPtr<NSURL> URLByAppendingPathComponent(const NSString& component) const;

    /// True for another URL of the same string.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// `absoluteString()`.
    NSString description() const override;

protected:
    ~NSURL() override;

private:
    explicit NSURL(NSString absoluteString);

    NSString _absoluteString;
};
