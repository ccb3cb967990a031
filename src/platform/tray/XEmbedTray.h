// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPointer>
#include <QWindow>

#include <cstdint>

namespace portolan {

/// The XEmbed tray of the X11 screen, into which windows are embedded. It is never present if the display is
/// not X11. Main thread.
class XEmbedTray final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    XEmbedTray();

    [[nodiscard]] bool isPresent() const { return m_owner != 0; }
    /// Whether the tray wants windows with an alpha channel.
    [[nodiscard]] bool supportsAlpha() const;
    /// Embeds `window`, whose size is then up to the tray. The tray must be present; one window at a time.
    void embed(QWindow &window);

Q_SIGNALS:
    /// A tray has appeared, gone, or been replaced by another one.
    void changed();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void update();

    std::uint32_t m_manager = 0;   // the atom MANAGER, with which a tray announces itself
    std::uint32_t m_selection = 0; // the atom of the selection that the tray owns
    std::uint32_t m_owner = 0;     // the tray's window; 0 if there is none
    QPointer<QWindow> m_embedded;
};

} // namespace portolan
