#pragma once
#include "FakeEngine.h"

#include "viewer/CAxTextToSpeech.h"

#include <QCoreApplication>
#include <QTest>

#include <gtest/gtest.h>

/// Counts the log lines that are written while it exists.
class LogLines
{
public:
    LogLines()
    {
        lines.clear();
        before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { lines += line; });
    }
    ~LogLines() { qInstallMessageHandler(before); }

    static inline QStringList lines;

private:
    QtMessageHandler before;
};

/// An announcer on the fake engine, started, which a host drives through its slots.
class Announcer : public testing::Test
{
protected:
    void SetUp() override
    {
        FakeEngine::offered = {{"en_US", {"Ann"}}, {"zh_CN", {"Hua"}}};
        FakeEngine::late = false;
        Restart();
    }
    void TearDown() override { announcer.reset(); }

    void Restart()
    {
        announcer = std::make_unique<CAxTextToSpeech>(nullptr, FakeEngine::Name());
        announcer->slotStartSpeech();
    }
    FakeEngine& Engine() { return *FakeEngine::all.back(); }
    QStringList Texts()
    {
        QStringList texts;
        for (const FakeEngine::Said& said : Engine().said)
            texts += said.text;
        return texts;
    }

    std::unique_ptr<CAxTextToSpeech> announcer;
};
