// SPDX-License-Identifier: MIT
#include "RequestTarget.h"

#include <QUrl>

#include <algorithm>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

// Such characters could end a line of the request that contains the address.
bool isControl(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
}

constexpr quint16 defaultPort(bool isTls)
{
    return isTls ? 443 : 80;
}

// As in an address: IPv6 in brackets, names in ASCII.
std::string encodedHost(const QUrl &address)
{
    return address.toEncoded(QUrl::RemoveScheme | QUrl::RemovePort | QUrl::RemovePath | QUrl::RemoveQuery)
        .sliced(2) // the "//" before it
        .toStdString();
}

} // namespace

std::optional<RequestTarget> RequestTarget::redirected(std::string_view location) const
{
    if (std::ranges::any_of(location, isControl))
        return std::nullopt;
    const QUrl base(QString::fromStdString(url()));
    const QUrl address = base.resolved(QUrl::fromEncoded({location.data(), qsizetype(location.size())}))
                             .adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    const bool isTls = address.scheme() == "https"_L1;
    if (!address.isValid() || address.host().isEmpty() || (!isTls && address.scheme() != "http"_L1))
        return std::nullopt;

    RequestTarget target(*this);
    target.m_isTls = isTls;
    target.m_host = encodedHost(address);
    target.m_port = quint16(address.port(defaultPort(isTls)));
    target.m_path = address.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority).toStdString();
    if (!target.m_path.starts_with('/'))
        target.m_path.insert(0, 1, '/');
    return target;
}

RequestTarget RequestTarget::onLocalhost() const
{
    RequestTarget target(*this);
    target.m_host = eitherHost;
    return target;
}

bool RequestTarget::isLocal() const
{
    return !m_isTls && (m_host == ipv4Host || m_host == ipv6Host || m_host == eitherHost);
}

// Without the default port, as in browsers: some servers endlessly redirect an address that names it to the
// one that does not.
std::string RequestTarget::hostAndPort() const
{
    std::string text = m_host;
    if (m_port != defaultPort(m_isTls))
        text += ':' + std::to_string(m_port);
    return text;
}

std::string RequestTarget::url() const
{
    return (m_isTls ? "https://" : "http://") + hostAndPort() + m_path;
}

} // namespace portolan
