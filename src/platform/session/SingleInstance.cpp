// SPDX-License-Identifier: MIT
#include "SingleInstance.h"

#include "ActivationToken.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>
#include <QThread>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr auto serviceName = "org.portolan.portolan"_L1;
constexpr auto objectPath = "/org/portolan/portolan"_L1;
constexpr auto interfaceName = "org.freedesktop.Application"_L1;
constexpr auto windowAction = "window"_L1;
constexpr auto tokenKey = "activation-token"_L1;

// The protocol on the socket: one byte as request, one as reply.
constexpr char openRequest = 'o';
constexpr char windowRequest = 'w';
constexpr char receipt = '.';

constexpr int timeoutMs = 3000;

QDBusMessage toCall(StartRequest request)
{
    QVariantMap platformData;
    if (const QString token = ActivationToken::ofThisStart(); !token.isEmpty())
        platformData.insert(tokenKey, token);

    const bool window = request == StartRequest::Window;
    QDBusMessage call = QDBusMessage::createMethodCall(serviceName, objectPath, interfaceName,
                                                       window ? u"ActivateAction"_s : u"Activate"_s);
    if (window)
        call << QString(windowAction) << QVariantList();
    return call << platformData;
}

/// The time until `deadline` in milliseconds, at least one.
int remaining(const QDeadlineTimer &deadline)
{
    return int(std::max<qint64>(1, deadline.remainingTime()));
}

bool sendOverSocket(const QString &path, StartRequest request)
{
    const QDeadlineTimer deadline(timeoutMs);
    QLocalSocket socket;
    // The other instance takes the lock before it listens, so the first attempts may fail.
    for (socket.connectToServer(path); !socket.waitForConnected(remaining(deadline));
         socket.connectToServer(path)) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(20);
    }
    socket.putChar(request == StartRequest::Window ? windowRequest : openRequest);
    return socket.waitForReadyRead(remaining(deadline));
}

} // namespace

SingleInstance::SingleInstance(const QDBusConnection &bus, const QString &runtimeFolder)
    : m_bus(bus)
    , m_runtimeFolder(runtimeFolder)
{}

SingleInstance::~SingleInstance() = default;

SingleInstance::Outcome SingleInstance::claim(StartRequest request)
{
    return m_bus.isConnected() ? claimOnBus(request) : claimInFolder(request);
}

SingleInstance::Outcome SingleInstance::claimOnBus(StartRequest request)
{
    // Registered before the name is owned: calls may arrive as soon as it is.
    m_bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots);
    for (const QDeadlineTimer deadline(timeoutMs); !deadline.hasExpired();) {
        if (m_bus.registerService(serviceName))
            return Outcome::First;
        if (request == StartRequest::None)
            return Outcome::Forwarded;
        const QDBusMessage reply = m_bus.call(toCall(request), QDBus::Block, remaining(deadline));
        if (reply.type() == QDBusMessage::ReplyMessage)
            return Outcome::Forwarded;
        if (QDBusError(reply).type() != QDBusError::ServiceUnknown)
            return Outcome::Unanswered;
        // The other instance has exited in the meantime: try to get the name again.
    }
    return Outcome::Unanswered;
}

SingleInstance::Outcome SingleInstance::claimInFolder(StartRequest request)
{
    const QString socket = m_runtimeFolder + "/portolan.socket"_L1;
    m_lock.emplace(m_runtimeFolder + "/portolan.lock"_L1);
    m_lock->setStaleLockTime(0); // a lock is stale only once its process has exited
    if (m_lock->tryLock(0)) {
        QFile::setPermissions(m_runtimeFolder + "/portolan.lock"_L1, QFile::ReadOwner | QFile::WriteOwner);
        listen(socket);
        return Outcome::First;
    }
    if (m_lock->error() != QLockFile::LockFailedError)
        return Outcome::First; // the folder is unusable: there is no way to find another instance
    if (request == StartRequest::None || sendOverSocket(socket, request))
        return Outcome::Forwarded;
    return Outcome::Unanswered;
}

void SingleInstance::listen(const QString &socket)
{
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        QLocalSocket *client = m_server.nextPendingConnection();
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        connect(client, &QLocalSocket::readyRead, this, [this, client] {
            char request = 0;
            client->getChar(&request);
            client->putChar(receipt);
            client->disconnectFromServer();
            Q_EMIT requested(request == windowRequest ? StartRequest::Window : StartRequest::Open);
        });
    });
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QLocalServer::removeServer(socket);
    m_server.listen(socket);
}

void SingleInstance::Activate(const QVariantMap &platformData)
{
    ActivationToken::keep(platformData.value(tokenKey).toString());
    Q_EMIT requested(StartRequest::Open);
}

void SingleInstance::Open(const QStringList &, const QVariantMap &platformData)
{
    Activate(platformData);
}

void SingleInstance::ActivateAction(const QString &name, const QVariantList &,
                                    const QVariantMap &platformData)
{
    ActivationToken::keep(platformData.value(tokenKey).toString());
    Q_EMIT requested(name == windowAction ? StartRequest::Window : StartRequest::Open);
}

} // namespace portolan
