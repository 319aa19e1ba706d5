#pragma once

#include <Foundation/NSObject.h>

#include <mutex>

/// What the weak references to one object share: it outlives the object and knows whether that is still
/// there.
class KORVID_EXPORT WeakLink {
public:
    /// The link of `object`, made on first use, with one reference for the caller.
    static WeakLink* linkTo(const NSObject* object);

    void retain() noexcept;
    void release() noexcept;

    /// The object with one more reference, or null once its last strong reference has gone.
    NSObject* lock() noexcept;
    /// Called by the object when its last strong reference has gone, before it is destroyed.
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

/// A reference that does not keep its object alive and becomes null when the object goes.
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
    WeakPtr(const RetainPtr<T>& object)
        : WeakPtr(object.get())
    {
    }

    /// A strong reference to the object, or null when there is none any more.
    RetainPtr<T> lock() const
    {
        return RetainPtr<T>::adopt(_link ? static_cast<T*>(_link->lock()) : nullptr);
    }

private:
    RetainPtr<WeakLink> _link;
};
