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

/// Tells one observer, unless it has been removed or is gone by now.
void notify(const Registration& registration, NSObject* object, const RetainPtr<NSObject>& oldValue,
    const RetainPtr<NSObject>& newValue, bool isPrior)
{
    if (registration.removed)
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
    dropGoneObservers();
    _registrations.push_back(registration);
    if (!registration->wants(NSKeyValueObservingOptionInitial))
        return;
    const auto value =
        registration->wants(NSKeyValueObservingOptionNew) ? valueOrNull(object, registration->key) : nullptr;
    notify(*registration, object, nullptr, value, false);
}

bool KeyValueObservers::remove(const NSObject* observer, const NSString& key)
{
    const auto latest = std::find_if(_registrations.rbegin(), _registrations.rend(),
        [&](const auto& entry) { return entry->identity == observer && entry->key == key; });
    if (latest == _registrations.rend())
        return false;
    (*latest)->removed = true; // a round of notifications may be under way
    _registrations.erase(std::next(latest).base());
    return true;
}

void KeyValueObservers::dropGoneObservers()
{
    std::erase_if(_registrations, [](const auto& entry) { return !entry->observer.lock(); });
}

void KeyValueObservers::willChange(NSObject* object, const NSString& key)
{
    dropGoneObservers();
    Registrations observers;
    std::copy_if(_registrations.begin(), _registrations.end(), std::back_inserter(observers),
        [&key](const auto& entry) { return entry->key == key; });
    if (observers.empty())
        return;
    auto oldValue = anyWants(observers, NSKeyValueObservingOptionOld) ? valueOrNull(object, key) : nullptr;
    for (const auto& observer : observers) {
        if (observer->wants(NSKeyValueObservingOptionPrior))
            notify(*observer, object, oldValue, nullptr, true);
    }
    // Only now: an exception from above means that the change does not take place.
    _pending.push_back({key, std::move(observers), std::move(oldValue)});
}

void KeyValueObservers::didChange(NSObject* object, const NSString& key)
{
    const auto begun = std::find_if(
        _pending.rbegin(), _pending.rend(), [&key](const auto& change) { return change.key == key; });
    if (begun == _pending.rend())
        return;
    const auto [changedKey, observers, oldValue] = std::move(*begun);
    _pending.erase(std::next(begun).base());

    const auto newValue =
        anyWants(observers, NSKeyValueObservingOptionNew) ? valueOrNull(object, key) : nullptr;
    for (const auto& observer : observers)
        notify(*observer, object, oldValue, newValue, false);
}

void NSObject::addObserver(NSObject* observer, const NSString& keyPath, NSUInteger options, void* context)
{
    if (!observer || keyPath.isNull())
        return;
    if (keyPath.containsString("."))
        NSException::raise(
            NSInvalidArgumentException, "Only a single key can be observed, not a path of several.");
    if (!_observers)
        _observers = new KeyValueObservers;
    const RetainPtr<NSObject> keptWhileTelling(this);
    _observers->add(this,
        std::make_shared<Registration>(
            Registration{WeakPtr<NSObject>(observer), observer, keyPath, options, context}));
}

void NSObject::removeObserver(NSObject* observer, const NSString& keyPath)
{
    if (!_observers || !_observers->remove(observer, keyPath))
        NSException::raise(
            NSRangeException, "An observer that was not added for that key cannot be removed.");
}

void NSObject::tellWillChange(const NSString& key)
{
    const RetainPtr<NSObject> keptWhileTelling(this);
    _observers->willChange(this, key);
}

void NSObject::tellDidChange(const NSString& key)
{
    const RetainPtr<NSObject> keptWhileTelling(this);
    _observers->didChange(this, key);
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
