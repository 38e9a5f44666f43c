// What the benchmarks share: a console reporter that keeps the best CPU time of each benchmark
// and prints the ratios between two of them after the run, the headline lines that scripts/bench
// gathers into its summary, and the peak memory of one piece of work measured in a child
// process.
#pragma once

#include "document/memory_policy.h"
#include "profile/profile.h"
#include "tagtypes/tag_factory.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Prints as usual and keeps each benchmark's best time in seconds per iteration, whatever unit
// the run was reported in. CPU time of the benchmark thread (user and system, so page faults and
// the kernel's copies count) rather than wall time: on a shared machine wall time mostly measures
// the neighbours. Work that uses more than one thread is registered with timedOnTheWall(), and
// its wall time is kept instead: the benchmark thread's CPU time would miss the other threads.
class BestTimes : public benchmark::ConsoleReporter {
public:
    explicit BestTimes(OutputOptions options = OO_Defaults) : ConsoleReporter(options) {}

    // Plain columns when the output is not a terminal.
    static OutputOptions terminalOptions() {
        return isatty(STDOUT_FILENO) ? OO_Defaults : OO_Tabular;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            const bool wall = run.run_name.time_type.find("real_time") != std::string::npos;
            const double seconds = (wall ? run.real_accumulated_time : run.cpu_accumulated_time) /
                                   double(run.iterations);
            auto [it, added] = best.try_emplace(run.run_name.function_name, seconds);
            if (!added)
                it->second = std::min(it->second, seconds);
        }
    }

    // The best time of `name` over that of `baseline`; empty when either did not run.
    std::optional<double> ratio(const std::string& name, const std::string& baseline) const {
        const auto a = best.find(name), b = best.find(baseline);
        if (a == best.end() || b == best.end() || b->second <= 0)
            return std::nullopt;
        return a->second / b->second;
    }

    // "ratio <label> = 1.23", or "= n/a" when either did not run.
    void printRatio(const std::string& label, const std::string& name,
                    const std::string& baseline) const {
        if (const auto r = ratio(name, baseline))
            std::printf("ratio %s = %.2f\n", label.c_str(), *r);
        else
            std::printf("ratio %s = n/a\n", label.c_str());
    }

    std::map<std::string, double> best;
};

// Wall time for BestTimes, and the CPU time of every thread of the process in the CPU column.
inline benchmark::internal::Benchmark* timedOnTheWall(benchmark::internal::Benchmark* b) {
    return b->UseRealTime()->MeasureProcessCPUTime();
}

// One headline figure: "summary: " and the formatted text. scripts/bench repeats these lines at
// the end of its run.
[[gnu::format(printf, 1, 2)]] inline void printSummary(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    std::fputs("summary: ", stdout);
    std::vprintf(format, args);
    std::fputc('\n', stdout);
    va_end(args);
}

struct ChildPeak {
    long baselineKb = -1; // the child's peak resident set before the work
    long peakKb = -1;     // its peak resident set after it
    bool ok = false;      // the child did the work and sent its baseline
};

// Forks a child that only runs `work` (true when it succeeded). The child inherits this
// process's pages, hence the baseline it reports before the work; the difference is what the
// work itself needed.
template <class Work> ChildPeak measureChildPeak(Work work) {
    ChildPeak result;
    int fds[2];
    if (pipe(fds) != 0)
        return result;
    const pid_t pid = fork();
    if (pid < 0)
        return result;
    if (pid == 0) {
        close(fds[0]);
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        const long baseline = usage.ru_maxrss;
        const bool done = work();
        const bool sent = write(fds[1], &baseline, sizeof baseline) == sizeof baseline;
        _exit(done && sent ? 0 : 1);
    }
    close(fds[1]);
    if (read(fds[0], &result.baselineKb, sizeof result.baselineKb) != sizeof result.baselineKb)
        result.baselineKb = -1;
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children);
    result.peakKb = children.ru_maxrss;
    result.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return result;
}

// The start every benchmark program shares: the programs' allocator policy, Google Benchmark's
// arguments and a fresh scratch folder named after the program. Nothing for wrong arguments.
inline std::optional<std::filesystem::path> startBenchmarks(int& argc, char** argv,
                                                            const std::string& name) {
    keepLargeBlocksForReuse();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return std::nullopt;
    const auto dir = std::filesystem::temp_directory_path() /
                     ("veltrino-bench-" + name + "-" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    return dir;
}

// Decodes every tag of the profile with the class its type signature names; false when one
// fails.
inline bool decodeEveryTag(iccProfileRW& profile) {
    for (int i = 0; i < profile.tagCount(); ++i) {
        std::unique_ptr<iccTagType> tag;
        if (loadTagType(profile, i, tag) != icOk)
            return false;
    }
    return true;
}
