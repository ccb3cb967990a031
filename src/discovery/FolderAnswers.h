// SPDX-License-Identifier: MIT
#pragma once

#include "Framework.h"

#include <array>
#include <atomic>
#include <cstdint>

/// The protocol between FolderReader and its child process. The child reads questions, each a header and a
/// path, and answers each in turn with pieces, each a length and as many bytes; an empty piece ends an
/// answer.
namespace portolan::FolderAnswers {

enum class Kind : std::uint32_t { File, Marker, IsFolder };

struct Question
{
    Kind kind = Kind::File;
    std::uint32_t pathSize = 0; ///< of the path that follows, including the terminating NUL
};

inline constexpr std::int64_t maxFileSize = std::int64_t(4) * 1024 * 1024;

/// A file that identifies a framework. A name that begins with a dot stands for every name with that suffix.
struct Marker
{
    const char *file;
    Framework framework;
};

/// The first one that exists decides. The answer to a question of kind Marker is its index, in one byte.
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

/// Shared memory, as a child that hangs can no longer send anything.
struct Progress
{
    std::atomic<std::uint32_t> begun = 0;  ///< number of questions
    std::atomic<std::int64_t> begunNs = 0; ///< when the last of them was begun, on the steady clock
    bool isCautious = false; ///< whether the child sends each answer before the next question, which may hang
};

/// The main function of the child: answers questions on `connection` until it is closed. Neither allocates
/// nor locks, which the forked child of a process with threads must not do.
void serve(int connection, Progress &progress);

} // namespace portolan::FolderAnswers
