#pragma once

#include <QColor>
#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// The colours of the interface: near-black backgrounds, translucent white layers over them, four greys for
/// text, and the colours of states. Constant; any thread.
class Theme : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor canvas READ canvas CONSTANT FINAL)
    Q_PROPERTY(QColor elevated READ elevated CONSTANT FINAL)
    Q_PROPERTY(QColor card READ card CONSTANT FINAL)
    Q_PROPERTY(QColor cardHover READ cardHover CONSTANT FINAL)
    Q_PROPERTY(QColor border READ border CONSTANT FINAL)
    Q_PROPERTY(QColor borderStrong READ borderStrong CONSTANT FINAL)
    Q_PROPERTY(QColor textStrong READ textStrong CONSTANT FINAL)
    Q_PROPERTY(QColor text READ text CONSTANT FINAL)
    Q_PROPERTY(QColor textMuted READ textMuted CONSTANT FINAL)
    Q_PROPERTY(QColor textFaint READ textFaint CONSTANT FINAL)
    Q_PROPERTY(QColor accent READ accent CONSTANT FINAL)
    Q_PROPERTY(QColor online READ online CONSTANT FINAL)
    Q_PROPERTY(QColor offline READ offline CONSTANT FINAL)
    Q_PROPERTY(QColor pending READ pending CONSTANT FINAL)

public:
    // Backgrounds.
    [[nodiscard]] static const QColor &canvas();   ///< the window
    [[nodiscard]] static const QColor &elevated(); ///< the header and footer bars

    // Layers over the backgrounds.
    [[nodiscard]] static const QColor &card();
    [[nodiscard]] static const QColor &cardHover();
    [[nodiscard]] static const QColor &border();
    [[nodiscard]] static const QColor &borderStrong();

    // Texts and symbols, from the most to the least prominent.
    [[nodiscard]] static const QColor &textStrong();
    [[nodiscard]] static const QColor &text();
    [[nodiscard]] static const QColor &textMuted();
    [[nodiscard]] static const QColor &textFaint();

    // States.
    [[nodiscard]] static const QColor &accent();
    [[nodiscard]] static const QColor &online();
    [[nodiscard]] static const QColor &offline();
    [[nodiscard]] static const QColor &pending();
};

} // namespace portolan
