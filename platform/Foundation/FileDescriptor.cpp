#include "Foundation/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

std::optional<std::vector<std::byte>> FileDescriptor::readAll() const
{
    constexpr std::size_t kChunk = 64 * 1024;
    std::vector<std::byte> bytes;
    struct stat info { };
    if (fstat(_descriptor, &info) == 0 && info.st_size > 0)
        bytes.reserve(static_cast<std::size_t>(info.st_size) + 1);
    for (;;) {
        const std::size_t filled = bytes.size();
        bytes.resize(std::max(bytes.capacity(), filled + kChunk));
        const ssize_t count = read(_descriptor, bytes.data() + filled, bytes.size() - filled);
        bytes.resize(filled + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0)
            return bytes;
        if (count < 0 && errno != EINTR)
            return std::nullopt;
    }
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
