// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace portolan {

/// What FolderReader and its child process say to each other. The child reads questions, a header and a path
/// each, and answers each in turn with pieces, a length and as many bytes each, up to one of no bytes.
namespace FolderAnswers {

enum class Kind : std::uint32_t { File, Marker, IsFolder };

struct Question
{
    Kind kind = Kind::File;
    std::uint32_t pathSize = 0; ///< of the path that follows, with the NUL at its end
};

/// The length of a piece that takes back those before it: a file that could not be read to its end.
inline constexpr std::uint32_t failure = ~0U;

inline constexpr std::int64_t maxFileSize = std::int64_t(4) * 1024 * 1024;

/// The files that tell of what kind a project is, in the order in which they decide. A name that begins with
/// a dot stands for all that end so. The answer to a question of that kind is the place of the first one that
/// there is, in one byte.
inline constexpr std::array markers{"Cargo.toml", "go.mod",         "Gemfile",          "composer.json",
                                    "manage.py",  "pyproject.toml", "requirements.txt", "Dockerfile",
                                    ".csproj",    ".sln",           "pom.xml",          "build.gradle"};

/// Memory that both share, for what a child that hangs cannot say any more.
struct Progress
{
    std::atomic<std::uint32_t> begun = 0;  ///< questions
    std::atomic<std::int64_t> begunNs = 0; ///< when the last of them was, on the steady clock
};

struct Server
{
    int connection = 0;
    Progress *progress = nullptr;
};

/// The child's life: answers until the connection ends. Uses only what a process copied from one with threads
/// may: no allocation, no lock.
void serve(Server &server);

} // namespace FolderAnswers

} // namespace portolan
