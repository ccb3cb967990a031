#pragma once

#include "StartRequest.h"

#include <QString>
#include <QStringList>

#include <variant>

namespace portolan {

/// What the command line asks for.
struct StartOptions
{
    enum class Purpose : quint8 {
        Run,
        PrintHelp,
        PrintVersion,
    };

    Purpose purpose = Purpose::Run;
    StartRequest request = StartRequest::Open;

    friend bool operator==(const StartOptions &, const StartOptions &) = default;

    /// Why a command line makes no sense: one line for the user.
    struct Error
    {
        QString message;
    };

    /// Reads `arguments` (without the program's name). A pure function. Reading ends at --help and --version,
    /// whatever follows.
    [[nodiscard]] static std::variant<StartOptions, Error> parse(const QStringList &arguments);

    /// What --help prints.
    [[nodiscard]] static QString helpText();
};

} // namespace portolan
