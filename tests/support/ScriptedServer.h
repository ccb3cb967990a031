// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace portolan {

/// A TCP server on 127.0.0.1 or ::1 that runs a script for each connection, which need not be valid HTTP, and
/// records the requests. Each connection has a thread of its own; the destructor interrupts and joins them.
class ScriptedServer
{
public:
    class Connection;
    using Script = std::function<void(Connection &)>;

    enum class Address { ipv4, ipv6 };

    /// Calls `script` for every connection and closes the connection when it returns.
    explicit ScriptedServer(Script script, Address address = Address::ipv4);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer &) = delete;
    ScriptedServer &operator=(const ScriptedServer &) = delete;

    /// A script that reads one request and sends `response`.
    static Script answers(const QByteArray &response);

    /// 0 if the address is not available on this machine.
    [[nodiscard]] quint16 port() const { return m_port; }
    /// The requests read so far, with their header sections, in the order of the connections.
    [[nodiscard]] QList<QByteArray> requests() const;
    /// The methods of the requests read so far.
    [[nodiscard]] QList<QByteArray> methods() const;
    /// The number of connections accepted so far.
    [[nodiscard]] int connections() const { return m_connections; }

private:
    void acceptAll();
    void record(int connection, const QByteArray &request);

    Script m_script;
    int m_listener;
    int m_stop; // an eventfd, readable once the server stops
    quint16 m_port = 0;
    std::atomic<int> m_connections = 0;
    mutable std::mutex m_mutex;
    std::multimap<int, QByteArray> m_requests; // by connection number; guarded by m_mutex
    std::vector<std::jthread> m_workers;       // used by the accepting thread only, until it has finished
    std::jthread m_acceptor;
};

/// One connection, for use by a script. Every call returns at once when the server stops.
class ScriptedServer::Connection
{
public:
    Connection(ScriptedServer &server, int number, int socket);
    ~Connection();

    /// Reads a request up to the end of its header section and returns its method; empty if the peer closed.
    QByteArray readRequest();
    /// Sends all of `bytes`; returns false if that fails.
    bool send(QByteArrayView bytes);
    /// Waits for `time`; returns false if the peer closed or the server stopped meanwhile.
    bool pause(std::chrono::milliseconds time);
    /// Keeps the connection open, without sending, until the peer closes it.
    void hang();
    /// Closes the connection with a TCP reset.
    void reset();

private:
    ScriptedServer &m_server;
    int m_number;
    int m_socket;
};

} // namespace portolan
