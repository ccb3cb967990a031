// SPDX-License-Identifier: MIT
#include "OffHostClient.h"

#include <QNetworkProxy>
#include <QSslSocket>
#include <QUrl>

#include <utility>

#include <sys/eventfd.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 readBufferSize = 64 * 1024; // bytes

} // namespace

struct OffHostClient::Request
{
    QSslSocket socket;
    ResponseHead response;
};

OffHostClient::OffHostClient()
    : m_reportsFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    m_thread.setObjectName(u"portolan-remote"_s);
    m_onThread.moveToThread(&m_thread);
    m_thread.start();
}

OffHostClient::~OffHostClient()
{
    QMetaObject::invokeMethod(&m_onThread, [this] {
        m_requests.clear();
        m_thread.quit();
    });
    m_thread.wait();
}

void OffHostClient::start(Id id, const RequestTarget &target, const std::string &text)
{
    QMetaObject::invokeMethod(&m_onThread, [=, this] {
        auto &request = *m_requests.try_emplace(id, std::make_unique<Request>()).first->second;
        QSslSocket &socket = request.socket;
        socket.setProxy(QNetworkProxy::NoProxy);
        socket.setReadBufferSize(readBufferSize);
        const auto send = [&socket, text] { socket.write(text.data(), qint64(text.size())); };
        const auto receive = [this, id, &request] {
            const QByteArray bytes = request.socket.readAll();
            request.response.read({bytes.constData(), size_t(bytes.size())});
            const bool hasEnded = request.response.state() != ResponseHead::State::Incomplete;
            report(id, {hasEnded, hasEnded ? request.response : ResponseHead(), false});
        };
        QObject::connect(&socket, &QSslSocket::readyRead, receive);
        QObject::connect(&socket, &QSslSocket::errorOccurred, [this, id, &request] {
            const bool lacksResources = request.socket.error() == QAbstractSocket::SocketResourceError;
            report(id, {true, request.response, lacksResources});
        });

        const QString host = QUrl(QString::fromStdString(target.url())).host();
        // Subdomains of localhost mean this machine, but not every resolver knows that.
        const QString peer = host.endsWith(".localhost"_L1) ? u"localhost"_s : host;
        if (target.isTls()) {
            QObject::connect(&socket, &QSslSocket::encrypted, send);
            socket.connectToHostEncrypted(peer, target.port(), host);
        } else {
            QObject::connect(&socket, &QSslSocket::connected, send);
            socket.connectToHost(peer, target.port());
        }
    });
}

void OffHostClient::cancel(Id id)
{
    QMetaObject::invokeMethod(&m_onThread, [this, id] { m_requests.erase(id); });
}

std::unordered_map<OffHostClient::Id, OffHostClient::Report> OffHostClient::takeReports()
{
    const std::lock_guard lock(m_mutex);
    eventfd_t count = 0;
    eventfd_read(m_reportsFd.get(), &count);
    return std::exchange(m_reports, {});
}

void OffHostClient::report(Id id, Report report)
{
    const std::lock_guard lock(m_mutex);
    m_reports.insert_or_assign(id, std::move(report));
    eventfd_write(m_reportsFd.get(), 1);
}

} // namespace portolan
