// SPDX-License-Identifier: MIT
// main() of the test programs that use fonts, images, the clipboard or windows.
#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    // CTest starts the program without this variable to list the tests.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
