#pragma once

#include <istream>
#include <map>
#include <optional>
#include <string>

/// The ratios and spreads of the tables that an earlier run printed.
class RecordedTables {
public:
    /// Reads the tables of a document in Markdown; skips what is no table of benchmarks.
    explicit RecordedTables(std::istream& document);

    bool isEmpty() const { return _ratios.empty(); }
    /// Our time divided by the contender's. Nothing where the tables have no such cell.
    std::optional<double> ratio(
        const std::string& title, const std::string& heading, const std::string& contender) const;
    /// The coefficient of variation of our times, 0.03 for "3 %"; 0 where there is none.
    double spread(const std::string& title, const std::string& heading) const;

private:
    std::map<std::string, double> _ratios;  ///< by title, heading and contender
    std::map<std::string, double> _spreads; ///< by title and heading
};
