#pragma once

#include <Foundation/NSObject.h>

#include <cstddef>
#include <span>
#include <vector>

class NSURL;

/// A sequence of bytes. Immutable; safe on any thread.
class KORVID_EXPORT NSData : public NSObject {
public:
    /// Takes over the bytes.
    explicit NSData(std::vector<std::byte> bytes);

    /// Empty data.
    static RetainPtr<NSData> data();
    /// A copy of `length` bytes; null `bytes` give empty data.
    static RetainPtr<NSData> dataWithBytes(const void* bytes, NSUInteger length);
    /// The content of a file. Null when it cannot be read, or for a null path or a URL that is not a file's.
    static RetainPtr<NSData> dataWithContentsOfFile(const NSString& path);
    /// The same for the file of a URL.
    static RetainPtr<NSData> dataWithContentsOfURL(const NSURL* url);

    /// The bytes, valid as long as this object; null when there are none.
    const void* bytes() const { return _bytes.empty() ? nullptr : _bytes.data(); }
    /// Number of bytes.
    NSUInteger length() const { return _bytes.size(); }
    /// The bytes, valid as long as this object.
    std::span<const std::byte> span() const { return _bytes; }

    /// Writes all bytes to a file. With `atomically` they go to a new file beside it, which takes the file's
    /// place when it is complete, so that no reader sees a part of it. False when that fails; with
    /// `atomically` the previous content is then still there.
    bool writeToFile(const NSString& path, bool atomically) const;

    /// True for other data with the same bytes.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// "{length = 3, bytes = 0x010203}"; of more than 24 bytes the first and the last 8.
    NSString description() const override;

protected:
    ~NSData() override;

private:
    std::vector<std::byte> _bytes;
};
