#pragma once

#include <Foundation/NSDictionary.h>
#include <Foundation/WeakPtr.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// The observers of one object, and its changes that have begun and not ended. Safe on any thread; observers
/// are notified on the thread that makes the change, and no lock is held meanwhile.
class KeyValueObservers {
public:
    struct Registration {
        WeakPtr<NSObject> observer;
        const NSObject* identity; ///< distinguishes observers; never dereferenced
        NSString key;
        NSUInteger options;
        void* context;
        std::atomic<bool> isRemoved = false;

        bool wants(NSUInteger option) const { return options & option; }
    };

    void add(NSObject* object, const std::shared_ptr<Registration>& registration);
    /// False when there is none.
    bool remove(const NSObject* observer, const NSString& key);

    void willChange(NSObject* object, const NSString& key);
    void didChange(NSObject* object, const NSString& key);

private:
    using Registrations = std::vector<std::shared_ptr<Registration>>;

    struct PendingChange {
        NSString key;
        std::thread::id thread; ///< a change ends on the thread that begins it
        Registrations observers;
        RetainPtr<NSObject> oldValue; ///< null when no observer wants it
    };

    void removeDestroyedObservers();
    Registrations observersOf(const NSString& key);

    std::mutex _mutex;
    Registrations _registrations;
    std::vector<PendingChange> _pending;
};
