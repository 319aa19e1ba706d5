#pragma once

#include <locale.h>

/// The locale of programs: a decimal point is a point. An application's may be another one, as window
/// systems set the user's. Never freed.
inline locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

/// The locale of programs for this thread, as long as it exists.
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
