#include "BenchGlobe.h"

#include <benchmark/benchmark.h>

#include <QApplication>

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    QApplication application(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    bench::close();
    return 0;
}
