#pragma once

#include <Foundation/NSObject.h>

#include <mutex>

/// The record that the weak references to one object share. It outlives the object, and its pointer becomes
/// null with it.
class KORVID_EXPORT WeakLink {
public:
    /// The link of `object`, created on first use, with one reference for the caller.
    static WeakLink* linkTo(const NSObject* object);

    /// Adds a reference to the link. RetainPtr calls this.
    void retain() noexcept;
    /// Removes a reference; removing the last one destroys the link. RetainPtr calls this.
    void release() noexcept;

    /// The object with one more reference, or null once its last strong reference is released.
    NSObject* lock() noexcept;
    /// Called by the object when its last strong reference is released, before it is destroyed.
    void objectIsGone() noexcept;

private:
    explicit WeakLink(NSObject* object) noexcept
        : _object(object)
    {
    }

    std::atomic<NSUInteger> _retainCount{1};
    std::mutex _mutex;
    NSObject* _object;
};

/// A reference that does not retain its object and becomes null when that is destroyed.
///
/// `lock()` is safe on any thread while another one releases the object.
template <class T> class WeakPtr {
public:
    WeakPtr() noexcept = default;
    /// Null is allowed and stays null.
    WeakPtr(T* object)
        : _link(object ? RetainPtr<WeakLink>::adopt(WeakLink::linkTo(object)) : nullptr)
    {
    }
    /// A weak reference to the object; null stays null.
    WeakPtr(const RetainPtr<T>& object)
        : WeakPtr(object.get())
    {
    }

    /// A strong reference to the object, or null once it is destroyed.
    RetainPtr<T> lock() const
    {
        return RetainPtr<T>::adopt(_link ? static_cast<T*>(_link->lock()) : nullptr);
    }

private:
    RetainPtr<WeakLink> _link;
};
