#include <AxAlgorthm/AxNameIndex.h>

#include <gtest/gtest.h>

TEST(NameIndex, TheBestFitComesFirstWhateverTheLettersLookLike)
{
    AxNameIndex index;
    const QStringList names{u8"Sao Tomé", u8"São Paulo",    u8"Santo Paulo",  u8"Cusao",
                            u8"SAO",      u8"New Sao City", u8"\u5317\u4eac", "",
                            u8"a\nsao b"};
    for (int i = 0; i < names.size(); ++i)
        EXPECT_EQ(index.Add(names[i], i == 1 ? 2.0 : 1.0), i);
    struct Row
    {
        const char* typed;
        int most;
        std::vector<int> found;
    };
    for (const Row& row : std::vector<Row>{
             {"sao", 9, {4, 1, 0, 5, 8, 3}},
             {u8"SÃO", 9, {4, 1, 0, 5, 8, 3}},
             {"sao", 2, {4, 1}},
             {"  sao  p", 9, {1}},
             {u8"\u4eac", 9, {6}},
             {u8"ｓａｏ　ｐ", 9, {1}},
             {"x", 9, {}},
             {" ", 9, {}},
             {"sao", 0, {}},
         })
        EXPECT_EQ(index.Find(QString::fromUtf8(row.typed), row.most), row.found) << row.typed;
    EXPECT_EQ(index.Find("sao", 9, [](int number) { return number; }), (std::vector<int>{4, 0, 1, 5, 8, 3}))
        << "the nearer of equals is before the one of more weight";
    index.Clear();
    EXPECT_TRUE(index.Find("sao", 9).empty());
}
