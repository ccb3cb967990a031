// SPDX-License-Identifier: MIT
#pragma once

#include "SrgbColor.h"

#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace portolan {

/// The kind of project that a server belongs to. An enumeration value, with text, symbol and colour from one
/// table.
class Framework
{
    Q_GADGET
    Q_PROPERTY(QString rawValue READ rawValue CONSTANT FINAL)
    Q_PROPERTY(QString symbol READ symbol CONSTANT FINAL)

public:
    enum Case : quint8 {
        next,
        vite,
        react,
        vue,
        svelte,
        nuxt,
        astro,
        remix,
        angular,
        node,
        deno,
        bun,
        python,
        django,
        flask,
        fastapi,
        rails,
        go,
        rust,
        php,
        java,
        dotnet,
        docker,
        generic,
    };
    Q_ENUM(Case)
    static constexpr int count = generic + 1;

    constexpr Framework(Case value = generic)
        : m_case(value)
    {}

    /// The framework whose display name is exactly `rawValue` (case-sensitive); nothing for any other text.
    [[nodiscard]] static std::optional<Framework> fromRawValue(QStringView rawValue);
    /// All cases in the order of their declaration.
    [[nodiscard]] static std::array<Framework, count> allCases();

    /// The display name, e.g. "Next.js".
    [[nodiscard]] QString rawValue() const;
    /// The name of its symbol.
    [[nodiscard]] QString symbol() const;
    /// The colour of that symbol.
    [[nodiscard]] SrgbColor accent() const;

    constexpr operator Case() const { return m_case; }

    friend constexpr bool operator==(Framework, Framework) = default;
    friend constexpr bool operator==(Framework a, Case b) { return a.m_case == b; }
    friend size_t qHash(Framework framework, size_t seed = 0) { return ::qHash(int(framework.m_case), seed); }

private:
    Case m_case;
};

} // namespace portolan
