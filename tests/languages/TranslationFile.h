// The translations in the tree, as their files hold them.
#pragma once

#include <QList>
#include <QString>

/// One text and its translation.
struct Translated {
  QString context;
  QString source;
  QString translation;
  QString type;  ///< empty when it is finished
};

/// The paths of all translation files.
[[nodiscard]] QStringList translationFiles();
/// All texts of a file, in its order; nothing where it is not well-formed.
[[nodiscard]] QList<Translated> textsIn(const QString& path);
/// In what the form of the two texts differs, in words: placeholders, line breaks and
/// the like, which a translation keeps.
[[nodiscard]] QStringList differencesOfForm(const QString& source, const QString& translation);
