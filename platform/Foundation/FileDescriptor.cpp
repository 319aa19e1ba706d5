#include "Foundation/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

std::optional<std::vector<std::byte>> FileDescriptor::readAll(std::size_t most) const
try {
    constexpr std::size_t kChunk = 64 * 1024;
    std::vector<std::byte> bytes;
    struct stat info { };
    if (fstat(_descriptor, &info) == 0 && info.st_size > 0) {
        const auto size = static_cast<std::size_t>(info.st_size);
        if (size > most) {
            errno = EFBIG;
            return std::nullopt;
        }
        bytes.reserve(size + 1);
    }
    // The size of devices is unknown, and a file may grow while it is read.
    while (bytes.size() <= most) {
        const std::size_t filled = bytes.size();
        bytes.resize(bytes.capacity() > filled ? bytes.capacity() : filled + kChunk);
        const ssize_t count = read(_descriptor, bytes.data() + filled, bytes.size() - filled);
        bytes.resize(filled + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0)
            return bytes;
        if (count < 0 && errno != EINTR)
            return std::nullopt;
    }
    errno = EFBIG;
    return std::nullopt;
} catch (const std::bad_alloc&) {
    errno = ENOMEM;
    return std::nullopt;
} catch (const std::length_error&) {
    errno = ENOMEM;
    return std::nullopt;
}

bool FileDescriptor::writeAll(std::span<const std::byte> bytes) const
{
    while (!bytes.empty()) {
        const ssize_t count = write(_descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return true;
}

bool FileDescriptor::close()
{
    return _descriptor < 0 || ::close(std::exchange(_descriptor, -1)) == 0;
}
