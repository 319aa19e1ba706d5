#pragma once

#include <Foundation/NSObjCRuntime.h>

#include <concepts>
#include <cstddef>
#include <type_traits>
#include <utility>

/// How a RetainPtr retains and releases a `T`.
///
/// The primary template serves every class derived from NSObject. The header of a Core Foundation style
/// record (`CGPath`, `CGColor`, …) specialises it with that record's own Retain and Release functions.
template <class T> struct RetainTraits {
    /// Adds a reference.
    static void retain(T* object) noexcept { object->retain(); }
    /// Removes a reference.
    static void release(T* object) noexcept { object->release(); }
};

/// A const record is counted like the plain one.
template <class T> struct RetainTraits<const T> {
    static void retain(const T* object) noexcept { RetainTraits<T>::retain(const_cast<T*>(object)); }
    static void release(const T* object) noexcept { RetainTraits<T>::release(const_cast<T*>(object)); }
};

/// Owns one reference to a reference-counted object and releases it when it goes out of scope.
///
/// Making one from a plain pointer retains the object; `adopt` takes over the reference that a function with
/// Create or Copy in its name returned. Null is allowed everywhere.
///
/// A signature shows what a function does with an object. One that retains it takes a `RetainPtr<T>` by
/// value: pass a RetainPtr, a plain pointer, or the result of `make`. One that only looks at it takes a
/// `T*`, to which a RetainPtr variable converts by itself:
///
///     auto code = make<ZRQRView>(frame);
///     window->setContentView(code);                   // retained
///     if (code->isDescendantOf(card))                 // looked at; `card` is a RetainPtr too
///         card->addSubview(make<ZRCapsuleView>(frame));
///
/// A temporary does not convert, since the plain pointer would outlive the object: give it a name, or pass
/// `get()` where the pointer is used within the same expression only.
///
/// One RetainPtr belongs to one thread at a time; the count behind it is atomic.
template <class T> class RetainPtr {
public:
    RetainPtr() noexcept = default;
    /// Null.
    RetainPtr(std::nullptr_t) noexcept { }
    /// Retains `object`, which may be null.
    RetainPtr(T* object) noexcept
        : _object(object)
    {
        retainObject();
    }
    /// Retains the object of `other`.
    RetainPtr(const RetainPtr& other) noexcept
        : _object(other._object)
    {
        retainObject();
    }
    /// Takes the reference of `other`, which becomes null.
    RetainPtr(RetainPtr&& other) noexcept
        : _object(std::exchange(other._object, nullptr))
    {
    }
    /// Retains the object of `other`, a pointer to a derived class.
    template <class U>
    requires std::is_convertible_v<U*, T*> RetainPtr(const RetainPtr<U>& other)
    noexcept
        : RetainPtr(other.get())
    {
    }
    /// Takes the reference of `other`, a pointer to a derived class, which becomes null.
    template <class U>
    requires std::is_convertible_v<U*, T*> RetainPtr(RetainPtr<U>&& other)
    noexcept
        : _object(other.leak())
    {
    }
    ~RetainPtr()
    {
        if (_object)
            RetainTraits<T>::release(_object);
    }

    /// Retains the new object before the old one is released, so self-assignment is safe.
    RetainPtr& operator=(RetainPtr other) noexcept
    {
        std::swap(_object, other._object);
        return *this;
    }

    /// The object, still owned by this pointer. Null when there is none.
    T* get() const noexcept { return _object; }
    /// The same, implicitly: a variable may be passed where a plain pointer is expected.
    operator T*() const& noexcept { return _object; }
    /// A temporary releases its object too early for that.
    operator T*() const&& = delete;
    /// A member of the object, which must not be null.
    T* operator->() const noexcept { return _object; }
    /// The object, which must not be null.
    T& operator*() const noexcept { return *_object; }
    /// Whether there is an object, in conditions only.
    explicit operator bool() const noexcept { return _object; }
    /// A RetainPtr is no truth value elsewhere, for example as a function's argument.
    template <std::same_as<bool> Boolean> operator Boolean() const = delete;

    /// Returns the object with its reference, which the caller releases; this pointer becomes null.
    [[nodiscard]] T* leak() noexcept { return std::exchange(_object, nullptr); }

    /// Takes over a reference that the caller owns. See also the free function `adopt`.
    [[nodiscard]] static RetainPtr adopt(T* object) noexcept
    {
        RetainPtr result;
        result._object = object;
        return result;
    }

    /// True for the same object, and for two null pointers.
    template <class U> bool operator==(const RetainPtr<U>& other) const noexcept
    {
        return _object == other.get();
    }
    /// True for the same object, and for two null pointers.
    template <class U> bool operator==(U* other) const noexcept { return _object == other; }
    /// True when there is no object.
    bool operator==(std::nullptr_t) const noexcept { return !_object; }

private:
    void retainObject() const noexcept
    {
        if (_object)
            RetainTraits<T>::retain(_object);
    }

    T* _object = nullptr;
};

/// Takes over the reference that a Create or Copy function returned: `auto path =
/// adopt(CGPathCreateMutable());`
template <class T> [[nodiscard]] RetainPtr<T> adopt(T* object) noexcept
{
    return RetainPtr<T>::adopt(object);
}

/// Makes an object of a class derived from NSObject: `auto view = make<ZRQRView>(frame);`
template <class T, class... Args> [[nodiscard]] RetainPtr<T> make(Args&&... args)
{
    return RetainPtr<T>::adopt(new T(std::forward<Args>(args)...));
}
