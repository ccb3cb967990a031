// SPDX-License-Identifier: MIT
// A program that records how it was started, in a file next to it. Tests install it under the names of the
// programs that Portolan starts.
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <array>
#include <filesystem>

#include <unistd.h>

namespace portolan {

namespace {

QJsonArray texts(char **list)
{
    QJsonArray array;
    for (; *list; ++list)
        array.append(QString::fromUtf8(*list));
    return array;
}

/// The targets of all open descriptors, by number.
QJsonObject openDescriptors()
{
    QJsonObject descriptors;
    for (int number = 0; number < 1024; ++number) {
        std::array<char, 4096> target;
        const auto link = QByteArray("/proc/self/fd/") + QByteArray::number(number);
        const ssize_t length = readlink(link.constData(), target.data(), target.size());
        if (length >= 0)
            descriptors.insert(QString::number(number), QString::fromUtf8(target.data(), length));
    }
    return descriptors;
}

QString statusField(const QByteArray &name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return {};
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return QString::fromUtf8(line.sliced(name.size() + 1).trimmed());
    }
    return {};
}

} // namespace

} // namespace portolan

int main(int, char **argv)
{
    using namespace portolan;
    const QJsonObject descriptors = openDescriptors();
    const QJsonObject record{
        {QStringLiteral("arguments"), texts(argv + 1)},
        {QStringLiteral("environment"), texts(environ)},
        {QStringLiteral("descriptors"), descriptors},
        {QStringLiteral("folder"), QString::fromStdString(std::filesystem::current_path().string())},
        {QStringLiteral("process"), getpid()},
        {QStringLiteral("session"), getsid(0)},
        {QStringLiteral("ignoredSignals"), statusField("SigIgn")},
        {QStringLiteral("blockedSignals"), statusField("SigBlk")},
    };
    QSaveFile file(QString::fromUtf8(argv[0]) + QStringLiteral(".json"));
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(record).toJson()) > 0 && file.commit()
               ? 0
               : 1;
}
