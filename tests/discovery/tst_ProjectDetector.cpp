// SPDX-License-Identifier: MIT
#include "FakeTools.h"
#include "FolderReader.h"
#include "HungMount.h"
#include "Printers.h"
#include "ProjectDetector_p.h"

#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ProjectDetector::Project;

static Project detect(const QString &command, const std::optional<QString> &folder)
{
    FolderReader files;
    return ProjectDetector::detect({{command, folder}}, files, {}).front();
}

static void PrintTo(Framework framework, std::ostream *out)
{
    *out << framework.rawValue().toStdString();
}

namespace ProjectDetector {
static void PrintTo(const Project &result, std::ostream *out)
{
    *out << result.displayName.toStdString() << " (" << result.framework.rawValue().toStdString() << ')';
}
} // namespace ProjectDetector

static std::string identifier(const QString &text)
{
    std::string name;
    for (const QChar character : text)
        name += character.isLetterOrNumber() && character.unicode() < 128 ? char(character.unicode()) : '_';
    return name.empty() ? "empty" : name;
}

struct CommandCase
{
    QString command;
    Framework framework;
};

class CommandFramework : public testing::TestWithParam<CommandCase>
{};

TEST_P(CommandFramework, IsDecidedByTheName)
{
    EXPECT_EQ(ProjectDetector::frameworkForCommand(GetParam().command), GetParam().framework);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, CommandFramework,
    testing::Values(
        CommandCase{u"next"_s, Framework::node}, CommandCase{u"next-server"_s, Framework::node},
        CommandCase{u"next-server (v15"_s, Framework::node}, CommandCase{u"node"_s, Framework::node},
        CommandCase{u"NODE"_s, Framework::node}, CommandCase{u"nodemon"_s, Framework::generic},
        CommandCase{u"node-dev"_s, Framework::generic}, CommandCase{u"deno"_s, Framework::deno},
        CommandCase{u"denort"_s, Framework::deno}, CommandCase{u"bun"_s, Framework::bun},
        CommandCase{u"bundle"_s, Framework::bun}, CommandCase{u"python"_s, Framework::python},
        CommandCase{u"Python3.12"_s, Framework::python}, CommandCase{u"gunicorn"_s, Framework::python},
        CommandCase{u"gunicorn: worker"_s, Framework::python}, CommandCase{u"uvicorn"_s, Framework::python},
        CommandCase{u"flask"_s, Framework::python}, CommandCase{u"ruby3.1"_s, Framework::rails},
        CommandCase{u"rails"_s, Framework::rails}, CommandCase{u"puma 6.4.2"_s, Framework::rails},
        CommandCase{u"php"_s, Framework::php}, CommandCase{u"php-fpm8.2"_s, Framework::php},
        CommandCase{u"cargo"_s, Framework::rust}, CommandCase{u"cargo-watch"_s, Framework::rust},
        CommandCase{u"rustc"_s, Framework::rust}, CommandCase{u"rust-analyzer"_s, Framework::generic},
        CommandCase{u"go"_s, Framework::go}, CommandCase{u"GO"_s, Framework::go},
        CommandCase{u"gopls"_s, Framework::generic}, CommandCase{u"air"_s, Framework::go},
        CommandCase{u"airportd"_s, Framework::go}, CommandCase{u"java"_s, Framework::java},
        CommandCase{u"javaw"_s, Framework::java}, CommandCase{u"dotnet"_s, Framework::dotnet},
        CommandCase{u"vite"_s, Framework::generic}, CommandCase{u"xnode"_s, Framework::generic},
        CommandCase{u" node"_s, Framework::generic}, CommandCase{u""_s, Framework::generic}),
    [](const auto &row) { return std::to_string(row.index) + '_' + identifier(row.param.command); });

struct PackageCase
{
    const char *name;
    QByteArray json;
    QString command;
    Framework framework;
};

class PackageFramework : public testing::TestWithParam<PackageCase>
{};

TEST_P(PackageFramework, IsDecidedByTheDependencies)
{
    const QJsonObject package = QJsonDocument::fromJson(GetParam().json).object();
    EXPECT_EQ(ProjectDetector::frameworkFromPackage(package, GetParam().command), GetParam().framework);
}

static PackageCase dependsOn(const char *name, const QByteArray &packages, Framework framework)
{
    QByteArray entries;
    for (const QByteArray &package : packages.split(' '))
        entries += (entries.isEmpty() ? "\"" : ",\"") + package + "\":\"1\"";
    return {name, "{\"dependencies\":{" + entries + "}}", u"node"_s, framework};
}

INSTANTIATE_TEST_SUITE_P(Single, PackageFramework,
                         testing::Values(dependsOn("next", "next", Framework::next),
                                         dependsOn("nuxt", "nuxt", Framework::nuxt),
                                         dependsOn("nuxt3", "nuxt3", Framework::nuxt),
                                         dependsOn("remixReact", "@remix-run/react", Framework::remix),
                                         dependsOn("remixDev", "@remix-run/dev", Framework::remix),
                                         dependsOn("astro", "astro", Framework::astro),
                                         dependsOn("angular", "@angular/core", Framework::angular),
                                         dependsOn("svelte", "svelte", Framework::svelte),
                                         dependsOn("svelteKit", "@sveltejs/kit", Framework::svelte),
                                         dependsOn("vue", "vue", Framework::vue),
                                         dependsOn("vite", "vite", Framework::vite),
                                         dependsOn("reactScripts", "react-scripts", Framework::react),
                                         dependsOn("react", "react", Framework::react),
                                         dependsOn("noneKnown", "express", Framework::node),
                                         dependsOn("otherCase", "Next", Framework::node),
                                         dependsOn("longerName", "next-auth", Framework::node)),
                         [](const auto &row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Several, PackageFramework,
    testing::Values(dependsOn("nextWithReact", "react react-dom next", Framework::next),
                    dependsOn("nextBeforeNuxt", "nuxt next", Framework::next),
                    dependsOn("nuxtWithVue", "vue nuxt", Framework::nuxt),
                    dependsOn("nuxtBeforeRemix", "@remix-run/dev nuxt3", Framework::nuxt),
                    dependsOn("remixBeforeAstro", "astro @remix-run/react vite", Framework::remix),
                    dependsOn("astroBeforeAngular", "@angular/core astro", Framework::astro),
                    dependsOn("angularBeforeSvelte", "svelte @angular/core", Framework::angular),
                    dependsOn("svelteBeforeVue", "vue svelte", Framework::svelte),
                    dependsOn("svelteKitWithVite", "vite @sveltejs/kit", Framework::svelte),
                    dependsOn("viteWithVue", "vite vue", Framework::vue),
                    dependsOn("viteWithReact", "react vite", Framework::vite)),
    [](const auto &row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Shapes, PackageFramework,
    testing::Values(
        PackageCase{"devDependency", R"({"devDependencies":{"vite":"5"}})", u"node"_s, Framework::vite},
        PackageCase{"bothAreOneSet", R"({"dependencies":{"react":"1"},"devDependencies":{"vite":"5"}})",
                    u"node"_s, Framework::vite},
        PackageCase{"versionsDoNotCount", R"({"dependencies":{"next":null,"vue":[1]}})", u"node"_s,
                    Framework::next},
        PackageCase{"otherKeysDoNotCount", R"({"peerDependencies":{"next":"1"},"next":{}})", u"bun"_s,
                    Framework::bun},
        PackageCase{"array", R"({"dependencies":["next"],"devDependencies":{"vue":"1"}})", u"node"_s,
                    Framework::vue},
        PackageCase{"text", R"({"dependencies":"next"})", u"python3"_s, Framework::python},
        PackageCase{"number", R"({"dependencies":1,"devDependencies":null})", u"nodemon"_s,
                    Framework::generic},
        PackageCase{"prototypeNames", R"({"dependencies":{"__proto__":{"next":"1"}}})", u"node"_s,
                    Framework::node},
        PackageCase{"empty", "{}", u"deno"_s, Framework::deno}),
    [](const auto &row) { return std::string(row.param.name); });

struct NameCase
{
    const char *name;
    QString text;
    std::optional<QString> result;
};

class CleanName : public testing::TestWithParam<NameCase>
{};

TEST_P(CleanName, IsTheWordsOfThePackageName)
{
    EXPECT_EQ(ProjectDetector::cleanName(GetParam().text), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Names, CleanName,
    testing::Values(NameCase{"scopeAndSeparators", u"@acme/my-cool_app.web"_s, u"My Cool App Web"_s},
                    NameCase{"twoWords", u"vite-project"_s, u"Vite Project"_s},
                    NameCase{"oneWord", u"api"_s, u"Api"_s}, NameCase{"restStays", u"myApp"_s, u"MyApp"_s},
                    NameCase{"allCapitals", u"API-SERVER"_s, u"API SERVER"_s},
                    NameCase{"repeatedSeparators", u"--a__b..c--"_s, u"A B C"_s},
                    NameCase{"digits", u"2048-game"_s, u"2048 Game"_s},
                    NameCase{"lastSlashCounts", u"a/b/c-d"_s, u"C D"_s},
                    NameCase{"spacesStay", u"my app  x"_s, u"My app  x"_s},
                    NameCase{"umlaut", u"über-app"_s, u"Über App"_s}, NameCase{"sharpS", u"ßa"_s, u"SSa"_s},
                    NameCase{"beyondTheBasicPlane", u"𐐨𐐨-x"_s, u"𐐀𐐨 X"_s},
                    NameCase{"emoji", u"🦊-x"_s, u"🦊 X"_s},
                    NameCase{"scopeOnly", u"@acme/"_s, std::nullopt}, NameCase{"empty", u""_s, std::nullopt},
                    NameCase{"separatorsOnly", u"---"_s, u""_s},
                    NameCase{"scopedSeparatorsOnly", u"@acme/_._"_s, u""_s}),
    [](const auto &row) { return std::string(row.param.name); });

class Capitalized : public testing::TestWithParam<NameCase>
{};

TEST_P(Capitalized, HasACapitalInFrontOfEachWord)
{
    EXPECT_EQ(ProjectDetector::capitalized(GetParam().text), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Texts, Capitalized,
                         testing::Values(NameCase{"lower", u"node"_s, u"Node"_s},
                                         NameCase{"camel", u"ControlCenter"_s, u"Controlcenter"_s},
                                         NameCase{"upper", u"JAVA"_s, u"Java"_s},
                                         NameCase{"spaces", u"my  server x"_s, u"My  Server X"_s},
                                         NameCase{"tabAndNewline", u"a\tb\nc"_s, u"A\tB\nC"_s},
                                         NameCase{"hyphen", u"node-dev"_s, u"Node-Dev"_s},
                                         NameCase{"bracket", u"next-server (v15"_s, u"Next-Server (V15"_s},
                                         NameCase{"version", u"python3.12"_s, u"Python3.12"_s},
                                         NameCase{"lowLineWithinAWord", u"my_server"_s, u"My_server"_s},
                                         NameCase{"apostrophe", u"ada's app"_s, u"Ada's App"_s},
                                         NameCase{"digitFirst", u"3proxy"_s, u"3Proxy"_s},
                                         NameCase{"accent", u"éCLAIR"_s, u"Éclair"_s},
                                         NameCase{"sharpS", u"ß ß"_s, u"SS SS"_s},
                                         NameCase{"beyondTheBasicPlane", u"𐐨𐐀 x"_s, u"𐐀𐐨 X"_s},
                                         NameCase{"noLetters", u"123 ..."_s, u"123 ..."_s},
                                         NameCase{"empty", u""_s, u""_s}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(LastComponent, IsTheFoldersName)
{
    using ProjectDetector::lastComponent;
    EXPECT_EQ(lastComponent(u"/home/al/code/shop"_s), u"shop"_s);
    EXPECT_EQ(lastComponent(u"/home/al/code/shop/"_s), u"shop"_s);
    EXPECT_EQ(lastComponent(u"/home/al/code/shop//"_s), u"shop"_s);
    EXPECT_EQ(lastComponent(u"shop"_s), u"shop"_s);
    EXPECT_EQ(lastComponent(u"/"_s), u"/"_s);
    EXPECT_EQ(lastComponent(u"//"_s), u"/"_s);
    EXPECT_EQ(lastComponent(u"/srv/gone (deleted)"_s), u"gone (deleted)"_s);
}

TEST(DetectWithoutFolder, NamesTheCommand)
{
    for (const std::optional<QString> &none : {std::optional<QString>(), std::optional(QString())}) {
        EXPECT_EQ(detect(u"node"_s, none), (Project{u"Node"_s, Framework::node}));
        EXPECT_EQ(detect(u"ControlCenter"_s, none), (Project{u"Controlcenter"_s, Framework::generic}));
        EXPECT_EQ(detect(u"nodemon"_s, none), (Project{u"Nodemon"_s, Framework::generic}));
        EXPECT_EQ(detect(u"next-server"_s, none).framework, Framework::node);
        EXPECT_EQ(detect(u""_s, none), (Project{u"Service"_s, Framework::generic}));
    }
}

namespace {

/// A project folder named "demo".
class DetectInFolder : public testing::Test
{
protected:
    DetectInFolder() { QDir(m_directory.path()).mkpath(u"demo"_s); }

    QString folder() const { return m_directory.filePath(u"demo"_s); }
    void write(const QString &name, const QByteArray &bytes = "x") const
    {
        FakeTools::write(folder() + u'/' + name, bytes);
    }

    QTemporaryDir m_directory;
};

} // namespace

TEST_F(DetectInFolder, ThePackageNamesProjectAndFramework)
{
    write(u"package.json"_s, R"({"name":"@acme/web-app","dependencies":{"next":"15","react":"19"}})");
    EXPECT_EQ(detect(u"node"_s, folder()), (Project{u"Web App"_s, Framework::next}));
}

TEST_F(DetectInFolder, APackageWithoutAUsableNameGetsTheFolders)
{
    for (const char *json :
         {R"({"devDependencies":{"vite":"5"}})", R"({"name":"","devDependencies":{"vite":"5"}})",
          R"({"name":"@acme/","devDependencies":{"vite":"5"}})",
          R"({"name":42,"devDependencies":{"vite":"5"}})", R"({"name":null,"devDependencies":{"vite":"5"}})",
          R"({"name":["a"],"devDependencies":{"vite":"5"}})"}) {
        write(u"package.json"_s, json);
        EXPECT_EQ(detect(u"node"_s, folder()), (Project{u"demo"_s, Framework::vite})) << json;
    }
}

TEST_F(DetectInFolder, APackageWithoutKnownDependenciesTakesTheCommandsFramework)
{
    write(u"package.json"_s, R"({"name":"api"})");
    EXPECT_EQ(detect(u"bun"_s, folder()), (Project{u"Api"_s, Framework::bun}));
    write(u"package.json"_s, "{}");
    EXPECT_EQ(detect(u"bun"_s, folder()), (Project{u"demo"_s, Framework::bun}));
}

TEST_F(DetectInFolder, APackageLeavesNoSayToMarkers)
{
    write(u"package.json"_s, R"({"name":"api"})");
    write(u"Cargo.toml"_s);
    EXPECT_EQ(detect(u"nodemon"_s, folder()), (Project{u"Api"_s, Framework::generic}));
}

TEST_F(DetectInFolder, OfAnEndlessNameTheFrontIsTaken)
{
    write(u"package.json"_s, R"({"name":")" + QByteArray(300'000, 'n') + "\"}");
    EXPECT_EQ(detect(u"node"_s, folder()).displayName, u'N' + QString(999, u'n'));
    write(u"package.json"_s, R"({"name":")" + QByteArray(999, 'n') + R"(\ud83d\ude00"})");
    EXPECT_EQ(detect(u"node"_s, folder()).displayName, u'N' + QString(998, u'n')) << "no half character";
}

TEST_F(DetectInFolder, ANameOfSeparatorsIsShownEmpty)
{
    write(u"package.json"_s, R"({"name":"---"})");
    EXPECT_EQ(detect(u"node"_s, folder()), (Project{u""_s, Framework::node}));
}

struct Json
{
    const char *name;
    QByteArray bytes;
};

class UnusablePackage : public DetectInFolder, public testing::WithParamInterface<Json>
{};

TEST_P(UnusablePackage, IsAsIfAbsent)
{
    write(u"package.json"_s, GetParam().bytes);
    EXPECT_EQ(detect(u"node"_s, folder()), (Project{u"demo"_s, Framework::node}));
    write(u"Cargo.toml"_s);
    EXPECT_EQ(detect(u"node"_s, folder()), (Project{u"demo"_s, Framework::rust}));
}

INSTANTIATE_TEST_SUITE_P(
    Contents, UnusablePackage,
    testing::Values(
        Json{"array", "[]"}, Json{"text", "\"next\""}, Json{"number", "1"}, Json{"null", "null"},
        Json{"empty", ""}, Json{"blank", " \n"}, Json{"cut", R"({"name":"a","dependen)"},
        Json{"trailingComma", R"({"name":"a",})"}, Json{"comment", "// x\n{\"name\":\"a\"}"},
        Json{"garbageBehind", "{\"name\":\"a\"} x"}, Json{"invalidUtf8", "{\"name\":\"a\xff\"}"},
        Json{"utf16", QByteArray("\xff\xfe{\0}\0", 6)},
        Json{"deepNesting", "{\"a\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + "}"},
        Json{"tooLarge", "{\"name\":\"a\",\"x\":\"" + QByteArray(FolderAnswers::maxFileSize, 'x') + "\"}"}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(DetectInFolder, OddButValidPackagesAreRead)
{
    write(u"package.json"_s, "\xef\xbb\xbf{\"name\":\"with-mark\"}");
    EXPECT_EQ(detect(u"node"_s, folder()).displayName, u"With Mark"_s);
    write(u"package.json"_s, R"({"name":"first","name":"second"})");
    EXPECT_EQ(detect(u"node"_s, folder()).displayName, u"Second"_s);
    write(u"package.json"_s, R"({"name":"<b>caf\u00e9</b> \u202e"})");
    EXPECT_EQ(detect(u"node"_s, folder()).displayName, u"B> \u202e"_s);
}

TEST_F(DetectInFolder, AFifoAsPackageIsPassedOver)
{
    ASSERT_EQ(mkfifo(QFile::encodeName(folder() + u"/package.json"_s).constData(), 0600), 0);
    write(u"go.mod"_s);
    EXPECT_EQ(detect(u"node"_s, folder()), (Project{u"demo"_s, Framework::go}));
}

struct MarkerCase
{
    const char *file;
    Framework framework;
};

// In the order in which they decide.
static const std::vector<MarkerCase> markers{
    {"Cargo.toml", Framework::rust},
    {"go.mod", Framework::go},
    {"Gemfile", Framework::rails},
    {"composer.json", Framework::php},
    {"manage.py", Framework::django},
    {"pyproject.toml", Framework::python},
    {"requirements.txt", Framework::python},
    {"Dockerfile", Framework::docker},
    {"App.csproj", Framework::dotnet},
    {"App.sln", Framework::dotnet},
    {"pom.xml", Framework::java},
    {"build.gradle", Framework::java},
};

class Marker : public DetectInFolder, public testing::WithParamInterface<size_t>
{};

TEST_P(Marker, DecidesAlone)
{
    const MarkerCase &marker = markers[GetParam()];
    write(QString::fromLatin1(marker.file));
    EXPECT_EQ(detect(u"node"_s, folder()), (Project{u"demo"_s, marker.framework}));
}

TEST_P(Marker, DecidesBeforeAllBehindIt)
{
    for (size_t i = GetParam(); i < markers.size(); ++i)
        write(QString::fromLatin1(markers[i].file));
    EXPECT_EQ(detect(u"node"_s, folder()), (Project{u"demo"_s, markers[GetParam()].framework}));
}

INSTANTIATE_TEST_SUITE_P(Files, Marker, testing::Range(size_t(0), markers.size()), [](const auto &row) {
    return identifier(QString::fromLatin1(markers[row.param].file));
});

TEST_F(DetectInFolder, AMarkerNeedOnlyExist)
{
    ASSERT_TRUE(QDir(folder()).mkdir(u"Gemfile"_s));
    EXPECT_EQ(detect(u"node"_s, folder()), (Project{u"demo"_s, Framework::rails}));
}

TEST_F(DetectInFolder, MarkersInAnotherCaseOrPlaceDoNotCount)
{
    write(u"cargo.toml"_s);
    write(u"App.CSPROJ"_s);
    ASSERT_TRUE(QDir(folder()).mkdir(u"src"_s));
    write(u"src/go.mod"_s);
    EXPECT_EQ(detect(u"uvicorn"_s, folder()), (Project{u"demo"_s, Framework::python}));
}

TEST_F(DetectInFolder, WithNothingInItTakesTheCommandsFramework)
{
    EXPECT_EQ(detect(u"uvicorn"_s, folder()), (Project{u"demo"_s, Framework::python}));
    EXPECT_EQ(detect(u"flask"_s, folder()), (Project{u"demo"_s, Framework::python}));
    EXPECT_EQ(detect(u"nodemon"_s, folder()), (Project{u"demo"_s, Framework::generic}));
    EXPECT_EQ(detect(u""_s, folder()), (Project{u"demo"_s, Framework::generic}));
}

TEST(DetectInNoFolder, StillNamesIt)
{
    EXPECT_EQ(detect(u"nodemon"_s, u"/no/such/place"_s), (Project{u"place"_s, Framework::generic}));
    EXPECT_EQ(detect(u"node"_s, u"/srv/shop (deleted)"_s), (Project{u"shop (deleted)"_s, Framework::node}));
}

TEST_F(DetectInFolder, OfASuffixTheCaseAndTheEndCount)
{
    write(u"App.csprojx"_s);
    write(u"App.CSPROJ"_s);
    EXPECT_EQ(detect(u"uvicorn"_s, folder()), (Project{u"demo"_s, Framework::python}));
    write(u"App.csproj"_s);
    EXPECT_EQ(detect(u"uvicorn"_s, folder()), (Project{u"demo"_s, Framework::dotnet}));
}

TEST(DetectOnADeadMount, GivesTheFoldersNameInTime)
{
    const std::unique_ptr<HungMount> mount = HungMount::create();
    if (!mount)
        GTEST_SKIP() << "mounting is not permitted here";
    const QString shop = mount->path() + u"/shop"_s;
    collectChildren();
    FolderReader files;
    for (int scan = 0; scan < 5; ++scan)
        EXPECT_EQ(ProjectDetector::detect({{u"node"_s, shop}}, files, {300ms}).front(),
                  (Project{u"shop"_s, Framework::node}));
    EXPECT_EQ(children().size(), 1) << "it is tried once";
    EXPECT_EQ(mount->taken(), 1);
}

TEST(DetectOnADeadMount, ALinkIntoOneIsNoBetter)
{
    const QTemporaryDir project; // outlives the mount, as its removal accesses the link
    const std::unique_ptr<HungMount> mount = HungMount::create();
    if (!mount)
        GTEST_SKIP() << "mounting is not permitted here";
    ASSERT_TRUE(QFile::link(mount->path() + u"/package.json"_s, project.filePath(u"package.json"_s)));
    FolderReader files;
    const std::vector<Project> results = ProjectDetector::detect(
        {{u"node"_s, project.path()}, {u"node"_s, u"/no/such/place"_s}}, files, {300ms});
    EXPECT_EQ(results.at(0).framework, Framework::node);
    EXPECT_EQ(results.at(1), (Project{u"place"_s, Framework::node}));
}

} // namespace portolan
