// Reads and writes whole files without the code under test.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// What the file holds; "(none)" where there is none that can be read, so that no
/// comparison takes a missing file for an empty one.
inline QByteArray contentsOf(const QString& name) {
  QFile file(name);
  return file.open(QIODevice::ReadOnly) ? QByteArray("").append(file.readAll())
                                        : QByteArray("(none)");
}

/// Writes a file, for a test in which that may fail.
[[nodiscard]] inline bool put(const QString& name, const QByteArray& bytes) {
  QFile file(name);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

/// Writes a file, for a test that cannot go on without it.
inline void writeFile(const QString& name, const QByteArray& bytes) {
  if (!put(name, bytes))
    qFatal("the scratch folder does not take the file %s", qPrintable(name));
}
