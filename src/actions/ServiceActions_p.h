#pragma once

#include "ServiceActions.h"

#include <QStringList>

#include <chrono>

namespace ServiceActions {

/// How long a server has to end by itself before it is killed.
inline constexpr std::chrono::milliseconds stopGrace(1500);

/// The launchers of the code editors, the preferred one first.
[[nodiscard]] QStringList editorCandidates();

/// As the public one, with other editors to choose from.
void openInEditor(const Service &service, const QStringList &candidates);

} // namespace ServiceActions
