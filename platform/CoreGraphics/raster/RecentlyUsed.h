#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>
#include <utility>

/// A map of limited size that evicts the entries used least recently. One thread at a time.
template <class Key, class Value, class Hash> class RecentlyUsed {
public:
    /// The limit of the byte counts that the caller states, summed over all entries.
    explicit RecentlyUsed(std::size_t capacity)
        : _capacity(capacity)
    {
    }

    std::size_t capacity() const { return _capacity; }
    std::size_t byteCount() const { return _byteCount; }

    /// The value of a key, from now on the one used most recently; null if there is none.
    Value* find(const Key& key)
    {
        if (_entries.empty() || !(_entries.front().key == key)) {
            const auto found = _entryOfKey.find(key);
            if (found == _entryOfKey.end())
                return nullptr;
            _entries.splice(_entries.begin(), _entries, found->second);
        }
        return &_entries.front().value;
    }
    /// Adds a value under a key that has none, as the one used most recently.
    Value& insert(const Key& key, Value value, std::size_t byteCount)
    {
        _entries.push_front({key, std::move(value), 0});
        _entryOfKey.emplace(key, _entries.begin());
        grow(byteCount);
        return _entries.front().value;
    }
    /// Accounts for more bytes of the value used most recently.
    void grow(std::size_t byteCount)
    {
        _entries.front().byteCount += byteCount;
        _byteCount += byteCount;
    }
    /// Removes entries until the rest is within the capacity.
    void evict()
    {
        while (_byteCount > _capacity) {
            _byteCount -= _entries.back().byteCount;
            _entryOfKey.erase(_entries.back().key);
            _entries.pop_back();
        }
    }

private:
    struct Entry {
        Key key;
        Value value;
        std::size_t byteCount;
    };

    const std::size_t _capacity;
    std::size_t _byteCount = 0;
    std::list<Entry> _entries; ///< most recently used first
    std::unordered_map<Key, typename std::list<Entry>::iterator, Hash> _entryOfKey;
};
