// SPDX-License-Identifier: MIT
#include "SceneWindow.h"

#include "Eventually.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickItem>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

constexpr int settleMs = 400; // longer than any transition
constexpr int windowWidth = 480;

void runEventLoop(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

SceneWindow::SceneWindow(const GalleryScene &scene)
    : m_scene(scene)
{
    for (const qint64 port : scene.pinnedPorts)
        m_bench.store()->togglePin(Service{.port = port});
    if (scene.scanState != GalleryScene::ScanState::FirstScan)
        m_bench.find(scene.services);
    if (scene.scanState != GalleryScene::ScanState::Scanned)
        m_bench.store()->refresh();
    m_bench.store()->setSearchText(scene.searchText);

    m_view.setTitle(scene.name);
    m_view.setColor(Theme::canvas);
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.setInitialProperties({{u"store"_s, QVariant::fromValue(m_bench.store())},
                                 {u"presentation"_s, int(scene.presentation)},
                                 {u"actions"_s, QVariant::fromValue<ServiceActions *>(&m_actions)},
                                 {u"loginItem"_s, QVariant::fromValue<LoginItem *>(&m_loginItem)}});
    m_view.setSource(QUrl(u"qrc:/qt-project.org/imports/Portolan/RootView.qml"_s));
    fit();
    m_view.show();
    m_view.requestActivate();
}

void SceneWindow::fit()
{
    const QQuickItem &root = *m_view.rootObject();
    m_view.resize(m_scene.presentation == GalleryScene::Presentation::Window
                      ? QSize(windowWidth, m_scene.height)
                      : QSizeF(root.implicitWidth(), root.implicitHeight()).toSize());
}

void SceneWindow::type(const QString &keys)
{
    for (const QChar key : keys) {
        const bool isSearch = key == u'k';
        const Qt::Key code = isSearch      ? Qt::Key_K
                             : key == u'd' ? Qt::Key_Down
                             : key == u'm' ? Qt::Key_Menu
                                           : Qt::Key_Tab;
        const Qt::KeyboardModifiers modifiers = isSearch ? Qt::ControlModifier : Qt::NoModifier;
        for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, code, modifiers);
            QCoreApplication::sendEvent(&m_view, &event);
        }
    }
}

void SceneWindow::point(const QPointF &position, GalleryScene::Press press)
{
    const QPointF global = m_view.mapToGlobal(position);
    const auto send = [&](QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons) {
        QMouseEvent event(type, position, position, global, button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_view, &event);
        settle();
    };
    send(QEvent::MouseMove, Qt::NoButton, Qt::NoButton);
    if (press == GalleryScene::Press::None)
        return;
    const Qt::MouseButton button = press == GalleryScene::Press::Left ? Qt::LeftButton : Qt::RightButton;
    send(QEvent::MouseButtonPress, button, button);
    send(QEvent::MouseButtonRelease, button, Qt::NoButton);
}

QImage SceneWindow::picture()
{
    runEventLoop(settleMs);
    fit();
    type(m_scene.keys);
    if (m_scene.pointer)
        point(*m_scene.pointer, m_scene.press);
    runEventLoop(m_scene.hoverMs);

    QImage picture = m_view.grabWindow();
    picture.setDevicePixelRatio(m_view.effectiveDevicePixelRatio());
    return picture;
}

} // namespace portolan
