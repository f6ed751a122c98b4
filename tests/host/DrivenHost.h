#pragma once
#include <QApplication>
#include <QElapsedTimer>
#include <QFontMetrics>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <optional>

/**
 * The host as a process of its own, driven as a person does: by X events that
 * xdotool sends to the display, read by the event log that it writes.
 */
class DrivenHost
{
public:
    using Event = QJsonObject;
    using Wanted = std::function<bool(const Event&)>;

    explicit DrivenHost(const QStringList& arguments)
    {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QStringList words = arguments;
        if (!arguments.contains(QStringLiteral("--settings")))
            words += QStringLiteral("--no-settings");
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/AxGroundControl"), words);
    }

    /// The next event, counted from the last call, that is wanted; nothing when a minute passes first.
    std::optional<Event> Next(const Wanted& wanted)
    {
        constexpr int limitMs = 60000;
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < limitMs) {
            while (process.canReadLine()) {
                const Event event = QJsonDocument::fromJson(process.readLine()).object();
                if (event["event"] == "window")
                    Remember(event);
                if (wanted(event))
                    return event;
            }
            if (process.state() == QProcess::NotRunning && !process.canReadLine())
                return {};
            process.waitForReadyRead(100);
        }
        return {};
    }
    std::optional<Event> NextOf(const char* kind)
    {
        return Next([kind](const Event& event) { return event["event"] == QLatin1String(kind); });
    }
    /// The next emission of a signal whose first argument suits.
    std::optional<Event> NextSignal(
        const char* name,
        const std::function<bool(const QJsonValue&)>& suits = [](const QJsonValue&) { return true; })
    {
        return Next([&](const Event& event) {
            return event["name"] == QLatin1String(name) && suits(event["args"].toArray().first());
        });
    }
    /// The next resting place of the camera that suits.
    std::optional<Event> NextView(const Wanted& suits)
    {
        return Next([&](const Event& event) { return event["event"] == "viewpoint" && suits(event); });
    }

    /// One xdotool command line, for instance {"mousemove", "10", "20", "click", "1"}.
    void Do(const QStringList& command)
    {
        QProcess tool;
        tool.setProcessChannelMode(QProcess::ForwardedChannels);
        tool.start(QStringLiteral("xdotool"), command);
        ASSERT_TRUE(tool.waitForStarted()) << "xdotool is not installed";
        ASSERT_TRUE(tool.waitForFinished());
        ASSERT_EQ(tool.exitCode(), 0) << command.join(' ').toStdString();
    }
    // Words of xdotool that put the mouse somewhere: on a pixel of the globe, on a button of the tool bar, on
    // the name in the first row of the block list, on a row of the list of no-fly zones, and on the box that
    // shows these.
    QStringList To(const QPoint& pixel) const { return Move(globe.topLeft() + pixel); }
    QStringList ToTool(int index) const { return Move(tools.at(index).center()); }
    QStringList ToFirstBlock() const { return Move(blockRows.topLeft() + QPoint(20, 8)); }
    QStringList ToZone(int row) const
    {
        const int rowHeight = QFontMetrics(QApplication::font()).height();
        return Move(zoneRows.topLeft() + QPoint(40, rowHeight * row + rowHeight / 2));
    }
    QStringList ToShowZones() const { return Move({showZones.left() + 10, showZones.center().y()}); }

    /// Whether a window with that title, a regular expression, is on the screen.
    static bool HasWindow(const QString& title)
    {
        QByteArray failure;
        while (!Try({"search", "--onlyvisible", "--name", title}, &failure)) {
            // A window of any program that goes away while it searches ends the search as well.
            if (!failure.contains("BadWindow"))
                return false;
        }
        return true;
    }
    /// There may be no window manager that gives a window the input. Waits for the window.
    void TakeFocus(const QString& title)
    {
        const QStringList command = {"search", "--onlyvisible", "--name", title, "windowfocus", "--sync"};
        EXPECT_TRUE(QTest::qWaitFor([&command] { return Try(command); }, 60000)) << title.toStdString();
    }
    void TakeFocus() { Do({"windowfocus", QString::number(window)}); }

    QSize GlobeSize() const { return globe.size(); }
    QPoint Centre() const { return {globe.width() / 2, globe.height() / 2}; }

    /// Ends the program as a person does who saves nothing; its exit status, or -1 when it does not end well.
    int Quit()
    {
        Do({"key", "ctrl+q"});
        for (int second = 0; second < 60 && !process.waitForFinished(1000); ++second) {
            const QString question = QStringLiteral("^Unsaved changes$");
            if (!HasWindow(question))
                continue;
            TakeFocus(question);
            Do({"key", "alt+d"});
        }
        const bool isOver = process.state() == QProcess::NotRunning;
        return isOver && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    /// Ends it in the middle of whatever it does.
    void Kill()
    {
        process.kill();
        process.waitForFinished();
    }

private:
    static QStringList Move(const QPoint& onScreen)
    {
        return {"mousemove", QString::number(onScreen.x()), QString::number(onScreen.y())};
    }
    static bool Try(const QStringList& command, QByteArray* failure = nullptr)
    {
        QProcess tool;
        tool.start(QStringLiteral("xdotool"), command);
        const bool done = tool.waitForFinished() && tool.exitCode() == 0;
        if (failure)
            *failure = tool.readAllStandardError();
        return done;
    }
    void Remember(const Event& event)
    {
        const auto place = [](const QJsonValue& value) {
            const QJsonArray rect = value.toArray();
            return QRect(rect[0].toInt(), rect[1].toInt(), rect[2].toInt(), rect[3].toInt());
        };
        globe = place(event["globe"]);
        blockRows = place(event["blocks"]);
        zoneRows = place(event["zones"]);
        showZones = place(event["showZones"]);
        tools.clear();
        for (const QJsonValue tool : event["tools"].toArray())
            tools += place(tool);
        window = static_cast<qint64>(event["id"].toDouble());
    }

    QProcess process;
    QRect globe;
    QRect blockRows;
    QRect zoneRows;
    QRect showZones;
    QList<QRect> tools;
    qint64 window = 0;
};
