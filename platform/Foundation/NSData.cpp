#include <Foundation/NSData.h>
#include <Foundation/NSURL.h>

#include "Foundation/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <random>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/// Creates a file beside `path` and sets `name` to its name.
FileDescriptor createBeside(const std::string& path, std::string& name)
{
    constexpr int kAttempts = 100;
    std::random_device random;
    for (int i = 0; i < kAttempts; ++i) {
        char suffix[16];
        std::snprintf(suffix, sizeof suffix, ".%08x", random());
        name = path + suffix;
        FileDescriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file || errno != EEXIST)
            return file;
    }
    return FileDescriptor();
}

bool writeAtomically(const std::string& path, std::span<const std::byte> bytes)
{
    std::string temporary;
    FileDescriptor file = createBeside(path, temporary);
    if (!file)
        return false;
    struct stat replaced { };
    const bool written =
        (stat(path.c_str(), &replaced) != 0 || fchmod(file.get(), replaced.st_mode & 0777) == 0)
        && file.writeAll(bytes) && fsync(file.get()) == 0 && file.close()
        && std::rename(temporary.c_str(), path.c_str()) == 0;
    if (!written)
        unlink(temporary.c_str());
    return written;
}

/// The path for the system; empty for a path with a NUL, where the system would ignore the rest.
std::string fileName(const NSString& path)
{
    return path.view().find(u'\0') == std::u16string_view::npos ? path.UTF8String() : std::string();
}

} // namespace

NSData::NSData(std::vector<std::byte> bytes)
    : _bytes(std::move(bytes))
{
}

NSData::~NSData() = default;

RetainPtr<NSData> NSData::data()
{
    return make<NSData>(std::vector<std::byte>());
}

RetainPtr<NSData> NSData::dataWithBytes(const void* bytes, NSUInteger length)
{
    const auto* first = static_cast<const std::byte*>(bytes);
    return make<NSData>(first ? std::vector<std::byte>(first, first + length) : std::vector<std::byte>());
}

RetainPtr<NSData> NSData::dataWithContentsOfFile(const NSString& path)
{
    const FileDescriptor file(open(fileName(path).c_str(), O_RDONLY | O_CLOEXEC));
    if (!file)
        return nullptr;
    auto bytes = file.readAll();
    return bytes ? make<NSData>(std::move(*bytes)) : nullptr;
}

RetainPtr<NSData> NSData::dataWithContentsOfURL(const NSURL* url)
{
    return url && url->isFileURL() ? dataWithContentsOfFile(url->path()) : nullptr;
}

bool NSData::writeToFile(const NSString& path, bool atomically) const
{
    const std::string name = fileName(path);
    if (name.empty())
        return false;
    if (atomically)
        return writeAtomically(name, span());
    FileDescriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    return file && file.writeAll(span()) && file.close();
}

bool NSData::isEqual(const NSObject* other) const
{
    const auto* data = dynamic_cast<const NSData*>(other);
    return data && data->_bytes == _bytes;
}

NSUInteger NSData::hash() const
{
    return std::hash<std::string_view>{}(
        std::string_view(reinterpret_cast<const char*>(_bytes.data()), _bytes.size()));
}

NSString NSData::description() const
{
    std::string text = "{length = " + std::to_string(_bytes.size()) + ", bytes = 0x";
    const auto append = [&text](std::span<const std::byte> bytes) {
        for (const std::byte byte : bytes) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x", std::to_integer<unsigned>(byte));
            text += digits;
        }
    };
    constexpr std::size_t kAll = 24;
    constexpr std::size_t kEnd = 8;
    if (_bytes.size() <= kAll) {
        append(span());
    } else {
        append(span().first(kEnd));
        text += " ... ";
        append(span().last(kEnd));
    }
    return NSString(text + "}");
}
