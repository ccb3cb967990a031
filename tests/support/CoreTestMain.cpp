// SPDX-License-Identifier: MIT
// main() of the test programs that need no display.
#include <QCoreApplication>

#include <gtest/gtest.h>

#if defined(__SANITIZE_THREAD__)
#include <thread>
#endif

int main(int argc, char **argv)
{
#if defined(__SANITIZE_THREAD__)
    // The first thread makes the sanitizer start one of its own; here, before a test counts threads.
    std::thread([] {}).join();
#endif
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
