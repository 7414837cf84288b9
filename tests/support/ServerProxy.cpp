#include "support/ServerProxy.h"

#include "data/dao/postgres/OpenPostgres.h"

#include <QByteArray>
#include <QRegularExpression>
#include <QtEndian>
#include <algorithm>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr auto SocketName = "/.s.PGSQL.5432";
constexpr int PollMs = 50;

void Ensure(bool isDone)
{
    if (!isDone)
        qFatal("the way to the server can't be set up");
}

sockaddr_un AddressIn(const QString &folder)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = (folder + SocketName).toUtf8();
    Ensure(size_t(path.size()) < sizeof address.sun_path);
    std::copy(path.begin(), path.end(), address.sun_path);
    return address;
}

bool WriteAll(int socket, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count
            = ::send(socket, bytes.data() + written, size_t(bytes.size() - written), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

/// The messages of one direction.
struct Stream
{
    int from;
    int to;
    bool hasStarted; ///< a client's first message has no type
    QByteArray bytes;

    /// Reads what is there; false at the end.
    bool Read()
    {
        char buffer[64 << 10];
        const ssize_t count = ::recv(from, buffer, sizeof buffer, 0);
        if (count > 0)
            bytes.append(buffer, count);
        return count > 0;
    }

    /// The next whole message; empty when there is none yet.
    QByteArray Next()
    {
        const qsizetype head = hasStarted ? 1 : 0;
        if (bytes.size() < head + 4)
            return {};
        const qsizetype length = head + qFromBigEndian<qint32>(bytes.constData() + head);
        if (bytes.size() < length)
            return {};
        hasStarted = true;
        const QByteArray message = bytes.left(length);
        bytes.remove(0, length);
        return message;
    }
};

} // namespace

/// One connection.
class ServerProxy::Link
{
public:
    Link(ServerProxy &proxy, int client)
        : m_proxy(proxy)
        , m_client{client, ::socket(AF_UNIX, SOCK_STREAM, 0), false, {}}
        , m_server{m_client.to, client, true, {}}
    {
        static const QRegularExpression host("host=(\\S+)");
        const sockaddr_un address = AddressIn(host.match(proxy.m_server).captured(1));
        Ensure(::connect(m_client.to, reinterpret_cast<const sockaddr *>(&address), sizeof address)
               == 0);
    }
    ~Link()
    {
        ::close(m_client.from);
        ::close(m_client.to);
    }

    void Run()
    {
        while (!m_proxy.m_isEnding) {
            pollfd sockets[] = {{m_client.from, POLLIN, 0}, {m_client.to, POLLIN, 0}};
            ::poll(sockets, 2, PollMs);
            if (m_proxy.m_isHung && ((sockets[0].revents | sockets[1].revents) & POLLHUP) == 0) {
                std::this_thread::sleep_for(std::chrono::milliseconds(PollMs));
                continue;
            }
            if (sockets[1].revents != 0 && !PassReplies())
                return;
            if (sockets[0].revents != 0 && !PassStatements())
                return;
        }
    }

private:
    bool PassReplies()
    {
        if (!m_server.Read())
            return false;
        for (QByteArray message = m_server.Next(); !message.isEmpty(); message = m_server.Next()) {
            if (message.startsWith('K'))
                m_processId = qFromBigEndian<qint32>(message.constData() + 5);
            if (!WriteAll(m_client.from, message))
                return false;
        }
        return true;
    }

    bool PassStatements()
    {
        if (!m_client.Read())
            return false;
        for (QByteArray message = m_client.Next(); !message.isEmpty(); message = m_client.Next()) {
            if (message.startsWith('Q')) {
                std::this_thread::sleep_for(m_proxy.m_roundTrip.load());
                if (++m_proxy.m_statements == m_proxy.m_breakAt)
                    return Break(message);
            }
            if (!WriteAll(m_client.to, message))
                return false;
        }
        return true;
    }

    /// Whether the connection is still there.
    bool Break(const QByteArray &statement)
    {
        if (m_proxy.m_how == ServerProxy::Break::After) {
            WriteAll(m_client.to, statement);
            for (bool isDone = false; !isDone && m_server.Read();)
                for (QByteArray reply = m_server.Next(); !reply.isEmpty(); reply = m_server.Next())
                    isDone = reply.startsWith('Z');
        } else if (m_proxy.m_how == ServerProxy::Break::Silent) {
            ::shutdown(m_client.from, SHUT_RDWR);
            pollfd end{m_client.to, POLLIN, 0};
            while (!m_proxy.m_isEnding && ::poll(&end, 1, PollMs) == 0) {
            } // until the server ends it
        } else if (m_proxy.m_how == ServerProxy::Break::Killed) {
            m_proxy.KillBackend(m_processId);
            while (PassReplies()) {
            } // its last words
        }
        m_proxy.m_isHung = m_proxy.m_how == ServerProxy::Break::Hung;
        return m_proxy.m_isHung;
    }

    ServerProxy &m_proxy;
    Stream m_client;
    Stream m_server;
    int m_processId = 0;
};

ServerProxy::ServerProxy(const QString &settings)
    : m_server(settings)
    , m_settings(settings)
{
    static const QRegularExpression host("host=\\S+");
    m_settings.replace(host, "host=" + m_folder.path());
    m_listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const sockaddr_un address = AddressIn(m_folder.path());
    Ensure(::bind(m_listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0);
    Ensure(::listen(m_listener, 10) == 0);
    m_acceptor = std::thread([this] { Accept(); });
}

ServerProxy::~ServerProxy()
{
    m_isEnding = true;
    m_acceptor.join();
    for (std::thread &link : m_links)
        link.join();
    ::close(m_listener);
}

void ServerProxy::BreakAt(int statement, Break how)
{
    m_how = how;
    m_isHung = false;
    m_breakAt = statement;
    m_statements = 0;
}

void ServerProxy::Accept()
{
    while (!m_isEnding) {
        pollfd listener{m_listener, POLLIN, 0};
        if (::poll(&listener, 1, PollMs) <= 0)
            continue;
        const int client = ::accept(m_listener, nullptr, nullptr);
        m_links.emplace_back([this, client] { Link(*this, client).Run(); });
    }
}

void ServerProxy::KillBackend(int processId) const
{
    const auto administrator = OpenPostgres(m_server, ServerAccess::ReadWrite);
    administrator->ExecuteScript(
        QString("SELECT pg_terminate_backend(%1, 5000)").arg(processId)); // waits for its end
}
