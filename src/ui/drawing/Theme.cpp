#include "Theme.h"

namespace portolan {

namespace {

QColor grey(int value)
{
    return QColor(value, value, value);
}

QColor white(float opacity)
{
    return QColor::fromRgbF(1.0f, 1.0f, 1.0f, opacity);
}

} // namespace

const QColor &Theme::canvas()
{
    static const QColor color = grey(10);
    return color;
}

const QColor &Theme::elevated()
{
    static const QColor color = grey(0);
    return color;
}

const QColor &Theme::card()
{
    static const QColor color = white(0.03f);
    return color;
}

const QColor &Theme::cardHover()
{
    static const QColor color = white(0.06f);
    return color;
}

const QColor &Theme::border()
{
    static const QColor color = white(0.09f);
    return color;
}

const QColor &Theme::borderStrong()
{
    static const QColor color = white(0.16f);
    return color;
}

const QColor &Theme::textStrong()
{
    static const QColor color = grey(237);
    return color;
}

const QColor &Theme::text()
{
    static const QColor color = grey(199);
    return color;
}

const QColor &Theme::textMuted()
{
    static const QColor color = grey(143);
    return color;
}

const QColor &Theme::textFaint()
{
    static const QColor color = grey(92);
    return color;
}

const QColor &Theme::accent()
{
    static const QColor color(59, 130, 246);
    return color;
}

const QColor &Theme::online()
{
    static const QColor color(34, 197, 94);
    return color;
}

const QColor &Theme::offline()
{
    static const QColor color(244, 63, 94);
    return color;
}

const QColor &Theme::pending()
{
    static const QColor color(234, 179, 8);
    return color;
}

} // namespace portolan
