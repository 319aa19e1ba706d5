#include "TableReporter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ostream>

namespace {

/// Ratios up to this are within what two runs on one machine differ by.
constexpr double kSlower = 1.05;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

template <class Map> std::vector<double> valuesOf(const Map& map)
{
    std::vector<double> values;
    values.reserve(map.size());
    for (const auto& [key, value] : map)
        values.push_back(value);
    return values;
}

/// Three digits: "1.23", "12.3", "123".
std::string threeDigits(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", value < 9.995 ? 2 : value < 99.95 ? 1 : 0, value);
    return text;
}

/// "12.3 us"
std::string timeText(double seconds)
{
    if (seconds < 1e-6)
        return threeDigits(seconds * 1e9) + " ns";
    if (seconds < 1e-3)
        return threeDigits(seconds * 1e6) + " us";
    return seconds < 1 ? threeDigits(seconds * 1e3) + " ms" : threeDigits(seconds) + " s";
}

/// The coefficient of variation.
double spreadOf(const std::vector<double>& values)
{
    double sum = 0;
    for (const double value : values)
        sum += value;
    const double mean = sum / double(values.size());
    double squares = 0;
    for (const double value : values)
        squares += (value - mean) * (value - mean);
    return values.size() > 1 ? std::sqrt(squares / double(values.size() - 1)) / mean : 0;
}

/// "3 %"
std::string spreadText(const std::vector<double>& values)
{
    return std::to_string(std::lround(100 * spreadOf(values))) + " %";
}

void addOnce(std::vector<std::string>& names, const std::string& name)
{
    if (std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(name);
}

/// The case as a row's heading: its parts with commas between them.
std::string headingOf(std::string name)
{
    for (std::size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/'))
        name.replace(slash, 1, ", ");
    return name;
}

} // namespace

bool TableReporter::ReportContext(const Context&)
{
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        const std::string& name = run.run_name.function_name;
        if (run.error_occurred) {
            GetErrorStream() << name << ": " << run.error_message << "\n";
            _hasFailed = true;
            continue;
        }
        const auto items = run.counters.find("items");
        const double count = items != run.counters.end() ? double(items->second) : 1;
        _rounds[name][_round] = run.cpu_accumulated_time / double(run.iterations) / count;
    }
}

void TableReporter::print(const Setup& setup)
{
    std::ostream& out = GetOutputStream();
    out << "| Measured on | |\n|---|---|\n";
    for (const auto& [name, value] : setup)
        out << "| " << name << " | " << value << " |\n";
    for (const Table& table : tables())
        printTable(table);
    printSlowerCases();
}

const TableReporter::Rounds* TableReporter::roundsOf(
    const Table& table, const std::string& name, const std::string& contender) const
{
    const auto found = _rounds.find(fullName(table, name, contender));
    return found != _rounds.end() ? &found->second : nullptr;
}

void TableReporter::printTable(const Table& table)
{
    // Those that --benchmark_filter left.
    std::vector<std::string> names;
    std::vector<std::string> contenders;
    for (const Benchmark& each : table.benchmarks) {
        if (roundsOf(table, each.name, each.contender)) {
            addOnce(names, each.name);
            addOnce(contenders, each.contender);
        }
    }
    if (names.empty())
        return;

    std::ostream& out = GetOutputStream();
    out << "\n### " << table.title << "\n\n" << table.note << "\n\n| Case |";
    for (const std::string& contender : contenders)
        out << " " << contender << (contender == kOurs ? " | Spread |" : " |");
    out << "\n|---|";
    for (const std::string& contender : contenders)
        out << (contender == kOurs ? "---|---|" : "---|");
    out << "\n";
    for (const std::string& name : names)
        printRow(table, name, contenders);
}

void TableReporter::printRow(
    const Table& table, const std::string& name, const std::vector<std::string>& contenders)
{
    std::ostream& out = GetOutputStream();
    out << "| " << headingOf(name) << " |";
    for (const std::string& contender : contenders) {
        out << " " << cell(table, name, contender) << " |";
        if (contender == kOurs) {
            const Rounds* ours = roundsOf(table, name, kOurs);
            out << " " << (ours ? spreadText(valuesOf(*ours)) : "") << " |";
        }
    }
    out << "\n";
}

std::optional<double> TableReporter::ratio(
    const Table& table, const std::string& name, const std::string& contender) const
{
    const Rounds* rounds = roundsOf(table, name, contender);
    const Rounds* ours = roundsOf(table, name, kOurs);
    if (!rounds || !ours || contender == kOurs)
        return std::nullopt;
    std::vector<double> ratios;
    for (const auto& [round, seconds] : *rounds) {
        if (const auto own = ours->find(round); own != ours->end())
            ratios.push_back(own->second / seconds);
    }
    if (ratios.empty())
        return std::nullopt;
    return median(ratios);
}

std::string TableReporter::cell(const Table& table, const std::string& name, const std::string& contender)
{
    const Rounds* rounds = roundsOf(table, name, contender);
    if (!rounds)
        return {};
    std::string time = timeText(median(valuesOf(*rounds)));
    const auto found = ratio(table, name, contender);
    if (!found)
        return time;
    if (*found > kSlower)
        _slowerCases.push_back({*found,
            table.title + ", " + headingOf(name) + ": " + threeDigits(*found) + " times the time of "
                + contender});
    return time + " (" + threeDigits(*found) + ")";
}

bool TableReporter::check(const RecordedTables& recorded)
{
    std::ostream& out = GetOutputStream();
    bool hasPassed = true;
    for (const Table& table : tables()) {
        for (const Benchmark& each : table.benchmarks) {
            const auto now = ratio(table, each.name, each.contender);
            const auto before = recorded.ratio(table.title, headingOf(each.name), each.contender);
            if (!now || !before)
                continue;
            const double spread = std::max(spreadOf(valuesOf(*roundsOf(table, each.name, kOurs))),
                recorded.spread(table.title, headingOf(each.name)));
            // The document has two decimals.
            if (*now <= (*before + 0.005) * (1 + spread))
                continue;
            out << "slower: " << table.title << ", " << headingOf(each.name) << ": " << threeDigits(*now)
                << " times the time of " << each.contender << ", was " << threeDigits(*before) << "\n";
            hasPassed = false;
        }
    }
    return hasPassed;
}

void TableReporter::printSlowerCases()
{
    std::stable_sort(_slowerCases.begin(), _slowerCases.end(),
        [](const SlowerCase& a, const SlowerCase& b) { return a.ratio > b.ratio; });
    std::ostream& out = GetOutputStream();
    out << "\n### Where we are slower\n\n";
    for (const SlowerCase& each : _slowerCases)
        out << "- " << each.description << "\n";
    if (_slowerCases.empty())
        out << "In none of these cases.\n";
}
