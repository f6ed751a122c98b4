// The log panel's ear: every signal, with its arguments.
#include "host/SignalRelay.h"
#include "SampleSignals.h"

#include <gtest/gtest.h>

TEST(SignalRelay, ReportsEachSignalWithItsArguments)
{
    SampleSignals sample;
    QStringList lines;
    auto* relay = new SignalRelay(
        &sample, SampleSignals::staticMetaObject, [&lines](const QString& line) { lines += line; }, &sample);
    EXPECT_EQ(relay->SignalCount(), 3);

    emit sample.nothing();
    emit sample.several("block 1", 2.5, true);
    emit sample.lists({"a", "b"}, 7);
    EXPECT_EQ(lines, (QStringList{"nothing()", "several(block 1, 2.5, true)", "lists([a, b], 7)"}));

    delete relay;
    emit sample.nothing();
    EXPECT_EQ(lines.size(), 3);
}
