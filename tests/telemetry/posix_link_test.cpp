// What only POSIX systems let a test make: a serial port of two ends (a pseudo terminal), and a full disk.
#include <QtGlobal>

#if defined(Q_OS_UNIX)
#include "MemoryLink.h"

#include <AxTelemetry/link/AxSerialLink.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

TEST(PosixLink, TalksOverASerialPortUntilItIsUnplugged)
{
    const int radio = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_TRUE(radio >= 0 && ::grantpt(radio) == 0 && ::unlockpt(radio) == 0);
    const QString port = QString::fromLocal8Bit(::ptsname(radio));
    auto* const link = new AxSerialLink(port, 57600);
    AxMavlinkStation station{std::unique_ptr<AxTelemetryLink>(link)};
    QSignalSpy faults(&station, &AxMavlinkStation::signalFault);
    QString fault;
    ASSERT_TRUE(station.Open(&fault)) << fault.toStdString();
    AxMavHeartbeat beat;
    beat.type = 2;
    const QByteArray frame = AxMavWriter(1, 1).Write(beat);
    ASSERT_EQ(::write(radio, frame.constData(), static_cast<size_t>(frame.size())), frame.size());
    EXPECT_TRUE(QTest::qWaitFor([&] { return station.AircraftOf(1) != nullptr; }, 20000));
    char answer[64];
    EXPECT_TRUE(QTest::qWaitFor([&] { return ::read(radio, answer, sizeof answer) > 0; }, 20000));
    ::close(radio);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !faults.isEmpty(); }, 20000));
    EXPECT_TRUE(faults.value(0).value(0).toString().startsWith(port + QStringLiteral(" (57600): ")))
        << faults.value(0).value(0).toString().toStdString();
    EXPECT_EQ(link->GetPhase(), AxTelemetryLink::Phase::Closed);
    EXPECT_FALSE(station.AircraftOf(1)->State().isHeard);
}

TEST(PosixLink, FliesOnWhenTheDiskIsFull)
{
    const QTemporaryDir folder;
    MemoryStation flight;
    QSignalSpy faults(&flight.station, &AxMavlinkStation::signalFault);
    flight.station.SetRecordFolder(folder.path());
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    auto* const handler = ::signal(SIGXFSZ, SIG_IGN);
    const rlimit full = {1000, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
    flight.Open();
    for (int i = 0; i < 100; ++i) {
        flight.Beat();
        flight.Pass(100);
    }
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, handler);
    EXPECT_EQ(faults.size(), 1);
    EXPECT_TRUE(faults.value(0).value(0).toString().startsWith(QLatin1String("The record ends here")));
    EXPECT_FALSE(faults.value(0).value(0).toString().contains(QLatin1String("Unknown")));
    EXPECT_EQ(flight.Aircraft().State().framesHeard, 101u);
    EXPECT_EQ(QFile(flight.station.Recorder().File()).size(), 1000) << "what fits is kept";
}
#endif
