// SPDX-License-Identifier: MIT
#pragma once

#include "StartRequest.h"

#include <QString>

#include <variant>

/// The command line of portolan.
namespace portolan::StartOptions {

/// What is printed instead of starting: the help, the version, or one line that says why the command line is
/// invalid.
struct Reply
{
    QString text;
    bool isError = false;
};

/// Reads the arguments of main().
[[nodiscard]] std::variant<StartRequest, Reply> parse(int argc, const char *const *argv);

} // namespace portolan::StartOptions
