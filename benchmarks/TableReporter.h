#pragma once

#include "RecordedTables.h"
#include "Setup.h"
#include "Table.h"

#include <map>

/// Collects the times of several rounds and prints them as Markdown: for each table the median time of each
/// contender and the median of the rounds' ratios of our time to theirs; then the cases in which we are
/// slower.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    /// The times that are reported from now on belong to the next round.
    void beginRound() { ++_round; }
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Whether nothing has been measured.
    bool isEmpty() const { return _rounds.empty(); }
    /// Whether a benchmark ended with an error.
    bool hasFailed() const { return _hasFailed; }
    /// Prints all tables, below the names and values of `setup`.
    void print(const Setup& setup);
    /// Prints the cases in which our ratio to a contender is greater than in `recorded` by more than the
    /// spread of our times, then or now. Returns whether there is none.
    bool check(const RecordedTables& recorded);

private:
    /// Seconds by round.
    using Rounds = std::map<int, double>;

    struct SlowerCase {
        double ratio;
        std::string description;
    };

    /// Null where the contender has no such case.
    const Rounds* roundsOf(const Table& table, const std::string& name, const std::string& contender) const;
    void printTable(const Table& table);
    void printRow(const Table& table, const std::string& name, const std::vector<std::string>& contenders);
    /// The median of the rounds' ratios of our time to a contender's; nothing where one of us has no such
    /// case.
    std::optional<double> ratio(
        const Table& table, const std::string& name, const std::string& contender) const;
    /// "12.3 us (0.45)", with our ratio where both have the case; empty where the contender does not.
    std::string cell(const Table& table, const std::string& name, const std::string& contender);
    void printSlowerCases();

    int _round = 0;
    std::map<std::string, Rounds> _rounds; ///< by the benchmark's name
    std::vector<SlowerCase> _slowerCases;
    bool _hasFailed = false;
};
