#include <Foundation/NSObject.h>
#include <Foundation/WeakPtr.h>

#include "Foundation/KeyValueObservers.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <string>
#include <typeinfo>

NSObject::NSObject() noexcept = default;

namespace {

/// The count of an object that is being destroyed, far from 0 and beyond what retaining can reach.
constexpr NSUInteger kDestroying = NSUInteger{1} << 62;

bool isAlive(NSUInteger retainCount)
{
    return retainCount > 0 && retainCount < kDestroying / 2;
}

} // namespace

NSObject::~NSObject()
{
    if (WeakLink* link = _weakLink.load(std::memory_order_acquire)) {
        link->objectIsGone(); // again, for a link that was created in a destructor
        link->release();
    }
    delete _observers.load(std::memory_order_acquire);
}

void NSObject::retain() const noexcept
{
    _retainCount.fetch_add(1, std::memory_order_relaxed);
}

void NSObject::release() const noexcept
{
    if (_retainCount.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    // Another thread may be locking a weak reference: from here on it gets null.
    if (WeakLink* link = _weakLink.load(std::memory_order_acquire))
        link->objectIsGone();
    // A destructor may retain and release its object, which must not destroy it a second time.
    _retainCount.store(kDestroying, std::memory_order_relaxed);
    delete this;
}

bool NSObject::isEqual(const NSObject* other) const
{
    return this == other;
}

NSUInteger NSObject::hash() const
{
    return reinterpret_cast<std::uintptr_t>(this) >> 4;
}

NSString NSObject::description() const
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeid(*this).name(), nullptr, nullptr, &status), &std::free);
    char address[2 + 2 * sizeof(void*) + 1];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
    return NSString(std::string("<") + (name ? name.get() : typeid(*this).name()) + ": " + address + ">");
}

WeakLink* WeakLink::linkTo(const NSObject* object)
{
    WeakLink* link = object->_weakLink.load(std::memory_order_acquire);
    if (!link) {
        auto* fresh = new WeakLink(const_cast<NSObject*>(object));
        if (object->_weakLink.compare_exchange_strong(
                link, fresh, std::memory_order_acq_rel, std::memory_order_acquire))
            link = fresh;
        else
            delete fresh; // another thread was first
    }
    link->retain();
    return link;
}

void WeakLink::retain() noexcept
{
    _retainCount.fetch_add(1, std::memory_order_relaxed);
}

void WeakLink::release() noexcept
{
    if (_retainCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

NSObject* WeakLink::lock() noexcept
{
    const std::lock_guard guard(_mutex);
    if (!_object)
        return nullptr;
    // The count may already have reached zero on another thread: the object must not be retained then.
    NSUInteger count = _object->_retainCount.load(std::memory_order_relaxed);
    while (isAlive(count)) {
        if (_object->_retainCount.compare_exchange_weak(count, count + 1, std::memory_order_acquire))
            return _object;
    }
    return nullptr;
}

void WeakLink::objectIsGone() noexcept
{
    const std::lock_guard guard(_mutex);
    _object = nullptr;
}
