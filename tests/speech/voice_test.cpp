// Which engine, which voice, and what it is given to say.
#include "Announcer.h"

#include "viewer/speech/CAxTextToSpeechVoices.h"

namespace {
struct Offer
{
    const char* name;
    QMap<QString, QStringList> voices;
    const char* forChinese;
    const char* forEnglish;
};

struct Sentence
{
    const char* name;
    QString text;
    bool english;
    QString spoken;
};
} // namespace

class VoiceChoice : public Announcer, public testing::WithParamInterface<Offer>
{
};

TEST_P(VoiceChoice, SuitsTheText)
{
    FakeEngine::offered = GetParam().voices;
    Restart();
    for (const auto& [text, voice] : {std::pair{"电池电量低", GetParam().forChinese},
                                      {"Battery low", GetParam().forEnglish},
                                      {"GPS 信号弱", GetParam().forChinese},
                                      {"120", GetParam().forChinese}}) {
        announcer->slotSayCurText(text, 1);
        EXPECT_EQ(Engine().said.last().voice, voice) << text;
        Engine().Report(QTextToSpeech::Ready);
    }
}

// "C" is where Qt files languages that it does not know, as espeak's "cmn".
const QStringList espeakUnknown{"Sindarin+croak",
                                "Chinese (Mandarin, latin as English)+croak",
                                "Chinese (Mandarin, latin as English)",
                                "Chinese (Mandarin, latin as Pinyin)+croak",
                                "Chinese (Mandarin, latin as Pinyin)",
                                "Chinese (Cantonese)"};
INSTANTIATE_TEST_SUITE_P(
    Engines, VoiceChoice,
    testing::Values(
        Offer{"China", {{"en_US", {"Ann"}}, {"zh_CN", {"Hua"}}, {"zh_TW", {"Mei"}}}, "Hua", "Ann"},
        Offer{"Taiwan", {{"en_GB", {"Tom"}}, {"zh_HK", {"Wai"}}, {"zh_TW", {"Mei"}}}, "Mei", "Tom"},
        Offer{"MandarinByName",
              {{"C", espeakUnknown}, {"de_DE", {"Eva"}}, {"en_US", {"Ann+croak", "Ann"}}},
              "Chinese (Mandarin, latin as Pinyin)",
              "Ann"},
        Offer{"ChineseOnly", {{"zh_CN", {"Hua"}}}, "Hua", "Hua"},
        Offer{"EnglishOnly", {{"en_AU", {"Kim"}}}, "Kim", "Kim"},
        Offer{"Neither", {{"de_DE", {"Eva"}}, {"fr_FR", {"Luc"}}}, "Eva", "Eva"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Announcer, SetsChinaWhereTheEngineHasIt)
{
    EXPECT_EQ(Engine().locale(), QLocale(QLocale::Chinese, QLocale::China));
}

class SpokenText : public testing::TestWithParam<Sentence>
{
};

TEST_P(SpokenText, KeepsItsLanguageAndItsSigns)
{
    EXPECT_EQ(AxIsEnglishText(GetParam().text), GetParam().english);
    EXPECT_EQ(AxSpokenText(GetParam().text), GetParam().spoken);
}

INSTANTIATE_TEST_SUITE_P(
    Sentences, SpokenText,
    testing::Values(Sentence{"English", "Battery low, 20 %", true, "Battery low, 20 %"},
                    Sentence{"Chinese", "电压低", false, "电压低"},
                    Sentence{"Mixed", "GPS 信号 <2", false, "GPS 信号 小于2"},
                    Sentence{"RareCharacter", QString::fromUtf8("\xF0\xA0\x80\x80 km"), false,
                             QString::fromUtf8("\xF0\xA0\x80\x80 km")},
                    Sentence{"Digits", "120", false, "120"}, Sentence{"Empty", "", false, ""},
                    Sentence{"Markup", "<speak>a & b", true, " less than speak more than a  and  b"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Announcer, HandsOverEmptyAndLongTexts)
{
    const QString text = QString("一二三 ").repeated(20000);
    announcer->slotSayCurText(QString(), 1);
    Engine().Report(QTextToSpeech::Ready);
    announcer->slotSayCurText(text, 1);
    EXPECT_EQ(Texts().last(), text);
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
