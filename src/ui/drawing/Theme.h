// SPDX-License-Identifier: MIT
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
    Q_PROPERTY(QColor canvas MEMBER canvas CONSTANT FINAL)
    Q_PROPERTY(QColor elevated MEMBER elevated CONSTANT FINAL)
    Q_PROPERTY(QColor card MEMBER card CONSTANT FINAL)
    Q_PROPERTY(QColor cardHover MEMBER cardHover CONSTANT FINAL)
    Q_PROPERTY(QColor border MEMBER border CONSTANT FINAL)
    Q_PROPERTY(QColor borderStrong MEMBER borderStrong CONSTANT FINAL)
    Q_PROPERTY(QColor textStrong MEMBER textStrong CONSTANT FINAL)
    Q_PROPERTY(QColor text MEMBER text CONSTANT FINAL)
    Q_PROPERTY(QColor textMuted MEMBER textMuted CONSTANT FINAL)
    Q_PROPERTY(QColor textFaint MEMBER textFaint CONSTANT FINAL)
    Q_PROPERTY(QColor accent MEMBER accent CONSTANT FINAL)
    Q_PROPERTY(QColor online MEMBER online CONSTANT FINAL)
    Q_PROPERTY(QColor offline MEMBER offline CONSTANT FINAL)
    Q_PROPERTY(QColor pending MEMBER pending CONSTANT FINAL)

public:
    // Backgrounds.
    static inline const QColor canvas{10, 10, 10}; ///< the window
    static inline const QColor elevated{0, 0, 0};  ///< the header and footer bars

    // Layers over the backgrounds.
    static inline const QColor card = QColor::fromRgbF(1, 1, 1, 0.03f);
    static inline const QColor cardHover = QColor::fromRgbF(1, 1, 1, 0.06f);
    static inline const QColor border = QColor::fromRgbF(1, 1, 1, 0.09f);
    static inline const QColor borderStrong = QColor::fromRgbF(1, 1, 1, 0.16f);

    // Texts and symbols, from the most to the least prominent.
    static inline const QColor textStrong{237, 237, 237};
    static inline const QColor text{199, 199, 199};
    static inline const QColor textMuted{143, 143, 143};
    static inline const QColor textFaint{92, 92, 92};

    // States.
    static inline const QColor accent{59, 130, 246};
    static inline const QColor online{34, 197, 94};
    static inline const QColor offline{244, 63, 94};
    static inline const QColor pending{234, 179, 8};
};

} // namespace portolan
