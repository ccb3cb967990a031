// Entry point of the test programs that need no display.
#include <QCoreApplication>

#include <gtest/gtest.h>

#if defined(__SANITIZE_THREAD__)
#include <thread>
#endif

int main(int argc, char **argv)
{
#if defined(__SANITIZE_THREAD__)
    // A thread of the sanitizer's own comes with the first of the program's: before any test counts them.
    std::thread([] {}).join();
#endif
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
