// Which message is spoken, which interrupts and which is dropped.
#include "Announcer.h"

using State = QTextToSpeech::State;

// The first message has level 2.
TEST_F(Announcer, LetsOnlyAMoreUrgentMessageInterrupt)
{
    const struct
    {
        State during;
        int level;
        bool spoken;
    } rows[] = {{State::Ready, 1, true},        {State::Ready, 2, true},     {State::Ready, 3, true},
                {State::Speaking, 1, true},     {State::Speaking, 2, false}, {State::Speaking, 3, false},
                {State::Paused, 1, true},       {State::Paused, 2, false},   {State::BackendError, 1, true},
                {State::BackendError, 2, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.during << ' ' << row.level);
        Restart();
        announcer->slotSayCurText("first", 2);
        Engine().Report(row.during);
        const int stopsBefore = Engine().stops;
        announcer->slotSayCurText("second", row.level);

        QStringList expected{"first"};
        if (row.spoken)
            expected += "second";
        EXPECT_EQ(Texts(), expected);
        const bool interrupts = row.spoken && row.during != QTextToSpeech::Ready;
        EXPECT_EQ(Engine().stops - stopsBefore, interrupts ? 1 : 0);

        // Nothing was queued, and whichever was started last set the level.
        Engine().Report(QTextToSpeech::Ready);
        EXPECT_EQ(Texts(), expected);
        announcer->slotSayCurText("third", 9);
        EXPECT_EQ(Texts().last(), "third");
    }
}

TEST_F(Announcer, SharesTheLevelAmongInstances)
{
    announcer->slotSayCurText("own, urgent", 1);
    CAxTextToSpeech other(nullptr, FakeEngine::Name());
    other.slotStartSpeech();
    other.slotSayCurText("other's, idle", 5);
    ASSERT_EQ(Texts(), QStringList("other's, idle"));
    // The level that counts is the other's by now.
    announcer->slotSayCurText("own again", 2);
    EXPECT_EQ(FakeEngine::all.front()->said.size(), 2);
}

TEST_F(Announcer, StaysSilentBeforeStartAndWhileDisabled)
{
    CAxTextToSpeech unstarted(nullptr, FakeEngine::Name());
    unstarted.slotStopSpeech();
    unstarted.slotSayCurText("too early", 1);
    EXPECT_EQ(FakeEngine::all.size(), 1);

    announcer->slotSpeechEnabled(false);
    announcer->slotSayCurText("muted", 1);
    EXPECT_TRUE(Texts().isEmpty());
    announcer->slotSpeechEnabled(true);
    announcer->slotSayCurText("heard", 3);
    EXPECT_EQ(Texts(), QStringList("heard"));
}

TEST_F(Announcer, AFailedMessageDoesNotSilenceLaterOnes)
{
    announcer->slotSayCurText("failed", 1);
    Engine().Report(QTextToSpeech::BackendError);
    announcer->slotSayCurText("at once", 1);
    EXPECT_EQ(Texts(), QStringList("failed"));
    EXPECT_TRUE(QTest::qWaitFor([this] {
        announcer->slotSayCurText("later", 3);
        return Texts().last() == "later";
    }));
}

TEST_F(Announcer, TreatsAMessageAsSpokenBeforeALateEngineReportsIt)
{
    FakeEngine::late = true;
    announcer->slotSayCurText("first", 2);
    ASSERT_EQ(Engine().state(), QTextToSpeech::Ready);
    announcer->slotSayCurText("dropped", 2);
    EXPECT_EQ(Texts(), QStringList("first"));
    announcer->slotSayCurText("urgent", 1);
    EXPECT_EQ(Texts(), QStringList({"first", "urgent"}));
    EXPECT_EQ(Engine().stops, 1);

    Engine().Report(QTextToSpeech::Speaking);
    Engine().Report(QTextToSpeech::Ready);
    announcer->slotSayCurText("next", 3);
    ASSERT_EQ(Texts().last(), "next");
    // This one is never reported.
    EXPECT_TRUE(QTest::qWaitFor([this] {
        announcer->slotSayCurText("after", 3);
        return Texts().last() == "after";
    }));
}
