// Runs the benchmarks and shows, beside each, how many times faster it is than the plain form of its group.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& reports) override {
        std::vector<Run> shown = reports;
        for (Run& run : shown) {
            const std::string name = run.benchmark_name();
            const std::string group = name.substr(0, name.find('/'));
            const std::string rest = name.substr(name.find('/') + 1);
            const bool isPlain = rest.rfind("plain", 0) == 0;
            const double time = run.GetAdjustedCPUTime();
            // With repetitions the medians are compared.
            const bool counts = run.run_type == Run::RT_Iteration || run.aggregate_name == "median";
            if (!counts) continue;
            if (isPlain) plain_[group] = time;
            if (plain_.count(group) != 0 && time > 0) run.counters["times_plain"] = plain_[group] / time;
        }
        benchmark::ConsoleReporter::ReportRuns(shown);
    }

private:
    std::map<std::string, double> plain_;
};

}  // namespace

int main(int argc, char** argv) {
#if !defined(NDEBUG)
    std::fputs("Benchmarks say nothing with assertions on; build the release preset.\n", stderr);
    return 1;
#else
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
#endif
}
