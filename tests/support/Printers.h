// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDebug>
#include <QString>

#include <ostream>

// Lets GoogleTest print Qt's string types.

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}
