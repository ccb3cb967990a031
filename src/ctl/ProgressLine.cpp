// SPDX-License-Identifier: MIT
#include "ProgressLine.h"

#include "Output.h"
#include "TerminalText.h"

#include <chrono>

namespace portolan {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

ProgressLine::ProgressLine()
{
    if (!Output::canMoveCursor())
        return;
    m_delay.setSingleShot(true);
    m_delay.callOnTimeout([this] { draw(); });
    m_delay.start(150ms);
}

ProgressLine::~ProgressLine()
{
    erase();
}

void ProgressLine::erase()
{
    if (m_isDrawn)
        (void)Output::write("\r\x1b[K");
}

void ProgressLine::setText(const QString &text)
{
    m_text = text;
    if (m_isDrawn)
        draw();
}

void ProgressLine::draw()
{
    m_isDrawn = true;
    const QString text = TerminalText::elided(m_text, Output::size().columns - 1);
    (void)Output::write(("\r"_L1 + Output::colors().styled(TextStyle::Faint, text) + "\x1b[K"_L1).toUtf8());
}

} // namespace portolan
