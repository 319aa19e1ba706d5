#include <Foundation/NSException.h>
#include <Foundation/NSNull.h>
#include <Foundation/NSNumber.h>

#include "Foundation/KeyValueObservers.h"

#include <algorithm>
#include <utility>

namespace {

using Registration = KeyValueObservers::Registration;

/// The value in the form that a change holds it.
RetainPtr<NSObject> valueOrNull(NSObject* object, const NSString& key)
{
    auto value = object->valueForKey(key);
    return value ? value : RetainPtr<NSObject>(NSNull::null());
}

bool anyWants(const std::vector<std::shared_ptr<Registration>>& registrations, NSUInteger option)
{
    return std::any_of(registrations.begin(), registrations.end(),
        [option](const auto& registration) { return registration->wants(option); });
}

/// Notifies one observer, unless it has been removed or destroyed.
void notify(const Registration& registration, NSObject* object, const RetainPtr<NSObject>& oldValue,
    const RetainPtr<NSObject>& newValue, bool isPrior)
{
    if (registration.isRemoved)
        return;
    const auto observer = registration.observer.lock();
    if (!observer)
        return;
    NSDictionary::Map change;
    change[NSKeyValueChangeKindKey] = NSNumber::numberWithInteger(NSKeyValueChangeSetting);
    if (isPrior)
        change[NSKeyValueChangeNotificationIsPriorKey] = NSNumber::numberWithBool(true);
    if (oldValue && registration.wants(NSKeyValueObservingOptionOld))
        change[NSKeyValueChangeOldKey] = oldValue;
    if (newValue && registration.wants(NSKeyValueObservingOptionNew))
        change[NSKeyValueChangeNewKey] = newValue;
    observer->observeValueForKeyPath(
        registration.key, object, make<NSDictionary>(std::move(change)).get(), registration.context);
}

} // namespace

void KeyValueObservers::add(NSObject* object, const std::shared_ptr<Registration>& registration)
{
    removeDestroyedObservers();
    {
        const std::lock_guard guard(_mutex);
        _registrations.push_back(registration);
    }
    if (!registration->wants(NSKeyValueObservingOptionInitial))
        return;
    const auto value =
        registration->wants(NSKeyValueObservingOptionNew) ? valueOrNull(object, registration->key) : nullptr;
    notify(*registration, object, nullptr, value, false);
}

bool KeyValueObservers::remove(const NSObject* observer, const NSString& key)
{
    const std::lock_guard guard(_mutex);
    const auto latest = std::find_if(_registrations.rbegin(), _registrations.rend(),
        [&](const auto& entry) { return entry->identity == observer && entry->key == key; });
    if (latest == _registrations.rend())
        return false;
    (*latest)->isRemoved = true; // its notifications may be under way
    _registrations.erase(std::next(latest).base());
    return true;
}

/// So that no later observer at the same address is taken for one that was destroyed.
void KeyValueObservers::removeDestroyedObservers()
{
    Registrations destroyed;
    {
        const std::lock_guard guard(_mutex);
        destroyed = _registrations;
    }
    // Not under the lock: this may be the last reference to an observer, which removes itself when destroyed.
    std::erase_if(destroyed, [](const auto& entry) { return bool(entry->observer.lock()); });
    if (destroyed.empty())
        return;
    const std::lock_guard guard(_mutex);
    std::erase_if(_registrations, [&destroyed](const auto& entry) {
        return std::find(destroyed.begin(), destroyed.end(), entry) != destroyed.end();
    });
}

KeyValueObservers::Registrations KeyValueObservers::observersOf(const NSString& key)
{
    removeDestroyedObservers();
    Registrations observers;
    const std::lock_guard guard(_mutex);
    std::copy_if(_registrations.begin(), _registrations.end(), std::back_inserter(observers),
        [&key](const auto& entry) { return entry->key == key; });
    return observers;
}

void KeyValueObservers::willChange(NSObject* object, const NSString& key)
{
    Registrations observers = observersOf(key);
    if (observers.empty())
        return;
    auto oldValue = anyWants(observers, NSKeyValueObservingOptionOld) ? valueOrNull(object, key) : nullptr;
    for (const auto& observer : observers) {
        if (observer->wants(NSKeyValueObservingOptionPrior))
            notify(*observer, object, oldValue, nullptr, true);
    }
    // Only now: an exception from above means that the change does not take place.
    const std::lock_guard guard(_mutex);
    _pending.push_back({key, std::this_thread::get_id(), std::move(observers), std::move(oldValue)});
}

void KeyValueObservers::didChange(NSObject* object, const NSString& key)
{
    PendingChange change;
    {
        const std::lock_guard guard(_mutex);
        const auto begun =
            std::find_if(_pending.rbegin(), _pending.rend(), [&key](const PendingChange& pending) {
                return pending.key == key && pending.thread == std::this_thread::get_id();
            });
        if (begun == _pending.rend())
            return;
        change = std::move(*begun);
        _pending.erase(std::next(begun).base());
    }
    const auto newValue =
        anyWants(change.observers, NSKeyValueObservingOptionNew) ? valueOrNull(object, key) : nullptr;
    for (const auto& observer : change.observers)
        notify(*observer, object, change.oldValue, newValue, false);
}

void NSObject::addObserver(NSObject* observer, const NSString& keyPath, NSUInteger options, void* context)
{
    if (!observer || keyPath.isNull())
        return;
    if (keyPath.containsString("."))
        NSException::raise(
            NSInvalidArgumentException, "Only a single key can be observed, not a path of several.");
    const RetainPtr<NSObject> retainedWhileNotifying(this);
    ensureObservers().add(this,
        std::shared_ptr<Registration>(
            new Registration{WeakPtr<NSObject>(observer), observer, keyPath, options, context}));
}

void NSObject::removeObserver(NSObject* observer, const NSString& keyPath)
{
    KeyValueObservers* const observers = _observers.load(std::memory_order_acquire);
    if (!observers || !observers->remove(observer, keyPath))
        NSException::raise(
            NSRangeException, "An observer that was not added for that key cannot be removed.");
}

KeyValueObservers& NSObject::ensureObservers()
{
    KeyValueObservers* observers = _observers.load(std::memory_order_acquire);
    if (observers)
        return *observers;
    auto created = std::make_unique<KeyValueObservers>();
    if (_observers.compare_exchange_strong(
            observers, created.get(), std::memory_order_acq_rel, std::memory_order_acquire))
        observers = created.release();
    return *observers; // another thread's where that was first
}

void NSObject::notifyWillChange(KeyValueObservers& observers, const NSString& key)
{
    const RetainPtr<NSObject> retainedWhileNotifying(this);
    observers.willChange(this, key);
}

void NSObject::notifyDidChange(KeyValueObservers& observers, const NSString& key)
{
    const RetainPtr<NSObject> retainedWhileNotifying(this);
    observers.didChange(this, key);
}

void NSObject::observeValueForKeyPath(NSString keyPath, NSObject*, NSDictionary*, void*)
{
    NSException::raise(NSInternalInconsistencyException,
        NSString(
            "A change of \"" + keyPath.UTF8String() + "\" reached an observer that does not handle it."));
}

RetainPtr<NSObject> NSObject::valueForKey(const NSString& key)
{
    NSException::raise(NSUndefinedKeyException,
        NSString("The object has no value for the key \"" + key.UTF8String() + "\"."));
}
