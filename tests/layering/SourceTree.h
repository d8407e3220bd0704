#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

/// A header or source, as far as the layering tests look at it.
struct SourceFile {
  QStringList includes;  ///< of the project's own headers, as they are written
  /// The text without comments, preprocessor lines and what stands in quotes, so
  /// that a search finds code alone.
  QString code;
};

/// Files by their paths below the folder that includes are relative to, such as
/// "script/Commands.h".
using SourceTree = QMap<QString, SourceFile>;

[[nodiscard]] SourceFile sourceFile(const QString& text);

/// All headers and sources below a folder of the project. `prefix` goes before
/// their paths.
[[nodiscard]] SourceTree readSources(const QString& folder, const QString& prefix = {});

/// All headers and sources of the program and of the demo world.
[[nodiscard]] SourceTree projectSources();
