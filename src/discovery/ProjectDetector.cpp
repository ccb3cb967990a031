// SPDX-License-Identifier: MIT
#include "ProjectDetector.h"
#include "ProjectDetector_p.h"

#include <QJsonDocument>
#include <QJsonValue>
#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct Dependency
{
    QLatin1StringView package;
    Framework framework;
};

// The first one that is present decides.
constexpr std::array knownDependencies{
    Dependency{"next"_L1, Framework::next},
    Dependency{"nuxt"_L1, Framework::nuxt},
    Dependency{"nuxt3"_L1, Framework::nuxt},
    Dependency{"@remix-run/react"_L1, Framework::remix},
    Dependency{"@remix-run/dev"_L1, Framework::remix},
    Dependency{"astro"_L1, Framework::astro},
    Dependency{"@angular/core"_L1, Framework::angular},
    Dependency{"svelte"_L1, Framework::svelte},
    Dependency{"@sveltejs/kit"_L1, Framework::svelte},
    Dependency{"vue"_L1, Framework::vue},
    Dependency{"vite"_L1, Framework::vite},
    Dependency{"react-scripts"_L1, Framework::react},
    Dependency{"react"_L1, Framework::react},
};

/// `text` with the character at index `place`, if any, in upper case.
QString withUpperCase(QString text, qsizetype place)
{
    const bool isPair = place < text.size() && text[place].isHighSurrogate();
    const qsizetype length = std::min<qsizetype>(isPair ? 2 : 1, text.size() - place);
    return text.replace(place, length, text.sliced(place, length).toUpper());
}

/// Truncates names that are far longer than any package manager allows.
QString bounded(QString name)
{
    constexpr qsizetype most = 1000;
    if (name.size() > most)
        name.truncate(name[most].isLowSurrogate() ? most - 1 : most);
    return name;
}

/// The result without reading the folder.
ProjectDetector::Project detectFromCommand(const QString &command, const std::optional<QString> &folder)
{
    using namespace ProjectDetector;
    if (folder && !folder->isEmpty())
        return {lastComponent(*folder), frameworkForCommand(command)};
    return {command.isEmpty() ? u"Service"_s : capitalized(command), frameworkForCommand(command)};
}

} // namespace

std::vector<ProjectDetector::Project> ProjectDetector::detect(const std::vector<Subject> &subjects,
                                                              FolderReader &files,
                                                              const FolderReader::Limits &limits)
{
    std::vector<Project> projects;
    std::vector<size_t> open; // for which a file may say more
    for (const Subject &subject : subjects) {
        if (subject.folder && !subject.folder->isEmpty())
            open.push_back(projects.size());
        projects.push_back(detectFromCommand(subject.command, subject.folder));
    }
    const auto ask = [&](FolderReader::Kind kind, const char *file) {
        std::vector<FolderReader::Question> questions;
        questions.reserve(open.size());
        for (const size_t i : open)
            questions.push_back({kind, *subjects[i].folder, file});
        return files.ask(questions, limits);
    };

    std::vector<size_t> withoutPackage;
    const auto packages = ask(FolderReader::Kind::File, "package.json");
    for (size_t i = 0; i < open.size(); ++i) {
        Project &project = projects[open[i]];
        if (!packages[i])
            continue;
        if (auto found = detectFromPackage(*packages[i], project.displayName, subjects[open[i]].command))
            project = *std::move(found);
        else
            withoutPackage.push_back(open[i]);
    }
    open = std::move(withoutPackage);
    const auto markers = ask(FolderReader::Kind::Marker, "");
    for (size_t i = 0; i < open.size(); ++i) {
        if (markers[i] && !markers[i]->isEmpty())
            projects[open[i]].framework = FolderAnswers::markers.at(size_t(markers[i]->front())).framework;
    }
    return projects;
}

Framework ProjectDetector::frameworkForCommand(const QString &command)
{
    const QString lower = command.toLower();
    const auto startsWith = [&](std::initializer_list<QLatin1StringView> prefixes) {
        return std::ranges::any_of(prefixes,
                                   [&](QLatin1StringView prefix) { return lower.startsWith(prefix); });
    };
    if (startsWith({"next"_L1}) || lower == "node"_L1)
        return Framework::node;
    if (startsWith({"deno"_L1}))
        return Framework::deno;
    if (startsWith({"bun"_L1}))
        return Framework::bun;
    if (startsWith({"python"_L1, "gunicorn"_L1, "uvicorn"_L1, "flask"_L1}))
        return Framework::python;
    if (startsWith({"ruby"_L1, "rails"_L1, "puma"_L1}))
        return Framework::rails;
    if (startsWith({"php"_L1}))
        return Framework::php;
    if (startsWith({"cargo"_L1, "rustc"_L1}))
        return Framework::rust;
    if (lower == "go"_L1 || startsWith({"air"_L1}))
        return Framework::go;
    if (startsWith({"java"_L1}))
        return Framework::java;
    if (startsWith({"dotnet"_L1}))
        return Framework::dotnet;
    return Framework::generic;
}

Framework ProjectDetector::frameworkFromPackage(const QJsonObject &package, const QString &command)
{
    // Anything but an object converts to an empty one.
    const QJsonObject dependencies = package.value("dependencies"_L1).toObject();
    const QJsonObject devDependencies = package.value("devDependencies"_L1).toObject();
    const auto known = std::ranges::find_if(knownDependencies, [&](const Dependency &dependency) {
        return dependencies.contains(dependency.package) || devDependencies.contains(dependency.package);
    });
    return known == knownDependencies.end() ? frameworkForCommand(command) : known->framework;
}

std::optional<QString> ProjectDetector::cleanName(const QString &packageName)
{
    QString name = packageName.sliced(packageName.lastIndexOf(u'/') + 1);
    if (name.isEmpty())
        return std::nullopt;
    QStringList words = name.replace(u'_', u'-').replace(u'.', u'-').split(u'-', Qt::SkipEmptyParts);
    for (QString &word : words)
        word = withUpperCase(word, 0);
    return words.join(u' ');
}

QString ProjectDetector::capitalized(const QString &text)
{
    const QString lower = text.toLower();
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, lower);
    QString result;
    for (qsizetype start = 0, end = 0; (end = words.toNextBoundary()) > 0; start = end) {
        const QString word = lower.sliced(start, end - start);
        const std::u32string characters = word.toStdU32String();
        const auto letter = std::ranges::find_if(characters, [](char32_t c) { return QChar::isLetter(c); });
        const QString front = QString::fromStdU32String({characters.begin(), letter});
        result += withUpperCase(word, front.size());
    }
    return result;
}

QString ProjectDetector::lastComponent(const QString &path)
{
    qsizetype end = path.size();
    while (end > 1 && path[end - 1] == u'/')
        --end;
    const QStringView trimmed = QStringView(path).first(end);
    return (end == 1 ? trimmed : trimmed.sliced(trimmed.lastIndexOf(u'/') + 1)).toString();
}

std::optional<ProjectDetector::Project>
ProjectDetector::detectFromPackage(const QByteArray &json, const QString &folderName, const QString &command)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject package = document.object();
    const QJsonValue name = package.value("name"_L1);
    const std::optional<QString> displayName = name.isString() ? cleanName(name.toString()) : std::nullopt;
    return Project{bounded(displayName.value_or(folderName)), frameworkFromPackage(package, command)};
}

} // namespace portolan
