#include "Symbol.h"
#include <QQmlComponent>
#include <QQmlEngine>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Symbol, IsKnownToQml)
{
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick; import Portolan; Item { Symbol { name: 'checkmark'; size: 12.5; "
                      "weight: Font.DemiBold; "
                      "color: Theme.accent } PortolanShape { color: Theme.canvas } Text { font: "
                      "Fonts.system(13.5, Font.DemiBold) } }",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    EXPECT_TRUE(object) << component.errorString().toStdString();
}
