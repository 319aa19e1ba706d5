#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

/// A file descriptor that closes itself.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = -1)
        : _descriptor(descriptor)
    {
    }
    FileDescriptor(FileDescriptor&& other) noexcept
        : _descriptor(std::exchange(other._descriptor, -1))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(_descriptor, other._descriptor);
        return *this;
    }
    ~FileDescriptor() { close(); }

    int get() const { return _descriptor; }
    explicit operator bool() const { return _descriptor >= 0; }

    /// All bytes that are left to read. Nothing, with the reason in `errno`, when one cannot be read, when
    /// there are more than `most` (EFBIG), or when they do not fit into memory (ENOMEM).
    std::optional<std::vector<std::byte>> readAll(std::size_t most = PTRDIFF_MAX) const;
    /// False, with the reason in `errno`, when not everything could be written.
    bool writeAll(std::span<const std::byte> bytes) const;
    /// False when closing reports a failed write.
    bool close();

private:
    int _descriptor;
};
