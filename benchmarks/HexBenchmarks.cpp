// Hex colour strings: reading one, beside the plain loop and the standard library, and looking its colour up.

#include "PlainHexParser.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <benchmark/benchmark.h>
#include <charconv>
#include <cstring>
#include <vector>

namespace {

/// The same as the plain loop with what the standard library offers for speed; it takes no signs or blanks.
void fromCharsHexColor(const char* string, double rgba[4])
{
    const std::size_t length = std::strlen(string);
    if (length != 6 && length != 8)
        return;
    rgba[3] = 1;
    for (std::size_t i = 0; i < length / 2; ++i) {
        int value = 0;
        std::from_chars(string + 2 * i, string + 2 * i + 2, value, 16);
        rgba[i] = value / 255.0;
    }
}

void parse(benchmark::State& state, void (*parser)(const char*, double*))
{
    // The built-in palette: both lengths, digits in both cases.
    std::vector<const char*> strings;
    for (const ZRNamedColor& color : ZRGraphics::builtInColors())
        strings.push_back(color.hex);
    double rgba[4]{};
    for (auto _ : state) {
        for (const char* string : strings) {
            parser(string, rgba);
            benchmark::DoNotOptimize(rgba);
            benchmark::ClobberMemory();
        }
    }
}

BENCHMARK_CAPTURE(parse, ours, ZRGraphics::hexColor)->Name("parseHex/all built-in colours/ours");
BENCHMARK_CAPTURE(parse, from_chars, fromCharsHexColor)->Name("parseHex/all built-in colours/from_chars");
BENCHMARK_CAPTURE(parse, strtol, plainHexColor)->Name("parseHex/all built-in colours/strtol loop");

/// Each look-up is written as drawing code writes it: with a literal, the text made from it included.
void lookUp(benchmark::State& state, CGColorRef (*look)(ZRGraphics*))
{
    ZRGraphics* const graphics = ZRGraphics::sharedGraphics();
    for (const ZRNamedColor& color : ZRGraphics::builtInColors())
        graphics->CGColorFromHex(color.hex);
    for (auto _ : state)
        benchmark::DoNotOptimize(look(graphics));
}

BENCHMARK_CAPTURE(lookUp, gray, [](ZRGraphics* graphics) {
    return graphics->CGColorFromHex("aa");
})->Name("CGColorFromHex/2 digits");
BENCHMARK_CAPTURE(lookUp, opaque, [](ZRGraphics* graphics) {
    return graphics->CGColorFromHex("ffffff");
})->Name("CGColorFromHex/6 digits");
BENCHMARK_CAPTURE(lookUp, upper, [](ZRGraphics* graphics) {
    return graphics->CGColorFromHex("02031D88");
})->Name("CGColorFromHex/8 digits, upper case");

} // namespace
