// The log panel's ear: every signal, with its arguments.
#include "host/SignalRelay.h"
#include "SampleSignals.h"

#include <gtest/gtest.h>

TEST(SignalRelay, ReportsEachSignalWithItsArguments)
{
    SampleSignals sample;
    QStringList lines;
    QJsonArray last;
    auto* relay = new SignalRelay(
        &sample, SampleSignals::staticMetaObject,
        [&](const QString& name, const QJsonArray& arguments) {
            lines += SignalText(name, arguments);
            last = arguments;
        },
        &sample);
    EXPECT_EQ(relay->SignalCount(), 4);

    emit sample.nothing();
    emit sample.several("block 1", 2.5, true);
    emit sample.lists({"a", "b"}, 7);
    osg::ref_ptr<osg::Drawable> drawable = new osg::Drawable;
    drawable->setName("route");
    emit sample.places(osg::Vec3d(116.25, 39.5, 12345678.25), drawable, nullptr);
    EXPECT_EQ(lines, (QStringList{"nothing()", "several(block 1, 2.5, true)", "lists([a, b], 7)",
                                  "places([116.25, 39.5, 12345678.25], route, ?)"}));
    EXPECT_EQ(last, (QJsonArray{QJsonArray{116.25, 39.5, 12345678.25}, "route", QJsonValue()}));

    delete relay;
    emit sample.nothing();
    EXPECT_EQ(lines.size(), 4);
}
