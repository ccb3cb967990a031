// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <chrono>

namespace portolan {

/// One run of the user's ssh, which never asks for anything. Starts from the event loop; killed with this
/// object. What the other side sends is bounded in size. Main thread.
class SshRun : public QObject
{
    Q_OBJECT

public:
    /// Runs ssh with `arguments`.
    SshRun(const QStringList &arguments, QObject *parent);
    /// Runs portolanctl on `host` with `words`, in which a shell must not find anything special.
    SshRun(const QString &host, const QStringList &words, QObject *parent);
    ~SshRun() override;

    /// Gives up if the other side sends no line (see `lineRead`) for so long.
    void setSilenceLimit(std::chrono::milliseconds limit);
    /// Announces every line when it is complete, instead of keeping it for `takeOutput()`.
    void readLines() { m_readsLines = true; }

    /// Ends it, because of `problem`.
    void giveUp(const QString &problem);

    [[nodiscard]] QByteArray takeOutput() { return m_process.readAllStandardOutput(); }

Q_SIGNALS:
    void lineRead(const QByteArray &line);
    /// It has ended by itself or was given up. `problem`: one harmless line; empty if it ended with exit
    /// status 0. The last signal.
    void ended(const QString &problem);

private:
    void readOutput();
    [[nodiscard]] QString problemOfExit() const;

    QProcess m_process;
    bool m_readsLines = false;
    bool m_hasEnded = false;
    QByteArray m_error;
    qint64 m_received = 0; ///< in lines, since m_window started
    QElapsedTimer m_window;
    QTimer m_silence;
};

} // namespace portolan
