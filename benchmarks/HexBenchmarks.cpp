// Hex colour strings: parsing them, and looking their colours up.

#include "Benchmarks.h"
#include "PlainHexParser.h"
#include "Table.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <charconv>
#include <cstring>

namespace {

constexpr const char* kTable = "hex colour";

/// The plain loop with the fastest conversion of the standard library, which takes no signs and no blanks.
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
    // Both lengths, with digits in both cases.
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
    setItems(state, strings.size());
}

/// With a literal, as in drawing code: the string that is made from it counts.
template <std::size_t length> void lookUp(benchmark::State& state, const char (&hex)[length])
{
    ZRGraphics* const graphics = ZRGraphics::sharedGraphics();
    for (const ZRNamedColor& color : ZRGraphics::builtInColors())
        graphics->CGColorFromHex(color.hex);
    for (auto _ : state)
        benchmark::DoNotOptimize(graphics->CGColorFromHex(hex));
}

} // namespace

void addHexBenchmarks()
{
    addTable({kTable, "Hex colours",
        "Parsing takes the time of one string, on average over the built-in palette. A look-up finds the "
        "cached "
        "colour of a literal, among those of the palette."});
    const auto add = [](const char* contender, void (*parser)(const char*, double*)) {
        addBenchmark(kTable, "parse", contender, [parser](benchmark::State& state) { parse(state, parser); });
    };
    add(kOurs, ZRGraphics::hexColor);
    add("from_chars loop", fromCharsHexColor);
    add("strtol loop", plainHexColor);
    addBenchmark(kTable, "look up/2 digits", kOurs, [](benchmark::State& state) { lookUp(state, "aa"); });
    addBenchmark(kTable, "look up/6 digits", kOurs, [](benchmark::State& state) { lookUp(state, "ffffff"); });
    addBenchmark(kTable, "look up/8 digits, upper case", kOurs,
        [](benchmark::State& state) { lookUp(state, "02031D88"); });
}
