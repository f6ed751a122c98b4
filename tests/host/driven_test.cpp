// The host's window as a person uses it: mouse and keys from outside the process.
#include "DrivenHost.h"

#include <QImage>

#include <cmath>
#include <memory>

namespace {
using Event = DrivenHost::Event;

constexpr double homeLongitude = 116.3;
constexpr double homeLatitude = 39.9;

class Driven : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const QString folder = QCoreApplication::applicationDirPath();
        host = std::make_unique<DrivenHost>(
            QStringList{"--map", folder + QStringLiteral("/google_cn_net_no.earth"), "--zones",
                        folder + QStringLiteral("/TestZones.db"), "--size", "1000x720", "--lang", "en",
                        "--log", "-", "--no-voice"});
        ASSERT_TRUE(host->NextSignal("signalLoadEarth"));
        ASSERT_TRUE(host->NextOf("picture"));
        host->TakeFocus();
    }
    static void TearDownTestSuite()
    {
        EXPECT_EQ(host->Quit(), 0);
        host.reset();
    }

    // Every test starts over the whole globe, with the keyboard's focus on it.
    void SetUp() override
    {
        // Away from where the tests click, or the two were a double click.
        host->Do(host->To(host->Centre() + QPoint(-60, 40)) << QStringList{"click", "1"});
        ASSERT_TRUE(host->NextSignal("mouseLeftBtnClick"));
        // A step away first, so that there is a way home.
        host->Do({"keydown", "Left", "sleep", "0.2", "keyup", "Left"});
        ASSERT_TRUE(host->NextView([](const Event&) { return true; }));
        host->Do({"key", "Home"});
        ASSERT_TRUE(host->NextView(IsHome));
    }

    static bool IsHome(const Event& view)
    {
        return std::abs(view["longitude"].toDouble() - homeLongitude) < 1e-6 &&
               std::abs(view["range"].toDouble() / 4.0 - 6378137.0) < 1.0;
    }
    static bool IsNear(const QJsonValue& place, double longitude, double latitude, double degrees)
    {
        const QJsonArray lngLat = place.toArray();
        return std::abs(lngLat[0].toDouble() - longitude) < degrees &&
               std::abs(lngLat[1].toDouble() - latitude) < degrees;
    }
    static bool IsHomePlace(const QJsonValue& place)
    {
        return IsNear(place, homeLongitude, homeLatitude, 0.5);
    }
    static bool IsNothing(const QJsonValue& place) { return place == QJsonArray{0.0, 0.0, 0.0}; }

    static std::unique_ptr<DrivenHost> host;
};

std::unique_ptr<DrivenHost> Driven::host;
} // namespace

TEST_F(Driven, TheMouseTellsThePlaceUnderIt)
{
    host->Do(host->To(host->Centre() + QPoint(1, 0)));
    EXPECT_TRUE(host->NextSignal("mouseLeftBtnMove", IsHomePlace));
    host->Do(host->To(QPoint(5, 5)));
    EXPECT_TRUE(host->NextSignal("mouseLeftBtnMove", IsNothing));
}

TEST_F(Driven, ALeftDragCarriesTheGroundAlong)
{
    const QPoint from = host->Centre();
    const QPoint to = from + QPoint(90, 40);
    QStringList words = host->To(from) << QStringList{"mousedown", "1"};
    for (int step = 1; step <= 10; ++step)
        words << host->To(from + (to - from) * step / 10.0) << QStringList{"sleep", "0.03"};
    host->Do(words);
    // The camera may rest before the last step, too.
    ASSERT_TRUE(host->NextSignal("mouseLeftBtnDrag", [&to](const QJsonValue& first) {
        return first.isDouble() && first.toInt() == to.x();
    }));
    EXPECT_TRUE(host->NextView([](const Event& view) {
        return view["longitude"].toDouble() < homeLongitude - 5.0 &&
               view["latitude"].toDouble() > homeLatitude + 2.0;
    }));
    host->Do({"mouseup", "1"});
    const auto release =
        host->NextSignal("mouseLeftBtnRelease", [](const QJsonValue& first) { return first.isArray(); });
    ASSERT_TRUE(release);
    EXPECT_TRUE(IsNear(release->value("args").toArray().first(), homeLongitude, homeLatitude, 1.0));
}

TEST_F(Driven, TheWheelTurnedForwardComesNearerAndBackGoesAway)
{
    host->Do(host->To(host->Centre()) << QStringList{"click", "4"});
    const auto near = host->NextView([](const Event& view) { return view["range"].toDouble() < 2.5e7; });
    ASSERT_TRUE(near);
    host->Do({"click", "--repeat", "3", "5"});
    EXPECT_TRUE(host->NextView([&near](const Event& view) {
        return view["range"].toDouble() > near->value("range").toDouble() * 1.2;
    }));
    host->Do({"click", "--repeat", "30", "--delay", "20", "5"});
    EXPECT_TRUE(host->NextView([](const Event& view) {
        return std::abs(view["range"].toDouble() / 10.0 - 6378137.0) < 100.0; // rests while it still glides
    })) << "the globe is still to be seen as one";
}

TEST_F(Driven, ClicksReportThePlaceByButton)
{
    const QStringList toCentre = host->To(host->Centre());
    host->Do(toCentre + QStringList{"click", "3"});
    EXPECT_TRUE(host->NextSignal("signalRightBtnPicked", IsHomePlace));
    host->Do(toCentre + QStringList{"click", "1"});
    EXPECT_TRUE(host->NextSignal("mouseLeftBtnClick", IsHomePlace));
    host->Do(host->To(QPoint(5, 5)) << QStringList{"click", "3"});
    EXPECT_TRUE(host->NextSignal("signalRightBtnPicked", IsNothing));
}

TEST_F(Driven, ADoubleClickFliesToThePlace)
{
    const QPoint aside = host->Centre() + QPoint(60, 0);
    host->Do(host->To(aside) << QStringList{"click", "--repeat", "2", "--delay", "60", "1"});
    const auto click = host->NextSignal("mouseLeftBtnDoubleClick");
    ASSERT_TRUE(click);
    const QJsonArray place = click->value("args").toArray().first().toArray();
    EXPECT_GT(place[0].toDouble(), homeLongitude + 5.0);
    EXPECT_TRUE(host->NextView([&place](const Event& view) {
        return std::abs(view["longitude"].toDouble() - place[0].toDouble()) < 1.0 &&
               view["range"].toDouble() < 2e7;
    }));
}

TEST_F(Driven, KeysMoveTheCamera)
{
    const struct
    {
        const char* key;
        std::function<bool(const Event& before, const Event& after)> moved;
    } rows[] = {
        {"Right", [](const Event& a,
                     const Event& b) { return b["longitude"].toDouble() > a["longitude"].toDouble(); }},
        {"Up",
         [](const Event& a, const Event& b) { return b["latitude"].toDouble() > a["latitude"].toDouble(); }},
        {"minus",
         [](const Event& a, const Event& b) { return b["range"].toDouble() > a["range"].toDouble(); }},
        {"plus",
         [](const Event& a, const Event& b) { return b["range"].toDouble() < a["range"].toDouble(); }},
        {"KP_Left", [](const Event& a,
                       const Event& b) { return b["longitude"].toDouble() < a["longitude"].toDouble(); }},
    };
    Event before{{"longitude", homeLongitude}, {"latitude", homeLatitude}, {"range", 4.0 * 6378137.0}};
    for (const auto& row : rows) {
        host->Do({"keydown", row.key, "sleep", "0.2", "keyup", row.key});
        const auto after = host->NextView([](const Event&) { return true; });
        ASSERT_TRUE(after) << row.key;
        EXPECT_TRUE(row.moved(before, *after)) << row.key;
        before = *after;
    }
}

TEST_F(Driven, AClickOnTheGlobeBringsTheKeysBackFromAPanel)
{
    const QPoint inLogPanel(100, host->GlobeSize().height() + 40);
    host->Do(host->To(inLogPanel) << QStringList{"click", "1"});
    host->Do(host->To(host->Centre()) << QStringList{"click", "1"});
    ASSERT_TRUE(host->NextSignal("mouseLeftBtnClick", IsHomePlace));
    host->Do({"keydown", "Left", "sleep", "0.2", "keyup", "Left"});
    EXPECT_TRUE(
        host->NextView([](const Event& view) { return view["longitude"].toDouble() < homeLongitude; }));
}

TEST_F(Driven, AClickOnTheCompassTurnsNorthUp)
{
    host->Do({"keydown", "ctrl", "keydown", "Right", "sleep", "0.4", "keyup", "Right", "keyup", "ctrl"});
    const auto turned =
        host->NextView([](const Event& view) { return std::abs(view["heading"].toDouble()) > 2.0; });
    ASSERT_TRUE(turned);
    const QSize dial = QImage(QStringLiteral(AX_RESOURCES "/images/NorthArrow/lookbackground.png")).size();
    ASSERT_FALSE(dial.isEmpty());
    // The dial stands 9 pixels from the right edge and 60 below the top.
    const QPoint onDial(host->GlobeSize().width() - 9 - dial.width() / 2, 60 + dial.height() / 2);
    host->Do(host->To(onDial) << QStringList{"click", "1"});
    EXPECT_TRUE(host->NextView([](const Event& view) {
        return std::abs(view["heading"].toDouble()) < 0.01 &&
               std::abs(view["pitch"].toDouble() + 90.0) < 0.01;
    }));
}

TEST_F(Driven, APolygonIsDrawnListedRenamedUndoneAndDeleted)
{
    const auto nextBlock = [](const std::function<bool(const Event&)>& suits) {
        return host->Next([&suits](const Event& event) { return event["event"] == "block" && suits(event); });
    };
    const auto named = [](const QString& name) {
        return [name](const Event& block) { return block["name"] == name; };
    };
    constexpr int polygonTool = 2;
    host->Do(host->ToTool(polygonTool) << QStringList{"click", "1"});
    const QPoint centre = host->Centre();
    for (const QPoint& corner : {QPoint(-80, -60), QPoint(80, -60), QPoint(60, 70)}) {
        host->Do(host->To(centre + corner) << QStringList{"click", "1"});
        ASSERT_TRUE(host->NextSignal("mouseLeftBtnClick"));
    }
    host->Do(host->To(centre + QPoint(-70, 60))
             << QStringList{"click", "--repeat", "2", "--delay", "60", "1"});
    const auto drawn = nextBlock([](const Event& block) { return block["vertices"].toInt() > 0; });
    ASSERT_TRUE(drawn);
    EXPECT_EQ((*drawn)["vertices"].toInt(), 4);
    const QJsonValue id = (*drawn)["id"];
    EXPECT_TRUE(host->NextSignal("signalHandleEnd", [&id](const QJsonValue& ended) { return ended == id; }));
    EXPECT_TRUE(host->NextSignal("signalHandlePickEnded"));

    // Its row is there: a click flies to the block, F2 renames it.
    host->Do(host->ToFirstBlock() << QStringList{"click", "1"});
    ASSERT_TRUE(host->NextView([](const Event& view) { return !IsHome(view); }));
    host->Do({"key", "F2", "key", "ctrl+a", "type", "Quarry"});
    host->Do({"key", "Return"});
    ASSERT_TRUE(nextBlock(named(QStringLiteral("Quarry"))));
    // The tool is back at browsing, so that this click draws nothing.
    host->Do(host->To(host->Centre()) << QStringList{"click", "1"});
    ASSERT_TRUE(host->NextSignal("mouseLeftBtnClick"));
    host->Do({"key", "ctrl+z"});
    ASSERT_TRUE(nextBlock(named((*drawn)["name"].toString())));

    host->Do(host->ToFirstBlock() << QStringList{"click", "1", "key", "Delete"});
    const auto isDeleted = [&id](const Event& block) {
        return block["deleted"].toBool() && block["id"] == id;
    };
    host->TakeFocus("^Delete block$");
    // Return alone would keep it.
    host->Do({"key", "shift+Tab", "key", "Return"});
    EXPECT_TRUE(nextBlock(isDeleted));
    host->TakeFocus();
    host->Do({"key", "ctrl+z"});
    EXPECT_TRUE(
        nextBlock([&id](const Event& block) { return block["vertices"].toInt() == 4 && block["id"] == id; }));
    host->Do({"key", "ctrl+shift+z"});
    EXPECT_TRUE(nextBlock(isDeleted));
}
