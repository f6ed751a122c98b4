// Names that are looked for while somebody types.
#include <AxAlgorthm/AxNameIndex.h>

#include <benchmark/benchmark.h>

#include <random>

namespace {

/// 100,000 names of two words; the argument is how many letters have been typed.
void SearchType(benchmark::State& state)
{
    AxNameIndex index;
    std::mt19937 random(7);
    const auto word = [&random] {
        QString letters;
        for (unsigned i = 0, end = 4 + random() % 6; i < end; ++i)
            letters += QChar('a' + static_cast<int>(random() % 26));
        return letters;
    };
    for (int i = 0; i < 100000; ++i)
        index.Add(word() + ' ' + word(), static_cast<double>(random() % 1000));
    const QString typed = QStringLiteral("rvqe").left(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(index.Find(typed, 12));
}
BENCHMARK(SearchType)->Name("Search/type")->DenseRange(1, 4)->Unit(benchmark::kMillisecond);

} // namespace
