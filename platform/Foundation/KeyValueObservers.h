#pragma once

#include <Foundation/NSDictionary.h>
#include <Foundation/WeakPtr.h>

#include <memory>
#include <vector>

/// Who observes one object, and the changes of it that have begun and not ended.
class KeyValueObservers {
public:
    struct Registration {
        WeakPtr<NSObject> observer;
        const NSObject* identity; ///< tells observers apart; never followed
        NSString key;
        NSUInteger options;
        void* context;
        bool removed = false;

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
        Registrations observers;
        RetainPtr<NSObject> oldValue; ///< null when no observer asked for it
    };

    /// What a gone observer left behind must not be taken for that of a later one at the same address.
    void dropGoneObservers();

    Registrations _registrations;
    std::vector<PendingChange> _pending;
};
