#pragma once
#include "FakeEngine.h"
#include "LogLines.h"

#include "viewer/speech/CAxTextToSpeech.h"

#include <QCoreApplication>
#include <QTest>

#include <gtest/gtest.h>

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
