// Runs the benchmarks in several rounds and prints their tables. Takes the options of Google Benchmark, and
// --check=FILE, which compares the ratios with those of the tables in a file, and prints and fails for those
// that have become greater.

#include "Benchmarks.h"
#include "TableReporter.h"

#include <QApplication>

#include <fstream>
#include <iostream>

namespace {

/// Removes the option --check=FILE, and returns the file's path; empty when there is none.
std::string takeCheckedFile(int& argc, char** argv)
{
    const std::string option = "--check=";
    for (int i = 1; i < argc; ++i) {
        if (!std::string(argv[i]).starts_with(option))
            continue;
        std::string path = argv[i] + option.size();
        std::copy(argv + i + 1, argv + argc + 1, argv + i); // with the null pointer at the end
        --argc;
        return path;
    }
    return {};
}

} // namespace

int main(int argc, char** argv)
{
    // Qt needs an application to draw text and to show windows; this window system needs no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);

    addFlatteningBenchmarks();
    addDistanceBenchmarks();
    addSimplificationBenchmarks();
    addHexBenchmarks();
    addQRBenchmarks();
    addNoiseBenchmarks();
    addBlurBenchmarks();
    addAngleBenchmarks();
    addGradientBenchmarks();
    addShapeBenchmarks();
    addPathBenchmarks();
    addStrokeBenchmarks();
    addClipBenchmarks();
    addBlendBenchmarks();
    addImageBenchmarks();
    addSmallShapeBenchmarks();
    addTextBenchmarks();
    addTruncationBenchmarks();
    addPDFBenchmarks();
    addCapsuleBenchmarks();
    addBadgeBenchmarks();
    addSwitchBenchmarks();
    addScaleBenchmarks();
    addColorPickerBenchmarks();

    const std::string checkedFile = takeCheckedFile(argc, argv);
    std::ifstream document(checkedFile);
    const RecordedTables recorded(document);
    if (!checkedFile.empty() && recorded.isEmpty()) {
        std::cerr << checkedFile << " has no tables\n";
        return 2;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    const Setup setup = currentSetup(); // the load before ours
    constexpr unsigned kRounds = 9;
    TableReporter reporter;
    for (unsigned round = 0; round < kRounds; ++round) {
        registerBenchmarks(round);
        reporter.beginRound();
        if (benchmark::RunSpecifiedBenchmarks(&reporter) == 0)
            return 1; // the filter matches none
        if (reporter.isEmpty())
            return 0; // it only listed the names
    }
    if (checkedFile.empty()) {
        reporter.print(setup);
    } else {
        if (!reporter.check(recorded))
            return 1;
        std::cout << "nothing has become slower\n";
    }
    return reporter.hasFailed() ? 1 : 0;
}
