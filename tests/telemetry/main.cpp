#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
