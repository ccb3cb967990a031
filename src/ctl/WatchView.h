// SPDX-License-Identifier: MIT
#pragma once

#include "ListedService.h"
#include "Output.h"
#include "Screen.h"
#include "TerminalColors.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace portolan {

/// The content of the live view and the meaning of its keys. Independent of the terminal and of the machine.
/// Main thread.
class WatchView
{
public:
    /// The servers to show.
    struct Content
    {
        QList<ListedService> services; ///< all, in any order
        QDateTime lastUpdated;         ///< invalid before the first scan
        QStringList problems;          ///< a line for each machine that does not answer
        bool hasHosts = false;         ///< whether the list says which machine a server runs on
    };

    /// What the user requests, and for which server.
    struct Request
    {
        enum Kind : quint8 { None, Quit, Refresh, Open, Copy, Stop };

        Kind kind = None;
        ListedService service;
    };

    struct Frame
    {
        QList<StyledLine> lines;              ///< as they fit into the terminal
        std::optional<qsizetype> highlighted; ///< the line of the selected server
    };

    /// `readsKeys`: whether keys can be read.
    WatchView(const QString &searchText, SortOrder order, bool readsKeys);

    void setContent(const Content &content);
    void setSize(Output::Size size);
    /// Shows `note` in place of the server's status, and the server even if it is gone. An empty note removes
    /// it.
    void setNote(const ListedService &service, const QString &note);
    /// Shows `text` in the last line until the next key.
    void setMessage(const QString &text) { m_message = text; }
    /// A refresh has ended: the last line does not say any more that one is under way.
    void endRefresh();

    [[nodiscard]] Request handle(const Input &input);
    [[nodiscard]] Frame frame() const;

private:
    enum class Mode : quint8 { List, Search, Stop, Keys };

    void arrange();
    [[nodiscard]] Request handleInList(const Input &input);
    void handleInSearch(const Input &input);
    [[nodiscard]] bool moveSelection(Input::Kind kind);
    void select(qsizetype row);
    void scroll(qsizetype rows);
    [[nodiscard]] qsizetype listHeight() const;
    [[nodiscard]] qsizetype shownAtOnce() const;
    [[nodiscard]] QList<StyledLine> listLines() const;
    [[nodiscard]] QString footer() const;

    QString m_searchText;
    SortOrder m_order;
    const bool m_readsKeys;

    Content m_content;
    QHash<QString, ListedService> m_noted; ///< by their keys
    Output::Size m_size;
    Mode m_mode = Mode::List;
    QString m_message;
    ListedService m_toStop;

    QList<ListedService> m_rows; ///< as shown
    qsizetype m_selected = 0;    ///< the index of a row; 0 if there is none
    qsizetype m_first = 0;       ///< the first row to show if not all fit
};

} // namespace portolan
