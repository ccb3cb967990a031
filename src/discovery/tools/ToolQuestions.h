#pragma once

#include <QString>
#include <QStringList>

namespace portolan {

/// Discovery's three questions to the system's tools: where the tools may be, and with which arguments they
/// are asked. Only in exactly these words are they answered in this process (BuiltinTools.h).
namespace ToolQuestions {

/// The places of a tool, the likelier first.
[[nodiscard]] const QStringList &lsofPaths();
[[nodiscard]] const QStringList &psPaths();

/// lsof: the listening TCP sockets, for programs to read.
[[nodiscard]] const QStringList &listeners();
/// lsof: the working directory of a process.
[[nodiscard]] QStringList workingDirectory(qint32 pid);
/// ps: elapsed time, share of a processor and resident memory of a process.
[[nodiscard]] QStringList stats(qint32 pid);

} // namespace ToolQuestions

} // namespace portolan
