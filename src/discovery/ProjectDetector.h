#pragma once

#include "AbandonableWorker.h"
#include "Framework.h"

#include <QString>

#include <chrono>
#include <optional>
#include <vector>

namespace portolan {

/// What to call a listening process, and what kind of project it belongs to.
namespace ProjectDetector {

struct Project
{
    QString displayName;
    Framework framework;

    friend bool operator==(const Project &, const Project &) = default;
};

/// How long the files of one folder may take.
constexpr std::chrono::milliseconds deadline{2000};

/// Decides by the package.json in `folder`, else by its marker files, else by `command`, the process's
/// command name. Reads only files directly in `folder` (an absolute path). Never fails: what cannot be read,
/// or does not answer in time, is passed over, down to the folder's name and `Framework::generic`.
[[nodiscard]] Project detect(const QString &command, const std::optional<QString> &folder);

/// A listening process: its command name and its working folder, if known.
struct Subject
{
    QString command;
    std::optional<QString> folder;
};

/// As above for each of `subjects`, in their order, with all access to files on `files` within `limits`.
[[nodiscard]] std::vector<Project> detect(const std::vector<Subject> &subjects, AbandonableWorker &files,
                                          const AbandonableWorker::Limits &limits);

} // namespace ProjectDetector

} // namespace portolan
