#pragma once

#include "ServiceActions.h"

#include <QStringList>

namespace portolan {

namespace ServiceActions {

/// The launchers of the code editors, the preferred one first.
[[nodiscard]] QStringList editorCandidates();

/// As the public one, with other editors to choose from.
void openInEditor(const Service &service, const QStringList &candidates);

} // namespace ServiceActions

} // namespace portolan
