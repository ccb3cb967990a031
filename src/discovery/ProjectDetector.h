// SPDX-License-Identifier: MIT
#pragma once

#include "FolderReader.h"
#include "Framework.h"

#include <QString>

#include <optional>
#include <vector>

/// Determines the display name and the framework of a listening process.
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
/// within `limits`. Never fails: what cannot be read in time is skipped; the last resort is the folder's name
/// and `Framework::generic`.
[[nodiscard]] std::vector<Project> detect(const std::vector<Subject> &subjects, FolderReader &files,
                                          const FolderReader::Limits &limits);

} // namespace portolan::ProjectDetector
