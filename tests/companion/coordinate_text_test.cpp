#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxCoordinateSystem.h>
#include <AxAlgorthm/AxCoordinateText.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {
using AxCoordinateText::Form;
using AxCoordinateText::Typed;

double Apart(double latitude, double longitude, const PointLatLng& other)
{
    return DistanceBetweenTwoLatLng(CAxVector3D(longitude, latitude, 0),
                                    CAxVector3D(other.Lng(), other.Lat(), 0));
}
} // namespace

TEST(CoordinateText, ReadsWhatPeopleType)
{
    constexpr double lat = 37.0 + 24.0 / 60.0 + 11.5 / 3600.0;
    constexpr double lng = -105.0 - 1.0 / 60.0;
    const struct
    {
        const char* text;
        double latitude;
        double longitude;
        double metres = 0.001;
        double side = 0.0;
    } rows[] = {
        {"37.5 -105.25", 37.5, -105.25},
        {" 37.5,-105.25 ", 37.5, -105.25},
        {"37.5; -105.25", 37.5, -105.25},
        {"-.5 +105.", -0.5, 105.0},
        {"37,5 -105,25", 37.5, -105.25},
        {"37,5; 105,25", 37.5, 105.25},
        {"37,105", 37.0, 105.0},
        {"105.25W 37.5N", 37.5, -105.25},
        {"s 37.5, w 105.25", -37.5, -105.25},
        {"N37\302\26024.5' E105\302\26001'", 37.0 + 24.5 / 60.0, 105.0 + 1.0 / 60.0},
        {"37\302\26024'11.5\"N 105\302\26001'W", lat, lng},
        {"105\302\260 01\342\200\262 W, 37\302\260 24\342\200\262 11.5\342\200\263 N", lat, lng},
        {"37 24 11.5 N 105 1 0 W", lat, lng},
        {"37 24 11.5 -105 1 0", lat, lng},
        {"37:24:11.5 -105:01", lat, lng},
        {"37-24-11.5N 105-01-00W", lat, lng},
        {"37d24'11.5\"N 105deg 1 min West", lat, lng},
        {"37\302\26024'11,5\"N 105\302\26001'W", lat, lng},
        {"37\302\26024'11.5'' -105\302\2601'", lat, lng},
        {"\345\214\227\347\272\25437\345\272\24624\345\210\20611.5\347\247\222\357\274\214"
         "\350\245\277\347\273\217105\345\272\2461\345\210\206",
         lat, lng},
        {"-0 30 0, 0 0 1", -0.5, 1.0 / 3600.0},
        {"90 180", 90.0, 180.0},
        // As gdaltransform converts them.
        {"13N 500000 4140000", 37.406785855, -105.0, 0.001},
        {"UTM zone 13N, 500000 mE, 4140000 mN", 37.406785855, -105.0, 0.001},
        {"13T 500000 4500000", 40.650856516, -105.0, 0.001},
        {"33S 444140.5 6315293.6", -33.3, 14.4, 0.1},
        {"21 south 400000 4270000", -51.712014937, -58.447418980, 0.001},
        {"UPS N 2000000 2000000", 90.0, 0.0},
        {"13S EB 00000 40000", 37.406785855, -105.0, 1.0, 1.0},
        {"13seb0040", 37.406785855, -105.0, 800.0, 1000.0},
        {"MGRS 33XWG 12345 67890", 78.0848062348522, 15.5356451910766, 0.001, 1.0},
    };
    for (const auto& row : rows) {
        const Typed typed = AxCoordinateText::Parse(QString::fromUtf8(row.text));
        ASSERT_TRUE(typed.place) << row.text << ": " << typed.fault.toStdString();
        EXPECT_LT(Apart(row.latitude, row.longitude, *typed.place), row.metres)
            << row.text << ": " << typed.place->Lat() << ' ' << typed.place->Lng();
        EXPECT_EQ(typed.side, row.side) << row.text;
        EXPECT_TRUE(typed.fault.isEmpty()) << row.text;
    }
}

TEST(CoordinateText, TellsWhatIsWrong)
{
    const struct
    {
        const char* text;
        const char* reason;
    } rows[] = {
        {"", "No coordinate"},
        {"37.5", "longitude is missing"},
        {"37.5,", "longitude is missing"},
        {", 105", "latitude is missing"},
        {"37.5N", "Only one"},
        {"37.5N 105", "Only one"},
        {"37.5N 105N", "two latitudes"},
        {"37.5E 105W", "two longitudes"},
        {"N37.5 105W", "both before or both behind"},
        {"-37.5S 105W", "sign and S"},
        {"91 10", "latitude 91\302\260 is beyond 90\302\260"},
        {"105 37", "latitude comes first"},
        {"37 181", "longitude 181\302\260"},
        {"nan 105", "not understood"},
        {"37.5 -105x", "\"X\""},
        {"37.5 24 11 N 105 1 0 W", "Only the last"},
        {"37 60 0 N 105 1 0 W", "below 60"},
        {"37 24 11 12 N 105 1 0 W", "no angle"},
        {"37'24, 105'1", "no angle"},
        {"37 24 105", "latitude ends"},
        {"37, 24, 105", "not 2"},
        {"37,4,105,2", "not 3"},
        {"37,4 10", "point"},
        {"37:24:, 105:1", "no angle"},
        {"500000 4140000", "put their zone first"},
        {"13N 500000", "northing is missing"},
        {"13N 500000 north", "\"500000 NORTH\""},
        {"UTM 13N", "Easting and northing are missing"},
        {"61N 500000 4140000", "zone 61"},
        {"13I 500000 4140000", "I is neither"},
        {"13N 50000 4140000", "easting 50000 m"},
        {"13N 500000 9990000", "northing 9990000 m"},
        {"13T 500000 4140000", "Band T reaches from 40\302\260 to 48\302\260"},
        {"13S 500000 4140000", "southern hemisphere (-52.8"},
        {"13S DB", "digits are missing"},
        {"13S DB 123", "cannot be halved"},
        {"13S DB 123 45", "not as many"},
        {"13S IB 12 34", "no square IB"},
        {"UPS N 1 1", "polar grid"},
    };
    for (const auto& row : rows) {
        const Typed typed = AxCoordinateText::Parse(QString::fromUtf8(row.text));
        EXPECT_FALSE(typed.place) << row.text;
        EXPECT_TRUE(typed.fault.contains(QString::fromUtf8(row.reason)))
            << row.text << ": " << typed.fault.toStdString();
    }
    EXPECT_FALSE(AxCoordinateText::Parse(QString(100000, '1')).fault.isEmpty());
}

TEST(CoordinateText, ReadsBackWhatItWrites)
{
    const struct
    {
        Form form;
        double metres;
    } forms[] = {{Form::Decimal, 0.08}, {Form::Dms, 0.23}, {Form::Utm, 0.08}, {Form::Mgrs, 0.75}};
    std::mt19937 random(1);
    std::uniform_real_distribution<double> latitudes(-90.0, 90.0);
    std::uniform_real_distribution<double> longitudes(-180.0, 180.0);
    std::vector<PointLatLng> places{{90, 0},
                                    {-90, 0},
                                    {0, 180},
                                    {84, 21},
                                    {-80, -180},
                                    {0, 0},
                                    {37.999999999, -105.999999999},
                                    {-37.9999999, 5.9999999},
                                    {60, 3.5}};
    for (int i = 0; i < 2000; ++i)
        places.emplace_back(latitudes(random), longitudes(random));
    for (const PointLatLng& place : places) {
        for (const auto& [form, metres] : forms) {
            const QString text = AxCoordinateText::Write(place.Lat(), place.Lng(), form);
            const Typed typed = AxCoordinateText::Parse(text);
            ASSERT_TRUE(typed.place) << text.toStdString() << ": " << typed.fault.toStdString();
            EXPECT_LT(Apart(place.Lat(), place.Lng(), *typed.place), metres) << text.toStdString();
        }
    }
    EXPECT_EQ(AxCoordinateText::Write(37.99999999, -105.0, Form::Dms),
              QString::fromUtf8("38\302\26000'00.00\"N 105\302\26000'00.00\"W"));
    EXPECT_EQ(AxCoordinateText::Write(91.0, 0.0, Form::Utm), QString());
}

TEST(CoordinateSystem, TakesWhatProjKnowsAndSaysWhatItDoesNotTake)
{
    const struct
    {
        const char* text;
        const char* name;   // or the reason
        double first = 0.0; // of 37.4 N, 105.01 W; as gdaltransform converts it
        double second = 0.0;
    } rows[] = {
        {"EPSG:32613", "WGS 84 / UTM zone 13N", 499114.92, 4139247.22},
        {"32613", "WGS 84 / UTM zone 13N", 499114.92, 4139247.22},
        {"wgs 84 / utm zone 13n", "WGS 84 / UTM zone 13N", 499114.92, 4139247.22},
        {"+proj=utm +zone=13 +datum=WGS84", "+proj=utm", 499114.92, 4139247.22},
        {"EPSG:3857", "Pseudo-Mercator", -11689659.73, 4495009.26},
        {"EPSG:4979", "WGS 84", -105.01, 37.4},
        {"EPSG:32613+5703", "UTM zone 13N", 499114.92, 4139247.22},
        {"PROJCS[\"mine\",GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
         "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],"
         "PARAMETER[\"central_meridian\",-105],PARAMETER[\"scale_factor\",0.9996],"
         "PARAMETER[\"false_easting\",500000],UNIT[\"metre\",1]]",
         "mine", 499114.92, 4139247.22},
        {"99999", "no coordinate system that PROJ knows"},
        {"rubbish", "no coordinate system that PROJ knows"},
        {"WGS", "no coordinate system that PROJ knows"},
        {"+proj=nonsense", "no coordinate system that PROJ knows"},
        {"EPSG:5773", "heights"},
        {"EPSG:4978", "geocentric"},
        {"LOCAL_CS[\"site\",UNIT[\"metre\",1]]", "local"},
        {"EPSG:7030", "no coordinate system"},
        {"ESRI:104903", "No way"},
    };
    for (const auto& row : rows) {
        QString why;
        const auto system = AxCoordinateSystem::Of(QLatin1String(row.text), &why);
        if (row.first == 0.0) {
            EXPECT_FALSE(system) << row.text;
            EXPECT_TRUE(why.contains(QLatin1String(row.name))) << row.text << ": " << why.toStdString();
            continue;
        }
        ASSERT_TRUE(system) << row.text << ": " << why.toStdString();
        EXPECT_TRUE(system->Name().contains(QLatin1String(row.name))) << system->Name().toStdString();
        const AxCoordinateSystem::Point point = system->FromPlace(37.4, -105.01);
        EXPECT_EQ(point.reach, AxCoordinateSystem::Reach::Inside) << row.text;
        EXPECT_NEAR(point.values[0], row.first, 0.01) << row.text;
        EXPECT_NEAR(point.values[1], row.second, 0.01) << row.text;
        const auto back = system->ToPlace(point.values);
        ASSERT_TRUE(back) << row.text;
        EXPECT_LT(Apart(37.4, -105.01, *back), 1e-3) << row.text;
    }
}

TEST(CoordinateSystem, SaysWhereItEnds)
{
    using Reach = AxCoordinateSystem::Reach;
    const struct
    {
        const char* system;
        double latitude;
        double longitude;
        Reach reach;
    } rows[] = {
        {"EPSG:32613", 37.4, -108.0, Reach::Inside},
        {"EPSG:32613", 37.4, -108.1, Reach::Near},
        {"EPSG:32613", 37.4, -120.0, Reach::Outside},
        {"EPSG:32613", 37.4, 255.0, Reach::Inside},
        {"EPSG:32613", -10.0, -105.0, Reach::Outside},
        {"EPSG:2193", -41.0, 174.0, Reach::Inside},
        {"EPSG:3832", 10.0, -179.9, Reach::Inside},
        {"EPSG:3857", 90.0, 0.0, Reach::Outside},
        {"+proj=gnom +lat_0=90", -10.0, 0.0, Reach::Outside},
        {"EPSG:32613", NAN, 0.0, Reach::Outside},
        {"EPSG:32661", 89.0, 40.0, Reach::Inside},
    };
    for (const auto& row : rows) {
        const auto system = AxCoordinateSystem::Of(QLatin1String(row.system));
        ASSERT_TRUE(system) << row.system;
        EXPECT_EQ(system->FromPlace(row.latitude, row.longitude).reach, row.reach)
            << row.system << ' ' << row.latitude << ' ' << row.longitude;
        const AxCoordinateSystem::Shown shown = system->Show(row.latitude, row.longitude);
        EXPECT_EQ(shown.values[0].isEmpty(), row.reach == Reach::Outside);
        EXPECT_EQ(shown.system.contains(QLatin1String("outside the area")), row.reach != Reach::Inside);
    }
    EXPECT_TRUE(AxCoordinateSystem().Show(10.0, 190.0).values[0].startsWith("-170.0")) << "of any turn";
}

TEST(CoordinateSystem, ReadsItsOwnNumbersAndTheOthers)
{
    const auto utm = AxCoordinateSystem::Of(QStringLiteral("EPSG:32613"));
    const auto nad27 = AxCoordinateSystem::Of(QStringLiteral("EPSG:4267"));
    const auto around = AxCoordinateSystem::Of(QStringLiteral("+proj=tmerc +lat_0=37.4 +lon_0=-105"));
    ASSERT_TRUE(utm && nad27 && around);
    const Typed own = utm->Read(QStringLiteral("499114.92, 4139247.22"));
    ASSERT_TRUE(own.place) << own.fault.toStdString();
    EXPECT_LT(Apart(37.4, -105.01, *own.place), 0.02);
    for (const char* text :
         {"37.4 -105.01", "37.4N 105.01W", "37\302\26024' -105\302\2600.6'", "13N 499114.92 4139247.22"}) {
        const Typed other = utm->Read(QString::fromUtf8(text));
        ASSERT_TRUE(other.place) << text << ": " << other.fault.toStdString();
        EXPECT_LT(Apart(37.4, -105.01, *other.place), 0.02) << text;
    }
    EXPECT_TRUE(utm->Read(QStringLiteral("5000000 4139273")).fault.contains("outside the area"));
    // A metre beside the origin, 1.5 degrees beyond the zone; farther up that may be meant.
    const QString swapped = utm->Read(QStringLiteral("97, 10")).fault;
    EXPECT_TRUE(swapped.contains(u8"WGS 84 / UTM zone 13N (108°W to 102°W, 0°N to 84°N). Degrees"))
        << swapped.toStdString();
    EXPECT_TRUE(utm->Read(QStringLiteral("190000 4140000")).place);
    EXPECT_TRUE(around->Read(QStringLiteral("10 20")).fault.contains("or degrees"));
    // Some 50 m between both datums; the latitude comes first in what is typed.
    const Typed shifted = nad27->Read(nad27->Line(37.4, -105.01));
    ASSERT_TRUE(shifted.place) << shifted.fault.toStdString();
    EXPECT_LT(Apart(37.4, -105.01, *shifted.place), 0.2);
    EXPECT_GT(Apart(37.4, -105.01, *AxCoordinateText::Parse(nad27->Line(37.4, -105.01)).place), 20.0);
    for (const char* system : {"", "DMS", "UTM", "mgrs", "EPSG:32613"}) {
        const auto chosen = AxCoordinateSystem::Of(QLatin1String(system));
        ASSERT_TRUE(chosen);
        const Typed back = chosen->Read(chosen->Line(37.4, -105.01));
        ASSERT_TRUE(back.place) << system << ": " << back.fault.toStdString();
        EXPECT_LT(Apart(37.4, -105.01, *back.place), 1.0) << system;
    }
}
