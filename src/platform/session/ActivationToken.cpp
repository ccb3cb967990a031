// SPDX-License-Identifier: MIT
#include "ActivationToken.h"

#include <QGuiApplication>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {
constexpr auto Variable = "XDG_ACTIVATION_TOKEN"; // read by Qt's Wayland plug-in
}

QString ActivationToken::ofThisStart()
{
    return qEnvironmentVariable(Variable);
}

void ActivationToken::keep(const QString &token)
{
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith("wayland"_L1))
        qputenv(Variable, token.toUtf8());
}

} // namespace portolan
