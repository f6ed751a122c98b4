#include "BenchGlobe.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QByteArray>

#include <algorithm>
#include <vector>

namespace {

/// Reports under the names that the benchmarks were given, without how often
/// and by which clock they were run.
template <typename Reporter> class PlainNames : public Reporter
{
public:
    using Reporter::Reporter;

    void ReportRuns(const std::vector<benchmark::BenchmarkReporter::Run>& runs) override
    {
        auto plain = runs;
        for (auto& run : plain) {
            run.run_name.iterations.clear();
            run.run_name.time_type.clear();
        }
        Reporter::ReportRuns(plain);
    }
};

bool hasOutputFile(int argc, char** argv)
{
    return std::any_of(argv, argv + argc, [](const char* argument) {
        return QByteArray(argument).startsWith("--benchmark_out=");
    });
}

} // namespace

int main(int argc, char** argv)
{
    const bool toFile = hasOutputFile(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    QApplication application(argc, argv);
    PlainNames<benchmark::ConsoleReporter> console(benchmark::ConsoleReporter::OO_Tabular);
    PlainNames<benchmark::JSONReporter> json;
    benchmark::RunSpecifiedBenchmarks(&console, toFile ? &json : nullptr);
    bench::close();
    return 0;
}
