#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

/// How a RetainPtr takes and gives up references to a `T`.
///
/// The primary template serves every class derived from NSObject. The header of a Core Foundation style
/// record (`CGPath`, `CGColor`, …) specialises it with that record's own Retain and Release functions.
template <class T> struct RetainTraits {
    static void retain(T* object) noexcept { object->retain(); }
    static void release(T* object) noexcept { object->release(); }
};

/// A const record is counted like the plain one.
template <class T> struct RetainTraits<const T> {
    static void retain(const T* object) noexcept { RetainTraits<T>::retain(const_cast<T*>(object)); }
    static void release(const T* object) noexcept { RetainTraits<T>::release(const_cast<T*>(object)); }
};

/// Owns one reference to a reference-counted object and gives it up when it goes out of scope.
///
/// Making one from a plain pointer retains the object, which the pointer only lends; `adopt` takes over a
/// reference that a function with Create or Copy in its name handed out. Null is allowed everywhere.
/// One RetainPtr belongs to one thread at a time; the count behind it is atomic.
template <class T> class RetainPtr {
public:
    RetainPtr() noexcept = default;
    RetainPtr(std::nullptr_t) noexcept { }
    /// Retains `object`, which may be null.
    RetainPtr(T* object) noexcept
        : _object(object)
    {
        retainObject();
    }
    RetainPtr(const RetainPtr& other) noexcept
        : _object(other._object)
    {
        retainObject();
    }
    RetainPtr(RetainPtr&& other) noexcept
        : _object(std::exchange(other._object, nullptr))
    {
    }
    template <class U>
    requires std::is_convertible_v<U*, T*> RetainPtr(const RetainPtr<U>& other)
    noexcept
        : RetainPtr(other.get())
    {
    }
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
    T* operator->() const noexcept { return _object; }
    T& operator*() const noexcept { return *_object; }
    explicit operator bool() const noexcept { return _object; }

    /// Hands the reference to the caller, who releases it; this pointer becomes null.
    [[nodiscard]] T* leak() noexcept { return std::exchange(_object, nullptr); }

    /// Takes over a reference that the caller owns. See also the free function `adopt`.
    [[nodiscard]] static RetainPtr adopt(T* object) noexcept
    {
        RetainPtr result;
        result._object = object;
        return result;
    }

    template <class U> bool operator==(const RetainPtr<U>& other) const noexcept
    {
        return _object == other.get();
    }
    bool operator==(const T* other) const noexcept { return _object == other; }
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
