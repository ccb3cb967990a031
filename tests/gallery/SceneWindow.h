// SPDX-License-Identifier: MIT
#pragma once

#include "FakeLoginItem.h"
#include "RecordedActions.h"
#include "Scenes.h"
#include "StoreBench.h"

#include <QImage>
#include <QQuickView>

namespace portolan {

/// A window that shows one scene.
class SceneWindow
{
public:
    explicit SceneWindow(const GalleryScene &scene);

    [[nodiscard]] QQuickView &window() { return m_view; }
    /// The content of the window after all transitions have finished.
    [[nodiscard]] QImage picture();

private:
    void fit();
    void type(const QString &keys);
    void point(const QPointF &position, GalleryScene::Press press);

    GalleryScene m_scene;
    StoreBench m_bench;
    RecordedActions m_actions;
    FakeLoginItem m_loginItem;
    QQuickView m_view;
};

} // namespace portolan
