// Which message is spoken, which interrupts and which is dropped.
#include "Announcer.h"

using State = QTextToSpeech::State;

namespace {
struct Second
{
    const char* name;
    State during;
    int level;
    bool spoken;
};
} // namespace

class Priority : public Announcer, public testing::WithParamInterface<Second>
{
};

// The first message has level 2.
TEST_P(Priority, LetsOnlyAMoreUrgentMessageInterrupt)
{
    announcer->slotSayCurText("first", 2);
    Engine().Report(GetParam().during);
    const int stopsBefore = Engine().stops;
    announcer->slotSayCurText("second", GetParam().level);

    QStringList expected{"first"};
    if (GetParam().spoken)
        expected += "second";
    EXPECT_EQ(Texts(), expected);
    const bool interrupts = GetParam().spoken && GetParam().during != QTextToSpeech::Ready;
    EXPECT_EQ(Engine().stops - stopsBefore, interrupts ? 1 : 0);

    // Nothing was queued, and whichever was started last set the level.
    Engine().Report(QTextToSpeech::Ready);
    EXPECT_EQ(Texts(), expected);
    announcer->slotSayCurText("third", 9);
    EXPECT_EQ(Texts().last(), "third");
}

INSTANTIATE_TEST_SUITE_P(Table, Priority,
                         testing::Values(Second{"ReadyMoreUrgent", State::Ready, 1, true},
                                         Second{"ReadySame", State::Ready, 2, true},
                                         Second{"ReadyLess", State::Ready, 3, true},
                                         Second{"SpeakingMoreUrgent", State::Speaking, 1, true},
                                         Second{"SpeakingSame", State::Speaking, 2, false},
                                         Second{"SpeakingLess", State::Speaking, 3, false},
                                         Second{"PausedMoreUrgent", State::Paused, 1, true},
                                         Second{"PausedSame", State::Paused, 2, false},
                                         Second{"ErrorMoreUrgent", State::BackendError, 1, true},
                                         Second{"ErrorSame", State::BackendError, 2, false}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Announcer, RemembersTheLevelOfTheInterruptingMessage)
{
    announcer->slotSayCurText("third", 3);
    announcer->slotSayCurText("first", 1);
    announcer->slotSayCurText("second", 2);
    EXPECT_EQ(Texts(), QStringList({"third", "first"}));
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

TEST_F(Announcer, StartsOneEngineHoweverOftenItIsStarted)
{
    announcer->slotStartSpeech();
    EXPECT_EQ(FakeEngine::all.size(), 1);
    EXPECT_EQ(announcer->findChildren<QTextToSpeech*>(QString(), Qt::FindDirectChildrenOnly).size(), 1);
}

TEST_F(Announcer, StopsAndSpeaksAgain)
{
    announcer->slotSayCurText("first", 1);
    announcer->slotStopSpeech();
    EXPECT_EQ(Engine().stops, 1);
    announcer->slotSayCurText("second", 2);
    EXPECT_EQ(Texts(), QStringList({"first", "second"}));
}

TEST_F(Announcer, SpeaksAgainAfterAnErrorHasPassed)
{
    announcer->slotSayCurText("first", 1);
    Engine().Report(QTextToSpeech::BackendError);
    announcer->slotSayCurText("lost", 1);
    Engine().Report(QTextToSpeech::Ready);
    announcer->slotSayCurText("second", 1);
    EXPECT_EQ(Texts(), QStringList({"first", "second"}));
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
