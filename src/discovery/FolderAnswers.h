// SPDX-License-Identifier: MIT
#pragma once

#include "Framework.h"

#include <array>
#include <atomic>
#include <cstdint>

/// What FolderReader and its child process say to each other. The child reads questions, a header and a path
/// each, and answers each in turn with pieces, a length and as many bytes each, up to one of no bytes.
namespace portolan::FolderAnswers {

enum class Kind : std::uint32_t { File, Marker, IsFolder };

struct Question
{
    Kind kind = Kind::File;
    std::uint32_t pathSize = 0; ///< of the path that follows, with the NUL at its end
};

inline constexpr std::int64_t maxFileSize = std::int64_t(4) * 1024 * 1024;

/// A file that tells of what kind a project is. A name that begins with a dot stands for all that end so.
struct Marker
{
    const char *file;
    Framework framework;
};

/// In the order in which they decide. The answer to a question of that kind is the place of the first one
/// that there is, in one byte.
inline constexpr std::array markers{
    Marker{"Cargo.toml", Framework::rust},
    Marker{"go.mod", Framework::go},
    Marker{"Gemfile", Framework::rails},
    Marker{"composer.json", Framework::php},
    Marker{"manage.py", Framework::django},
    Marker{"pyproject.toml", Framework::python},
    Marker{"requirements.txt", Framework::python},
    Marker{"Dockerfile", Framework::docker},
    Marker{".csproj", Framework::dotnet},
    Marker{".sln", Framework::dotnet},
    Marker{"pom.xml", Framework::java},
    Marker{"build.gradle", Framework::java},
};

/// Memory that both share, for what a child that hangs cannot say any more.
struct Progress
{
    std::atomic<std::uint32_t> begun = 0;  ///< questions
    std::atomic<std::int64_t> begunNs = 0; ///< when the last of them was, on the steady clock
};

/// The child's life: answers what comes in on `connection` until it ends. Uses only what a process copied
/// from one with threads may: no allocation, no lock.
void serve(int connection, Progress &progress);

} // namespace portolan::FolderAnswers
