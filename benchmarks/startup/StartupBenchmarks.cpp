// Starts small programs many times, in turns, and prints what they take as a table: `StartupBenchmarks
// [ROUNDS]`. Each row also has the ratio to cairo and Pango alone.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct Program {
    const char* title;
    std::vector<std::string> words;              ///< the file and its arguments
    std::vector<double> wall, processor, memory; ///< in ms, ms and MB, by round
};

double milliseconds(const timeval& time)
{
    return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
}

/// Runs the program once and stores what it took. False when it fails.
bool measure(Program& program)
{
    std::vector<char*> arguments;
    for (std::string& word : program.words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    if (posix_spawn(&process, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
        return false;
    int status = 0;
    rusage usage{};
    wait4(process, &status, 0, &usage);
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    program.wall.push_back(wall.count());
    program.processor.push_back(milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime));
    program.memory.push_back(double(usage.ru_maxrss) / 1024);
    return status == 0;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// The median of the ratios within each round.
double medianRatio(const std::vector<double>& values, const std::vector<double>& others)
{
    std::vector<double> ratios(values.size());
    std::transform(values.begin(), values.end(), others.begin(), ratios.begin(), std::divides<>());
    return median(ratios);
}

} // namespace

int main(int count, char** arguments)
{
    const int rounds = count > 1 ? std::atoi(arguments[1]) : 41;
    if (rounds < 1) {
        std::fprintf(stderr, "Usage: StartupBenchmarks [ROUNDS]\n");
        return 2;
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 1); // the window appears in memory
    const auto folder = std::filesystem::canonical("/proc/self/exe").parent_path();
    const std::string ours = folder / "Startup", plain = folder / "PlainStartup";
    const std::string file =
        std::filesystem::temp_directory_path() / ("startup-" + std::to_string(getpid()) + ".png");
    Program programs[] = {{"cairo and Pango, picture", {plain, "picture", file}, {}, {}, {}},
        {"KorvidAppKit, picture", {ours, "picture", file}, {}, {}, {}},
        {"KorvidAppKit, window", {ours, "window"}, {}, {}, {}}};

    for (int round = 0; round < rounds; ++round) {
        for (Program& program : programs) {
            if (!measure(program)) {
                std::fprintf(stderr, "%s failed\n", program.words[0].c_str());
                return 1;
            }
        }
    }
    std::filesystem::remove(file);

    std::puts("| Program | Time | Processor time | Memory |\n|---|---|---|---|");
    const Program& base = programs[0];
    for (const Program& program : programs)
        std::printf("| %s | %.1f ms (%.2f) | %.1f ms (%.2f) | %.1f MB (%.2f) |\n", program.title,
            median(program.wall), medianRatio(program.wall, base.wall), median(program.processor),
            medianRatio(program.processor, base.processor), median(program.memory),
            medianRatio(program.memory, base.memory));
}
