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

/// A TCP server on 127.0.0.1, or on ::1, that treats each connection as a script says, however badly behaved,
/// and remembers what was asked of it. Each connection is served by a thread of its own; destroying the
/// server ends them all, wherever they are in their script.
class ScriptedServer
{
public:
    class Connection;
    using Script = std::function<void(Connection &)>;

    enum class Address { ipv4, ipv6 };

    /// Serves every connection with `script` and closes it when the script returns.
    explicit ScriptedServer(Script script, Address address = Address::ipv4);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer &) = delete;
    ScriptedServer &operator=(const ScriptedServer &) = delete;

    /// A server that reads a request and answers every one with `response`.
    static Script answers(const QByteArray &response);

    /// 0 where the machine has no such address.
    [[nodiscard]] quint16 port() const { return m_port; }
    /// The requests read so far, each with its whole header section, in the order of their connections.
    [[nodiscard]] QList<QByteArray> requests() const;
    /// The methods of the requests read so far.
    [[nodiscard]] QList<QByteArray> methods() const;
    /// How many connections came in so far.
    [[nodiscard]] int connections() const { return m_connections; }

private:
    void acceptAll();
    void remember(int connection, const QByteArray &request);

    Script m_script;
    int m_listener;
    int m_stop; // an event descriptor, readable once the server ends
    quint16 m_port = 0;
    std::atomic<int> m_connections = 0;
    mutable std::mutex m_mutex;
    std::multimap<int, QByteArray> m_requests; // by the number of their connection; guarded by m_mutex
    std::vector<std::jthread> m_servants;      // touched by the accepting thread alone, until that has ended
    std::jthread m_acceptor;
};

/// One connection, as seen by a script. Every call ends at once when the server ends.
class ScriptedServer::Connection
{
public:
    Connection(ScriptedServer &server, int number, int socket);
    ~Connection();

    /// Reads up to the end of a header section and returns its method, "" when the peer said nothing more.
    QByteArray readRequest();
    /// Sends all of `bytes`; false once that cannot be done any more.
    bool send(QByteArrayView bytes);
    /// Lets `time` pass; false when the peer hung up or the server ends meanwhile.
    bool pause(std::chrono::milliseconds time);
    /// Keeps the connection open and silent until the peer hangs up.
    void hang();
    /// Closes with a reset rather than in good order.
    void reset();

private:
    ScriptedServer &m_server;
    int m_number;
    int m_socket;
};

} // namespace portolan
