#pragma once

// How benchmarks are added. Those of one table are named "table/case/contender", as in
// "stroke/ellipse/400x300/cairo": its rows are the cases, its columns the contenders. The times are processor
// times of all threads together.

#include "Canvas.h"

#include <benchmark/benchmark.h>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// The contender that the others are compared with.
inline constexpr const char* kOurs = "KorvidAppKit";

/// What one contender does in one case.
struct Benchmark {
    std::string name; ///< of the case
    std::string contender;
    std::function<void(benchmark::State&)> run;
};

/// One table of docs/performance.md.
struct Table {
    std::string name;                    ///< the first part of its benchmarks' names
    std::string title;                   ///< its heading
    std::string note;                    ///< what a reader has to know about its cases
    std::vector<Benchmark> benchmarks{}; ///< those of one case stand together
};

/// All tables, in the order in which they were added.
std::vector<Table>& tables();

/// Adds a table, which the functions below refer to by its name.
void addTable(Table table);

/// Adds what one contender does in one case.
void addBenchmark(const std::string& table, const std::string& name, const std::string& contender,
    std::function<void(benchmark::State&)> run);

/// The name of the benchmark for Google Benchmark: "table/case/contender".
std::string fullName(const Table& table, const std::string& name, const std::string& contender);

/// Registers all benchmarks with Google Benchmark, in place of those that it has. The contenders of a case
/// follow each other, in an order that depends on `round`.
void registerBenchmarks(unsigned round);

/// Sets how many items one iteration processes: the table then lists the time of one item.
inline void setItems(benchmark::State& state, std::size_t count)
{
    state.counters["items"] = double(count);
}

/// Adds `draw(canvas, size)` for a canvas of each type, whose colour has an alpha.
template <class... Canvases, class Draw>
void addDrawing(const std::string& table, const std::string& name, Size size, double alpha, Draw draw)
{
    const auto add = [&]<class Canvas>(const Canvas*) {
        addBenchmark(table, name, Canvas::kLibrary, [=](benchmark::State& state) {
            Canvas canvas(size, alpha);
            for (auto _ : state)
                draw(canvas, size);
        });
    };
    (add(static_cast<const Canvases*>(nullptr)), ...);
}

/// Adds the same at each of `kSizes` in an opaque colour.
template <class... Canvases, class Draw>
void addDrawings(const std::string& table, const std::string& name, Draw draw)
{
    for (const Size size : kSizes)
        addDrawing<Canvases...>(table, name + "/" + nameOf(size), size, 1, draw);
}
