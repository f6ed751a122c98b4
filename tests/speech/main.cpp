#include <QCoreApplication>

#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
// Qt's offscreen platform plugin keeps its screen at exit. Whole stacks are needed to tell that by name.
extern "C" Q_DECL_EXPORT const char* __asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}

extern "C" Q_DECL_EXPORT const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen.so";
}
#endif

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
