// SPDX-License-Identifier: MIT
// Runs one fuzz target on its saved corpus, one test per file.
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size);

namespace {

const QString corpus = QStringLiteral(PORTOLAN_CORPUS);

std::vector<std::string> files()
{
    std::vector<std::string> names;
    for (const QString &name : QDir(corpus).entryList(QDir::Files, QDir::Name))
        names.push_back(name.toStdString());
    return names;
}

/// Copies the input, so that the sanitizer detects reads beyond its end.
int runTarget(const char *data, qsizetype size)
{
    const std::vector<unsigned char> bytes(data, data + size);
    return LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

class Corpus : public testing::TestWithParam<std::string>
{};

} // namespace

// An empty corpus fails the test, because GoogleTest reports a suite without instances as an error.
TEST_P(Corpus, HoldsWholeAndCutAtEveryByte)
{
    QFile file(corpus + u'/' + QString::fromStdString(GetParam()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    constexpr qsizetype manyCuts = 4096;
    const qsizetype step = bytes.size() / manyCuts + 1;
    for (qsizetype cut = 0; cut < bytes.size(); cut += step)
        EXPECT_EQ(runTarget(bytes.constData(), cut), 0) << cut;
    EXPECT_EQ(runTarget(bytes.constData(), bytes.size()), 0);
}

INSTANTIATE_TEST_SUITE_P(Files, Corpus, testing::ValuesIn(files()), [](const auto &row) {
    std::string name = row.param;
    for (char &character : name) {
        if (!std::isalnum(static_cast<unsigned char>(character)))
            character = '_';
    }
    return name;
});

} // namespace portolan
