// SPDX-License-Identifier: MIT
#pragma once

#include "FolderReader.h"
#include "Framework.h"

#include <QString>

#include <optional>
#include <vector>

/// What to call a listening process, and what kind of project it belongs to.
namespace portolan::ProjectDetector {

struct Project
{
    QString displayName;
    Framework framework;

    friend bool operator==(const Project &, const Project &) = default;
};

/// A listening process: its command name and its working folder, if known.
struct Subject
{
    QString command;
    std::optional<QString> folder;
};

/// Decides for each of `subjects`, in their order, by the package.json in the folder, else by its marker
/// files, else by the command. Reads only files directly in the folders (absolute paths), with `files` and
/// within `limits`. Never fails: what cannot be read, or does not answer in time, is passed over, down to the
/// folder's name and `Framework::generic`.
[[nodiscard]] std::vector<Project> detect(const std::vector<Subject> &subjects, FolderReader &files,
                                          const FolderReader::Limits &limits);

} // namespace portolan::ProjectDetector
