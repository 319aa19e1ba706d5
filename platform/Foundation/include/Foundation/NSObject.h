#pragma once

#include <Foundation/NSKeyValueObserving.h>
#include <Foundation/NSObjCRuntime.h>
#include <Foundation/NSString.h>
#include <Foundation/RetainPtr.h>

#include <atomic>

class KeyValueObservers;
class WeakLink;

/// The base of every class: an atomic reference count, weak references, equality and a description.
///
/// Objects live on the heap only: make them with `make<T>(…)` and hold them in a `RetainPtr<T>`. A new
/// object has one reference; the last `release` destroys it on the thread that makes the call.
/// Retaining, releasing and weak references are safe on any thread. A destructor may pass its object to
/// functions that retain and release it, but not retain it for longer; weak references are null by then.
class KORVID_EXPORT NSObject {
public:
    NSObject() noexcept;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;

    /// Adds a reference. RetainPtr calls this.
    void retain() const noexcept;
    /// Removes a reference; removing the last one destroys the object. RetainPtr calls this.
    void release() const noexcept;

    /// True when `other` has the same value. Here: when it is the same object. Null is never equal.
    virtual bool isEqual(const NSObject* other) const;
    /// Equal objects have equal hashes. Here: made from the object's address.
    virtual NSUInteger hash() const;
    /// A string for debugging, which `%@` prints. Here: "<ClassName: 0xaddress>".
    virtual NSString description() const;

    // Key-value observing. An object notifies others when one of its properties changes. Observers can be
    // added and removed on any thread; they are notified on the thread that changes the property. A change of
    // an object without observers costs the test of one pointer.

    /// Notifies `observer` of each change of the property `keyPath`, until it is removed or destroyed: it is
    /// held weakly. Added twice, it is notified twice. `context` is passed back unchanged.
    ///
    /// Observers are notified in the order in which they were added. One that is added after a change has
    /// begun is notified from the next change on. A null observer or key path is ignored; a path of several
    /// keys, with dots, raises NSInvalidArgumentException.
    void addObserver(
        NSObject* observer, const NSString& keyPath, NSUInteger options = 0, void* context = nullptr);
    /// Undoes the latest `addObserver` of the pair. Raises NSRangeException when there is none. An observer
    /// may remove itself or others while it is notified.
    void removeObserver(NSObject* observer, const NSString& keyPath);

    /// Called by the object itself before it changes a property; `didChangeValueForKey` follows after the
    /// change, on the same thread. Pairs may be nested: each end belongs to the thread's latest beginning
    /// with its key. An end without a beginning is ignored.
    void willChangeValueForKey(const NSString& key)
    {
        if (KeyValueObservers* observers = _observers.load(std::memory_order_acquire))
            notifyWillChange(*observers, key);
    }
    /// Ends what the thread's latest `willChangeValueForKey` with this key has begun.
    void didChangeValueForKey(const NSString& key)
    {
        if (KeyValueObservers* observers = _observers.load(std::memory_order_acquire))
            notifyDidChange(*observers, key);
    }

    /// Called on an observer for each change. An override calls its base for keys that it does not handle;
    /// this one raises NSInternalInconsistencyException. `object` is the one that changed; `change` is
    /// described in NSKeyValueObserving.h. Both are borrowed.
    virtual void observeValueForKeyPath(
        NSString keyPath, NSObject* object, NSDictionary* change, void* context);

    /// The value of a property as an object, for observers that ask for old or new values. Classes with
    /// observable properties override it; this one raises NSUndefinedKeyException.
    virtual RetainPtr<NSObject> valueForKey(const NSString& key);

protected:
    virtual ~NSObject();

private:
    friend class WeakLink;

    KeyValueObservers& ensureObservers();
    void notifyWillChange(KeyValueObservers& observers, const NSString& key);
    void notifyDidChange(KeyValueObservers& observers, const NSString& key);

    mutable std::atomic<NSUInteger> _retainCount{1};
    mutable std::atomic<WeakLink*> _weakLink{nullptr};
    std::atomic<KeyValueObservers*> _observers{nullptr}; ///< created by the first addObserver
};
