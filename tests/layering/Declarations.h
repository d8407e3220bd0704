#pragma once

#include <QList>
#include <QString>
#include <optional>

/// A declaration outside of functions and classes.
struct Declaration {
  QString scope;                ///< the namespace that it is in, such as "kelmora::script"
  QString text;                 ///< what stands before its body, if it has one, with single blanks
  std::optional<QString> body;  ///< what stands in its braces, if it has any

  /// Whether it only says that a class or an enumeration exists.
  [[nodiscard]] bool isForward() const;
  /// The name of a class that is defined here, empty for anything else.
  [[nodiscard]] QString className() const;
};

/// The declarations in C++ code without comments, quotes and preprocessor lines.
[[nodiscard]] QList<Declaration> declarationsIn(const QString& code);
