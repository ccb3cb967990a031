// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace portolan {

/// The orders that the list of services can be shown in.
class SortOrder
{
    Q_GADGET
    Q_PROPERTY(QString id READ id CONSTANT FINAL)
    Q_PROPERTY(QString label READ label CONSTANT FINAL)

public:
    enum Case : quint8 {
        port,   ///< ascending port number
        name,   ///< display name, case-insensitive, by the user's locale
        status, ///< services that answer before all others
        uptime, ///< longest-running first
    };
    Q_ENUM(Case)
    static constexpr int count = uptime + 1;

    constexpr SortOrder(Case value = port)
        : m_case(value)
    {}

    /// The order stored as `rawValue` (exactly "port", "name", "status" or "uptime"); nothing for any other
    /// text.
    [[nodiscard]] static std::optional<SortOrder> fromRawValue(QStringView rawValue);
    /// All cases in the order of their declaration.
    [[nodiscard]] static std::array<SortOrder, count> allCases();

    /// What is stored in the settings.
    [[nodiscard]] QString rawValue() const;
    [[nodiscard]] QString id() const { return rawValue(); }
    /// The title shown to the user.
    [[nodiscard]] QString label() const;

    constexpr operator Case() const { return m_case; }

    friend constexpr bool operator==(SortOrder, SortOrder) = default;
    friend constexpr bool operator==(SortOrder a, Case b) { return a.m_case == b; }
    friend size_t qHash(SortOrder order, size_t seed = 0) { return ::qHash(int(order.m_case), seed); }

private:
    Case m_case;
};

} // namespace portolan
