#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <hwy/targets.h> // its program links KorvidVectorUnits

/// Calls `test` once for each set of vector instructions that the machine supports and the build compiles,
/// with the library limited to that set, and once with the portable code for machines without any.
template <class Test> void onEachVectorUnit(const Test& test)
{
    const auto run = [&](std::int64_t unit) {
        SCOPED_TRACE(hwy::TargetName(unit));
        hwy::GetChosenTarget().Update(unit);
        test();
    };
    const std::int64_t all = hwy::SupportedTargets() & HWY_TARGETS & ~HWY_EMU128;
    for (std::int64_t left = all; left != 0; left &= left - 1)
        run(left & -left);
    run(HWY_EMU128);
    hwy::GetChosenTarget().DeInit();
}
