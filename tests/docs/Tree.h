#pragma once

#include <QString>
#include <QStringList>

#include "Markdown.h"

/// The checkout that the tests were built from.
[[nodiscard]] QString inTree(const QString& path);
/// A page of the reference.
[[nodiscard]] Markdown page(const QString& name);
/// The paths of all files below a folder of the tree whose names match, sorted.
[[nodiscard]] QStringList filesIn(const QString& folder, const QString& names);
[[nodiscard]] QString textOf(const QString& path);
