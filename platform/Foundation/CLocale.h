#pragma once

#include <locale.h>

/// The "C" locale, with a point as decimal separator. The process may have another one, as window systems set
/// the user's. Never freed.
inline locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

/// Sets the "C" locale for this thread, while in scope.
class ScopedCLocale {
public:
    ScopedCLocale()
        : _previous(uselocale(cLocale()))
    {
    }
    ScopedCLocale(const ScopedCLocale&) = delete;
    ScopedCLocale& operator=(const ScopedCLocale&) = delete;
    ~ScopedCLocale() { uselocale(_previous); }

private:
    locale_t _previous;
};
