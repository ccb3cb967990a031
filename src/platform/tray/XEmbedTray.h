#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPointer>
#include <QWindow>

#include <cstdint>

namespace portolan {

/// Watches for a status area of the older kind, which X11 windows embed themselves into. Finds none on a
/// display that is not X11.
class XEmbedTray final : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    XEmbedTray();
    ~XEmbedTray() override;

    [[nodiscard]] bool isPresent() const { return m_owner != 0; }
    /// Whether it wants windows with an alpha channel.
    [[nodiscard]] bool takesAlpha() const;
    /// Shows `window` in the tray, which then decides its size. Only while it is present; one window.
    void embed(QWindow &window);

Q_SIGNALS:
    void changed();

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void look();

    std::uint32_t m_manager = 0;   // the atom a tray announces itself with
    std::uint32_t m_selection = 0; // the atom whose owner is the tray
    std::uint32_t m_owner = 0;     // the tray's window
    QPointer<QWindow> m_embedded;
};

} // namespace portolan
