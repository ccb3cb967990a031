#pragma once

#include "ToolPaths.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace portolan {

/// The system's tools under names that nothing stands in for, so that they are really run.
class RealTools
{
public:
    RealTools()
    {
        QFile::link(ToolPaths::lsof(), lsof());
        QFile::link(ToolPaths::ps(), ps());
    }

    [[nodiscard]] QString lsof() const { return m_folder.filePath(QStringLiteral("lsof")); }
    [[nodiscard]] QString ps() const { return m_folder.filePath(QStringLiteral("ps")); }

private:
    QTemporaryDir m_folder;
};

} // namespace portolan
