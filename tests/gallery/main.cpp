// SPDX-License-Identifier: MIT
// Shows the views with sample services, in all of their states.
//   portolan_gallery [SCENE]      shows the scenes; Page Down and Page Up switch between them
//   portolan_gallery --shots DIR  writes a picture of each at scale 1 (NAME.png) and 2 (NAME@2x.png)

#include "SceneWindow.h"

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QProcess>
#include <QSet>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

bool isBlank(const QImage &picture)
{
    QSet<QRgb> colors;
    for (int x = 0; x < picture.width(); x += 2) {
        for (int y = 0; y < picture.height(); y += 2)
            colors.insert(picture.pixel(x, y));
    }
    return colors.size() < 20;
}

bool saveScenes(const QDir &folder)
{
    const bool isDouble = qEnvironmentVariable("QT_SCALE_FACTOR") == "2"_L1;
    for (const GalleryScene &scene : galleryScenes()) {
        const QString file = folder.filePath(scene.name + (isDouble ? u"@2x.png"_s : u".png"_s));
        const QImage picture = SceneWindow(scene).picture();
        if (isBlank(picture)) {
            std::fprintf(stderr, "blank picture: %s\n", qPrintable(scene.name));
            return false;
        }
        if (!picture.save(file)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
            return false;
        }
    }
    return true;
}

// The scale factor is fixed per process, so each scale needs one of its own.
bool saveAtEveryScale(const QString &folder)
{
    std::array<QProcess, 2> processes;
    for (size_t i = 0; i < processes.size(); ++i) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_SCALE_FACTOR"_s, QString::number(i + 1));
        processes[i].setProcessEnvironment(environment);
        processes[i].setProcessChannelMode(QProcess::ForwardedChannels);
        processes[i].start(QCoreApplication::applicationFilePath(),
                           {u"--shots"_s, folder, u"--this-scale"_s});
    }
    return std::ranges::all_of(processes, [](QProcess &process) {
        return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == EXIT_SUCCESS;
    });
}

/// Shows one scene at a time; Page Down and Page Up switch to the next and the previous one.
class SceneBrowser : public QObject
{
public:
    explicit SceneBrowser(const QString &first)
    {
        while (m_index + 1 < m_scenes.size() && !first.isEmpty() && m_scenes.at(m_index).name != first)
            ++m_index;
        show();
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key != Qt::Key_PageDown && key != Qt::Key_PageUp)
            return false;
        m_index = (m_index + (key == Qt::Key_PageDown ? 1 : -1) + m_scenes.size()) % m_scenes.size();
        QMetaObject::invokeMethod(
            this, [this] { show(); }, Qt::QueuedConnection);
        return true;
    }

private:
    void show()
    {
        auto next = std::make_unique<SceneWindow>(m_scenes.at(m_index));
        next->window().installEventFilter(this);
        m_window = std::move(next);
    }

    const QList<GalleryScene> m_scenes = galleryScenes();
    qsizetype m_index = 0;
    std::unique_ptr<SceneWindow> m_window;
};

} // namespace

} // namespace portolan

int main(int argc, char **argv)
{
    using namespace portolan;
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication app(argc, argv);
    QCommandLineParser options;
    options.addOption({u"shots"_s, u"Write a picture of each scene into <folder>."_s, u"folder"_s});
    options.addOption({u"this-scale"_s, u"With --shots: only at the scale of this process."_s});
    options.addPositionalArgument(u"scene"_s, u"The scene to begin with."_s);
    options.addHelpOption();
    options.process(app);

    if (options.isSet(u"shots"_s)) {
        const QString folder = options.value(u"shots"_s);
        const bool isDone =
            QDir().mkpath(folder) &&
            (options.isSet(u"this-scale"_s) ? saveScenes(QDir(folder)) : saveAtEveryScale(folder));
        return isDone ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    const SceneBrowser browser(options.positionalArguments().value(0));
    return QGuiApplication::exec();
}
