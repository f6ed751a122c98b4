// A serial port, played by a pseudo terminal. POSIX: Windows has none.
#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <AxTelemetry/AxMavlinkStation.h>
#include <AxTelemetry/link/AxSerialLink.h>
#include <AxTelemetry/mavlink/AxMavMessages.h>
#include <AxTelemetry/mavlink/AxMavWriter.h>

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

TEST(Serial, CarriesBothWaysAndTellsThatItWasUnplugged)
{
    const int radio = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (radio < 0 || grantpt(radio) != 0 || unlockpt(radio) != 0)
        GTEST_SKIP() << "no pseudo terminals here";
    AxMavlinkStation station(std::make_unique<AxSerialLink>(QString::fromLocal8Bit(ptsname(radio)), 57600));
    QSignalSpy told(&station, &AxMavlinkStation::signalFault);
    QString fault;
    ASSERT_TRUE(station.Open(&fault)) << fault.toStdString();

    AxMavHeartbeat beat;
    beat.type = 2;
    beat.autopilot = 3;
    const QByteArray frame = AxMavWriter(7, 1).Write(beat);
    ASSERT_EQ(write(radio, frame.constData(), static_cast<std::size_t>(frame.size())), frame.size());
    EXPECT_TRUE(QTest::qWaitFor([&] { return station.AircraftOf(7) != nullptr; }, 10000));
    QByteArray sent;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            char bytes[256];
            const auto count = read(radio, bytes, sizeof bytes);
            sent += QByteArray(bytes, static_cast<int>(std::max<ssize_t>(count, 0)));
            return sent.contains('\xfd') || sent.contains('\xfe');
        },
        10000))
        << "a heartbeat";

    close(radio);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return station.Link().GetPhase() == AxTelemetryLink::Phase::Closed; }, 10000));
    EXPECT_FALSE(told.isEmpty());
    EXPECT_FALSE(station.Open(&fault)) << "it is gone";
    EXPECT_FALSE(fault.isEmpty());
}
#endif
