#include "RecordedTables.h"

#include <cstdlib>
#include <vector>

namespace {

constexpr const char* kSpread = "Spread";

/// The cells of a row "| a | b |", without the spaces around them.
std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    std::size_t start = line.find('|');
    for (std::size_t end = line.find('|', start + 1); end != std::string::npos;
         end = line.find('|', start + 1)) {
        const std::string cell = line.substr(start + 1, end - start - 1);
        const std::size_t first = cell.find_first_not_of(' ');
        cells.push_back(
            first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
        start = end;
    }
    return cells;
}

std::string key(const std::string& title, const std::string& heading, const std::string& contender = {})
{
    return title + "|" + heading + "|" + contender;
}

} // namespace

RecordedTables::RecordedTables(std::istream& document)
{
    std::string title;
    std::vector<std::string> columns;
    for (std::string line; std::getline(document, line);) {
        if (line.starts_with("### ")) {
            title = line.substr(4);
            columns.clear();
            continue;
        }
        if (!line.starts_with("|"))
            continue;
        const auto cells = cellsOf(line);
        if (!cells.empty() && cells.front() == "Case") {
            columns = cells;
            continue;
        }
        for (std::size_t i = 1; i < cells.size() && i < columns.size(); ++i) {
            const std::string& cell = cells[i];
            if (columns[i] == kSpread)
                _spreads[key(title, cells.front())] = std::strtod(cell.c_str(), nullptr) / 100;
            else if (const std::size_t bracket = cell.find('('); bracket != std::string::npos)
                _ratios[key(title, cells.front(), columns[i])] =
                    std::strtod(cell.c_str() + bracket + 1, nullptr);
        }
    }
}

std::optional<double> RecordedTables::ratio(
    const std::string& title, const std::string& heading, const std::string& contender) const
{
    const auto found = _ratios.find(key(title, heading, contender));
    if (found == _ratios.end())
        return std::nullopt;
    return found->second;
}

double RecordedTables::spread(const std::string& title, const std::string& heading) const
{
    const auto found = _spreads.find(key(title, heading));
    return found == _spreads.end() ? 0 : found->second;
}
