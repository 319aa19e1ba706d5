// The functions of Highway's library that its headers refer to. The library of version 1.0.3 measures the
// processor's timer while it is loaded, which takes as long as half of cairo's and Pango's first text.

#include "vector/VectorUnits.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#if HWY_ARCH_X86
#include <cpuid.h>
#endif

namespace {

#if HWY_ARCH_X86

/// What the instruction CPUID reports about features.
struct CPUID {
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;

    /// All zero where the processor does not have that leaf.
    static CPUID leaf(unsigned number)
    {
        CPUID result;
        __get_cpuid_count(number, 0, &result.eax, &result.ebx, &result.ecx, &result.edx);
        return result;
    }
};

bool hasBit(unsigned bits, int index)
{
    return (bits >> index & 1) != 0;
}

/// Highway's target for a processor with everything that its code for that target may contain. The compiler's
/// functions also check that the operating system saves the registers; those that not all compilers know
/// accompany others that they do.
std::int64_t detectedTargets()
{
    __builtin_cpu_init();
    std::int64_t targets = 0;
    if (!__builtin_cpu_supports("ssse3"))
        return targets;
    targets |= HWY_SSSE3;
    if (!__builtin_cpu_supports("sse4.1") || !__builtin_cpu_supports("sse4.2")
        || !__builtin_cpu_supports("aes") || !__builtin_cpu_supports("pclmul"))
        return targets;
    targets |= HWY_SSE4;
    const bool hasF16C = hasBit(CPUID::leaf(1).ecx, 29);
    const bool hasLZCNT = hasBit(CPUID::leaf(0x80000001).ecx, 5);
    if (!hasF16C || !hasLZCNT || !__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("fma")
        || !__builtin_cpu_supports("bmi") || !__builtin_cpu_supports("bmi2"))
        return targets;
    targets |= HWY_AVX2;
    if (!__builtin_cpu_supports("avx512f") || !__builtin_cpu_supports("avx512vl")
        || !__builtin_cpu_supports("avx512dq") || !__builtin_cpu_supports("avx512bw")
        || !__builtin_cpu_supports("avx512cd"))
        return targets;
    targets |= HWY_AVX3;
    const bool hasVAES = hasBit(CPUID::leaf(7).ecx, 9);
    if (hasVAES && __builtin_cpu_supports("avx512vnni") && __builtin_cpu_supports("vpclmulqdq")
        && __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2")
        && __builtin_cpu_supports("avx512vpopcntdq") && __builtin_cpu_supports("avx512bitalg")
        && __builtin_cpu_supports("gfni"))
        targets |= HWY_AVX3_DL;
    return targets;
}

#else

/// Other processors run what the compiler was told to compile for.
std::int64_t detectedTargets()
{
    return 0;
}

#endif

} // namespace

namespace hwy {

std::int64_t SupportedTargets()
{
    return detectedTargets() | HWY_STATIC_TARGET;
}

ChosenTarget& GetChosenTarget()
{
    return vectorUnits();
}

/// Reports a failed check, of which Highway's headers have some when compiled for debugging.
void Abort(const char* file, int line, const char* format, ...)
{
    std::va_list values;
    va_start(values, format);
    std::fprintf(stderr, "%s:%d: ", file, line);
    std::vfprintf(stderr, format, values);
    std::fputc('\n', stderr);
    va_end(values);
    std::abort();
}

} // namespace hwy
