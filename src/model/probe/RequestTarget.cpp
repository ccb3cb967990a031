#include "RequestTarget.h"

#include <QUrl>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr quint16 defaultPort = 80;

// Such characters could end a line of the request that an address becomes part of.
bool isControl(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
}

/// Which of the hosts of this machine an address names; empty for any other.
std::string_view localHost(const QUrl &address)
{
    const QString host = address.host();
    if (host == "127.0.0.1"_L1)
        return RequestTarget::ipv4Host;
    if (host == "::1"_L1)
        return RequestTarget::ipv6Host;
    if (host == "localhost"_L1)
        return RequestTarget::eitherHost;
    return {};
}

} // namespace

std::optional<RequestTarget> RequestTarget::redirected(std::string_view location) const
{
    if (std::ranges::any_of(location, isControl))
        return std::nullopt;
    const QUrl base(QString::fromStdString(url()));
    const QUrl address = base.resolved(QUrl::fromEncoded({location.data(), qsizetype(location.size())}))
                             .adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    const bool isPlain = address.scheme() == "http"_L1;
    if (!address.isValid() || address.host().isEmpty() || (!isPlain && address.scheme() != "https"_L1))
        return std::nullopt;

    RequestTarget target(*this);
    const std::string_view host = localHost(address);
    if (isPlain && !host.empty()) {
        target.m_host = host;
        target.m_port = quint16(address.port(defaultPort));
        target.m_path = address.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority).toStdString();
        if (!target.m_path.starts_with('/'))
            target.m_path.insert(0, 1, '/');
        target.m_offHostUrl.clear();
    } else {
        target.m_offHostUrl = address.toEncoded().toStdString();
    }
    return target;
}

// Without the default port, as in browsers: some servers redirect an address that names it to the one
// without, endlessly.
std::string RequestTarget::hostAndPort() const
{
    std::string text(m_host);
    if (m_port != defaultPort)
        text += ':' + std::to_string(m_port);
    return text;
}

std::string RequestTarget::url() const
{
    return isLocal() ? "http://" + hostAndPort() + m_path : m_offHostUrl;
}

} // namespace portolan
