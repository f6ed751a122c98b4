// Names that are looked for while somebody types.
#include <AxAlgorthm/AxCoordinateSystem.h>
#include <AxAlgorthm/AxNameIndex.h>

#include <benchmark/benchmark.h>

#include <random>

namespace {

/// What each letter asks for: whether the text is a place in the chosen coordinate system, and names of
/// 100,000 with two words. The argument is how many letters have been typed. Without the list on the screen.
void SearchType(benchmark::State& state)
{
    AxNameIndex index;
    std::mt19937 random(7);
    const auto word = [&random] {
        QString letters;
        for (auto left = 4 + random() % 6; left > 0; --left)
            letters += QChar('a' + static_cast<int>(random() % 26));
        return letters;
    };
    for (int i = 0; i < 100000; ++i)
        index.Add(word() + ' ' + word(), static_cast<double>(random() % 1000));
    const QString typed = QStringLiteral("rvqe").left(static_cast<int>(state.range(0)));
    const AxCoordinateSystem system;
    for (auto _ : state) {
        benchmark::DoNotOptimize(system.Read(typed));
        benchmark::DoNotOptimize(index.Find(typed, 12));
    }
}
BENCHMARK(SearchType)->Name("Search/type")->DenseRange(1, 4)->Unit(benchmark::kMillisecond);

} // namespace
