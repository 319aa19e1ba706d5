#include "Table.h"

#include <algorithm>
#include <random>
#include <stdexcept>

std::vector<Table>& tables()
{
    static std::vector<Table> all;
    return all;
}

void addTable(Table table)
{
    tables().push_back(std::move(table));
}

void addBenchmark(const std::string& table, const std::string& name, const std::string& contender,
    std::function<void(benchmark::State&)> run)
{
    const auto found = std::find_if(
        tables().begin(), tables().end(), [&table](const Table& each) { return each.name == table; });
    if (found == tables().end())
        throw std::logic_error("no table is named " + table);
    auto& benchmarks = found->benchmarks;
    // Behind those of the same case.
    const auto last = std::find_if(
        benchmarks.rbegin(), benchmarks.rend(), [&name](const Benchmark& each) { return each.name == name; });
    benchmarks.insert(
        last == benchmarks.rend() ? benchmarks.end() : last.base(), {name, contender, std::move(run)});
}

std::string fullName(const Table& table, const std::string& name, const std::string& contender)
{
    return table.name + "/" + name + "/" + contender;
}

void registerBenchmarks(unsigned round)
{
    benchmark::ClearRegisteredBenchmarks();
    std::mt19937 random(round);
    for (const Table& table : tables()) {
        for (auto first = table.benchmarks.begin(); first != table.benchmarks.end();) {
            const auto end = std::find_if(first, table.benchmarks.end(),
                [&first](const Benchmark& each) { return each.name != first->name; });
            std::vector<Benchmark> contenders(first, end);
            std::shuffle(contenders.begin(), contenders.end(), random);
            for (const Benchmark& each : contenders)
                benchmark::RegisterBenchmark(fullName(table, each.name, each.contender).c_str(), each.run)
                    ->MeasureProcessCPUTime();
            first = end;
        }
    }
}
