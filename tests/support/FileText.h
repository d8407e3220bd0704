#pragma once

#include <QFile>

/// What the file holds, "(none)" where it cannot be read.
inline QByteArray contentOf(const QString& name) {
  QFile file(name);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

/// Writes a file into the scratch folder.
inline void writeFile(const QString& name, const QByteArray& content) {
  QFile file(name);
  if (!file.open(QIODevice::WriteOnly))
    qFatal("the scratch folder takes no files");
  file.write(content);
}
