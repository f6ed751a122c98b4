#include <AxAlgorthm/AxGeoid.h>

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <limits>

namespace {
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

QByteArray wholeGrid()
{
    for (const QString& folder : AxGeoidFolders()) {
        QFile file(folder + "/egm96_15.gtx");
        if (file.open(QIODevice::ReadOnly))
            return file.readAll();
    }
    return {};
}
} // namespace

TEST(Geoid, KnownHeights)
{
    ASSERT_EQ(AxGeoidFault(), QString());
    // The first six are places of the test data that NGA publishes with EGM96, with its heights; between the
    // nodes of a grid of quarter degrees they are met to a decimetre. The others are what GDAL's
    // gdaltransform (EPSG:4326+5773 to EPSG:4979) answers.
    const struct
    {
        double latitude, longitude, metres, within;
    } rows[] = {{38.628155, 269.779155, -31.628, 0.1}, {-14.621217, 305.021114, -2.969, 0.1},
                {46.874319, 102.448729, -43.575, 0.1}, {-23.617446, 133.874712, 15.871, 0.1},
                {38.625473, 359.9995, 50.066, 0.1},    {-0.466744, 0.0023, 17.329, 0.1},
                {51.5, -0.12, 45.95161, 1e-4},         {4.73, 79.03, -106.85274, 1e-4},
                {-33.9, 151.2, 22.30396, 1e-4},        {46.5, 7.9, 50.59812, 1e-4},
                {-17.83, 179.95, 50.09683, 1e-4},      {-17.83, -179.95, 49.95529, 1e-4},
                {-17.83, 180.05, 49.95529, 1e-4},      {89.9, 10.0, 13.70669, 1e-4},
                {-89.95, 10.0, -29.54376, 1e-4},       {90.0, 123.0, 13.60625, 1e-4},
                {-90.0, -77.0, -29.53385, 1e-4}};
    for (const auto& row : rows) {
        const std::optional<double> height = AxGeoidHeight(row.latitude, row.longitude);
        ASSERT_TRUE(height) << row.latitude;
        EXPECT_NEAR(*height, row.metres, row.within) << row.latitude << ' ' << row.longitude;
    }
    for (double wrong : {notANumber, std::numeric_limits<double>::infinity(), 90.01, -91.0})
        EXPECT_FALSE(AxGeoidHeight(wrong, 10.0)) << wrong;
    EXPECT_FALSE(AxGeoidHeight(10.0, notANumber));
}

TEST(Geoid, AGridThatIsMissingOrDamagedAnswersNothingAndSaysWhy)
{
    const QByteArray whole = wholeGrid();
    ASSERT_FALSE(whole.isEmpty());
    const auto with = [&](int at, const QByteArray& bytes) {
        return QByteArray(whole).replace(at, bytes.size(), bytes);
    };
    const struct
    {
        const char* what;
        QByteArray data;
    } rows[] = {{"empty", {}},
                {"cut in the header", whole.left(39)},
                {"cut in the nodes", whole.left(whole.size() - 1)},
                {"too long", whole + '\0'},
                {"another format", QByteArray(int(whole.size()), 'x')},
                {"a part of the earth", with(0, QByteArray::fromHex("c054000000000000"))}, // from 80 south
                {"rows without number", with(32, QByteArray::fromHex("ffffffff"))},
                {"a node that is no number", with(40 + 4 * 5000, QByteArray::fromHex("7fc00000"))}};
    for (const auto& row : rows) {
        const QTemporaryDir folder;
        QFile file(folder.filePath("egm96_15.gtx"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(row.data) == row.data.size()) << row.what;
        file.close();
        const AxGeoidGrid grid({folder.path()});
        EXPECT_TRUE(grid.Fault().contains("egm96_15.gtx")) << row.what;
        EXPECT_FALSE(grid.HeightAt(10.0, 10.0)) << row.what;
    }
    const QTemporaryDir folder;
    const AxGeoidGrid missing({folder.path()});
    EXPECT_TRUE(missing.Fault().contains(folder.path()));
    EXPECT_FALSE(missing.HeightAt(10.0, 10.0));
}
