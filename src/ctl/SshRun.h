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

/// One run of the user's ssh, which never prompts. Started by the event loop; killed with this object. The
/// size of the output is limited. Main thread.
class SshRun : public QObject
{
    Q_OBJECT

public:
    /// Runs ssh with `arguments`.
    SshRun(const QStringList &arguments, QObject *parent);
    /// Runs portolanctl on `host` with the arguments `words`, which must not contain characters that are
    /// special to a shell.
    SshRun(const QString &host, const QStringList &words, QObject *parent);
    ~SshRun() override;

    /// Gives up if the other side sends no line (see `lineRead`) for `limit`; without readLines(), if the run
    /// lasts that long.
    void setSilenceLimit(std::chrono::milliseconds limit);
    /// Emits `lineRead` for every complete line, instead of keeping the output for `takeOutput()`.
    void readLines() { m_readsLines = true; }

    /// Ends the run with `problem` as the reason.
    void giveUp(const QString &problem);

    [[nodiscard]] QByteArray takeOutput() { return m_process.readAllStandardOutput(); }

Q_SIGNALS:
    void lineRead(const QByteArray &line);
    /// The run has ended by itself or by giveUp(). `problem`: one harmless line; empty if the exit status is
    /// 0. The last signal.
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
