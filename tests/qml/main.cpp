// SPDX-License-Identifier: MIT
// Runs the tests of the views.

#include <QQuickWindow>
#include <QtQuickTest>

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QTEST_SET_MAIN_SOURCE_PATH
    return quick_test_main(argc, argv, "views", VIEW_TESTS);
}
