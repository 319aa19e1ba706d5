#pragma once

#include <atomic>
#include <cstdint>

/// The atomic reference count that every Core Graphics record derives from. A new record has one reference.
class CGCounted {
public:
    CGCounted() noexcept = default;
    /// A copy of a record starts with one reference.
    CGCounted(const CGCounted&) noexcept { }
    CGCounted& operator=(const CGCounted&) = delete;

    void retain() const noexcept { _count.fetch_add(1, std::memory_order_relaxed); }
    /// True when this was the last reference: the caller must destroy the record.
    [[nodiscard]] bool release() const noexcept
    {
        return _count.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }

private:
    mutable std::atomic<std::uint32_t> _count{1};
};

/// Implements the Retain functions. Null is allowed.
template <class Record> Record* CGRetainRecord(Record* record) noexcept
{
    if (record)
        record->retain();
    return record;
}

/// Implements the Release functions. Null is allowed.
template <class Record> void CGReleaseRecord(Record* record) noexcept
{
    if (record && record->release())
        delete record;
}
