// SPDX-License-Identifier: MIT
#include "ActivationToken.h"

#include <QGuiApplication>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {
constexpr auto variable = "XDG_ACTIVATION_TOKEN"; // read by Qt's Wayland plug-in
}

QString ActivationToken::ofThisStart()
{
    return qEnvironmentVariable(variable);
}

void ActivationToken::keep(const QString &token)
{
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith("wayland"_L1))
        qputenv(variable, token.toUtf8());
}

} // namespace portolan
