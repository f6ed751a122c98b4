// Which engine, which voice, and what it is given to say.
#include "Announcer.h"

#include "viewer/speech/CAxTextToSpeechVoices.h"

TEST_F(Announcer, ChoosesTheVoiceThatSuitsTheText)
{
    // "C" is where Qt files languages that it does not know, as espeak's "cmn".
    const QStringList espeakUnknown{"Sindarin+croak",
                                    "Chinese (Mandarin, latin as English)+croak",
                                    "Chinese (Mandarin, latin as English)",
                                    "Chinese (Mandarin, latin as Pinyin)+croak",
                                    "Chinese (Mandarin, latin as Pinyin)",
                                    "Chinese (Cantonese)"};
    const struct
    {
        QMap<QString, QStringList> voices;
        const char* forChinese;
        const char* forEnglish;
    } rows[] = {{{{"en_US", {"Ann"}}, {"zh_CN", {"Hua"}}, {"zh_TW", {"Mei"}}}, "Hua", "Ann"},
                {{{"en_GB", {"Tom"}}, {"zh_HK", {"Wai"}}, {"zh_TW", {"Mei"}}}, "Mei", "Tom"},
                {{{"C", espeakUnknown}, {"de_DE", {"Eva"}}, {"en_US", {"Ann+croak", "Ann"}}},
                 "Chinese (Mandarin, latin as Pinyin)",
                 "Ann"},
                {{{"zh_CN", {"Hua"}}}, "Hua", "Hua"},
                {{{"en_AU", {"Kim"}}}, "Kim", "Kim"},
                {{{"de_DE", {"Eva"}}, {"fr_FR", {"Luc"}}}, "Eva", "Eva"}};
    for (const auto& row : rows) {
        FakeEngine::offered = row.voices;
        Restart();
        for (const auto& [text, voice] : {std::pair{"电池电量低", row.forChinese},
                                          {"Battery low", row.forEnglish},
                                          {"GPS 信号弱", row.forChinese},
                                          {"120", row.forChinese}}) {
            announcer->slotSayCurText(text, 1);
            EXPECT_EQ(Engine().said.last().voice, voice) << text;
            Engine().Report(QTextToSpeech::Ready);
        }
    }
}

TEST(SpokenText, KeepsItsLanguageAndItsSigns)
{
    const QString rare = QString::fromUtf8("\xF0\xA0\x80\x80 km");
    const struct
    {
        QString text;
        bool english;
        QString spoken;
    } rows[] = {{"Battery low, 20 %", true, "Battery low, 20 %"},
                {"电压低", false, "电压低"},
                {"GPS 信号 <2", false, "GPS 信号 小于2"},
                {rare, false, rare},
                {"120", false, "120"},
                {"", false, ""},
                {"<speak>a & b", true, " less than speak more than a  and  b"}};
    for (const auto& row : rows) {
        EXPECT_EQ(AxIsEnglishText(row.text), row.english) << row.text.toStdString();
        EXPECT_EQ(AxSpokenText(row.text), row.spoken);
    }
}

TEST(SpeechEngine, DoesNotDependOnTheOrderOfTheInstalledOnes)
{
    for (const QStringList& installed :
         {QStringList{"beta", "axrelay", "alpha"}, {"alpha", "beta", "axrelay"}})
        EXPECT_EQ(AxPreferredSpeechEngine(installed), "alpha");
#if defined(Q_OS_LINUX)
    for (const QStringList& installed :
         {QStringList{"alpha", "flite", "speechd"}, {"speechd", "flite", "alpha"}})
        EXPECT_EQ(AxPreferredSpeechEngine(installed), "speechd");
    EXPECT_EQ(AxPreferredSpeechEngine({"alpha", "flite"}), "flite");
#endif
    EXPECT_EQ(AxPreferredSpeechEngine({"axrelay"}), QString());
}

TEST(SpeechEngine, MissingIsSilentAndSaidOnce)
{
    LogLines log;
    CAxTextToSpeech announcer(nullptr, "not-installed");
    announcer.slotStartSpeech();
    announcer.slotStartSpeech();
    for (const int level : {3, 2, 1, 2})
        announcer.slotSayCurText("Battery low", level);
    announcer.slotStopSpeech();
    EXPECT_EQ(LogLines::lines.size(), 1) << LogLines::lines.join('\n').toStdString();
}
