// SPDX-License-Identifier: MIT
#include "Printers.h"
#include "VirtualDisplay.h"

#include <gtest/gtest.h>

namespace portolan {

using namespace Qt::StringLiterals;

/// A display whose clipboard already has content of another program.
class Copy : public testing::Test
{
protected:
    void SetUp() override
    {
        if (m_display.name().isEmpty())
            GTEST_SKIP() << "Xvfb is not installed";
        QProcess offer;
        offer.setProcessEnvironment(environment());
        for (const QString &selection : {u"clipboard"_s, u"primary"_s}) {
            offer.start(u"xclip"_s, {u"-in"_s, u"-selection"_s, selection});
            if (!offer.waitForStarted())
                GTEST_SKIP() << "xclip is not installed";
            offer.write("old " + selection.toLatin1());
            offer.closeWriteChannel();
            ASSERT_TRUE(offer.waitForFinished());
        }
        ASSERT_EQ(pasted(u"clipboard"_s), "old clipboard");
    }

    ~Copy() override
    {
        m_copier.closeWriteChannel();
        m_copier.waitForFinished();
    }

    void copy(const QString &what, const QString &port)
    {
        m_copier.setProcessEnvironment(environment());
        m_copier.start(QStringLiteral(PORTOLAN_COPIER), {what, port});
        ASSERT_TRUE(m_copier.waitForReadyRead());
        ASSERT_EQ(m_copier.readLine(), "copied\n");
    }

    /// What another program gets when it pastes.
    [[nodiscard]] QByteArray pasted(const QString &selection, const QString &format = u"UTF8_STRING"_s) const
    {
        QProcess paste;
        paste.setProcessEnvironment(environment());
        paste.start(u"xclip"_s, {u"-out"_s, u"-selection"_s, selection, u"-target"_s, format});
        return paste.waitForFinished() ? paste.readAllStandardOutput() : QByteArray("(no answer)");
    }

private:
    [[nodiscard]] QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DISPLAY"_s, m_display.name());
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        return environment;
    }

    VirtualDisplay m_display;
    QProcess m_copier;
};

TEST_F(Copy, PutsTheAddressOnTheClipboard)
{
    copy(u"url"_s, u"5173"_s);
    EXPECT_EQ(pasted(u"clipboard"_s), "http://localhost:5173");
    EXPECT_EQ(pasted(u"clipboard"_s, u"text/plain"_s), "http://localhost:5173");
    EXPECT_EQ(pasted(u"primary"_s), "old primary");
}

TEST_F(Copy, PutsTheBarePortOnTheClipboard)
{
    copy(u"port"_s, u"3000"_s);
    EXPECT_EQ(pasted(u"clipboard"_s), "3000");
}

} // namespace portolan
