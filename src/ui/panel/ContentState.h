#pragma once

#include <QObject>
#include <QtQmlIntegration>

namespace portolan {

/// What stands between the search field and the footer.
class ContentState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    // An int, as generated code reads it from QML.
    enum State {
        Loading, ///< the first scan: nothing is known yet
        List,    ///< the rows
        Empty,   ///< nothing runs, or nothing matches the search
    };
    Q_ENUM(State)

    /// `anyKnown`: a service is known; `anyVisible`: one is left after the search.
    Q_INVOKABLE [[nodiscard]] static constexpr portolan::ContentState::State
    of(bool anyKnown, bool isScanning, bool anyVisible)
    {
        if (!anyKnown && isScanning)
            return Loading;
        return anyVisible ? List : Empty;
    }
};

} // namespace portolan
