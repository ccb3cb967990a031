#include "ProjectDetector.h"
#include "ProjectDetector_p.h"

#include "ProjectFolder.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonValue>
#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

struct Marker
{
    const char *name;
    Framework framework;
};

// In the order in which they decide; .NET's own files come between the two lists.
constexpr std::array markersBeforeDotnet{
    Marker{"Cargo.toml", Framework::rust},         Marker{"go.mod", Framework::go},
    Marker{"Gemfile", Framework::rails},           Marker{"composer.json", Framework::php},
    Marker{"manage.py", Framework::django},        Marker{"pyproject.toml", Framework::python},
    Marker{"requirements.txt", Framework::python}, Marker{"Dockerfile", Framework::docker},
};
constexpr std::array markersAfterDotnet{
    Marker{"pom.xml", Framework::java},
    Marker{"build.gradle", Framework::java},
};

struct Dependency
{
    QLatin1StringView package;
    Framework framework;
};

// In the order in which they decide.
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

std::optional<Framework> frameworkOf(std::span<const Marker> markers, const ProjectFolder &folder)
{
    const auto present =
        std::ranges::find_if(markers, [&](const Marker &marker) { return folder.contains(marker.name); });
    return present == markers.end() ? std::nullopt : std::optional(present->framework);
}

std::optional<Framework> frameworkFromMarkers(const ProjectFolder &folder)
{
    if (const auto framework = frameworkOf(markersBeforeDotnet, folder))
        return framework;
    if (ProjectDetector::hasFile(u"csproj"_s, folder) || ProjectDetector::hasFile(u"sln"_s, folder))
        return Framework::dotnet;
    return frameworkOf(markersAfterDotnet, folder);
}

qsizetype characterLength(const QString &text, qsizetype at)
{
    const bool pair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    return pair ? 2 : 1;
}

bool isLetter(const QString &text, qsizetype at)
{
    return characterLength(text, at) == 2 ? QChar::isLetter(QChar::surrogateToUcs4(text[at], text[at + 1]))
                                          : text[at].isLetter();
}

void upperCaseCharacter(QString &text, qsizetype at)
{
    const qsizetype length = characterLength(text, at);
    text.replace(at, length, text.sliced(at, length).toUpper());
}

ProjectDetector::Project detectFromFiles(const QString &command, const QString &path)
{
    using namespace ProjectDetector;
    const ProjectFolder folder(path);
    const QString folderName = lastComponent(path);
    if (const std::optional<QByteArray> json = folder.read("package.json")) {
        if (const std::optional<Project> result = detectFromPackage(*json, folderName, command))
            return *result;
    }
    const std::optional<Framework> framework = frameworkFromMarkers(folder);
    return {folderName, framework.value_or(frameworkForCommand(command))};
}

/// A name that is far longer than any package manager allows is shown, sorted and searched for its front
/// alone.
QString bounded(QString name)
{
    constexpr qsizetype most = 1000;
    if (name.size() > most)
        name.truncate(name[most].isLowSurrogate() ? most - 1 : most);
    return name;
}

/// What is known without a look into the folder.
ProjectDetector::Project detectFromCommand(const QString &command, const std::optional<QString> &folder)
{
    using namespace ProjectDetector;
    if (folder && !folder->isEmpty())
        return {lastComponent(*folder), frameworkForCommand(command)};
    return {command.isEmpty() ? u"Service"_s : capitalized(command), frameworkForCommand(command)};
}

} // namespace

ProjectDetector::Project ProjectDetector::detect(const QString &command, const std::optional<QString> &folder)
{
    AbandonableWorker files;
    return detect({{command, folder}}, files, {deadline}).front();
}

std::vector<ProjectDetector::Project> ProjectDetector::detect(const std::vector<Subject> &subjects,
                                                              AbandonableWorker &files,
                                                              const AbandonableWorker::Limits &limits)
{
    const auto hasFolder = [](const Subject &subject) {
        return subject.folder && !subject.folder->isEmpty();
    };
    std::vector<AbandonableWorker::Task<Project>> tasks;
    for (const Subject &subject : subjects) {
        if (hasFolder(subject))
            tasks.push_back({*subject.folder, [command = subject.command, path = *subject.folder] {
                                 return detectFromFiles(command, path);
                             }});
    }
    std::vector<std::optional<Project>> found = files.run(std::move(tasks), limits);
    std::vector<Project> results;
    results.reserve(subjects.size());
    for (auto next = found.begin(); const Subject &subject : subjects) {
        std::optional<Project> result = hasFolder(subject) ? std::move(*next++) : std::nullopt;
        results.push_back(result ? std::move(*result) : detectFromCommand(subject.command, subject.folder));
    }
    return results;
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
    // Anything but an object there converts to an empty one.
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
        upperCaseCharacter(word, 0);
    return words.join(u' ');
}

QString ProjectDetector::capitalized(const QString &text)
{
    QString result = text.toLower();
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, result);
    QList<qsizetype> starts;
    for (qsizetype start = 0; start >= 0; start = words.toNextBoundary())
        starts.append(start);
    // From the back, for a letter's upper case may be longer than the letter.
    for (qsizetype i = starts.size() - 2; i >= 0; --i) {
        qsizetype letter = starts[i];
        while (letter < starts[i + 1] && !isLetter(result, letter))
            letter += characterLength(result, letter);
        if (letter < starts[i + 1])
            upperCaseCharacter(result, letter);
    }
    return result;
}

QString ProjectDetector::lastComponent(const QString &path)
{
    qsizetype end = path.size();
    while (end > 1 && path[end - 1] == u'/')
        --end;
    if (end == 1)
        return path.first(1);
    const QStringView trimmed = QStringView(path).first(end);
    return trimmed.sliced(trimmed.lastIndexOf(u'/') + 1).toString();
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

bool ProjectDetector::hasFile(const QString &withExtension, const ProjectFolder &in)
{
    return in.containsNameWithSuffix(QFile::encodeName(u'.' + withExtension));
}

} // namespace portolan
