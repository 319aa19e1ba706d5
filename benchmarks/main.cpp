// Runs the benchmarks in several rounds and prints their tables. Takes the options of Google Benchmark.

#include "Benchmarks.h"
#include "TableReporter.h"

#include <QApplication>

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
    addClipBenchmarks();
    addBlendBenchmarks();
    addImageBenchmarks();
    addSmallShapeBenchmarks();
    addTextBenchmarks();
    addTruncationBenchmarks();
    addCapsuleBenchmarks();
    addBadgeBenchmarks();
    addSwitchBenchmarks();
    addColorPickerBenchmarks();

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
    reporter.print(setup);
    return reporter.hasFailed() ? 1 : 0;
}
