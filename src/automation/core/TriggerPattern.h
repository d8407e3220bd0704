#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>

#include "scan/Format.h"

namespace kelmora::automation {

/// One line of server text on its way past the triggers: its bytes, and the
/// same decoded as UTF-8 once somebody asks. NUL bytes are characters of both.
class TriggerLine {
 public:
  explicit TriggerLine(QByteArray bytes) : bytes_(std::move(bytes)) {}

  [[nodiscard]] const QByteArray& bytes() const { return bytes_; }
  [[nodiscard]] const QString& text() const;

 private:
  QByteArray bytes_;
  mutable std::optional<QString> text_;
};

/// A trigger's pattern, compiled once.
///
/// With 1 to 10 wildcards "{*}" it is a template, which reads the line from its
/// start as a scanf format does, each wildcard taking one word. With none, or
/// with more than ten, it is plain text, found anywhere in the line, the
/// wildcards standing for themselves. Characters outside Latin-1 are looked
/// for as "?".
class TriggerPattern {
 public:
  static constexpr qsizetype maximumWildcards = 10;

  explicit TriggerPattern(const QString& pattern);

  /// The captured words, one for each wildcard (so none for plain text); nothing
  /// when the line does not match. A word is matched whole, however long, and
  /// handed over cut at 1023 bytes and decoded as UTF-8.
  [[nodiscard]] std::optional<QStringList> matches(const TriggerLine& line) const;

  [[nodiscard]] bool isTemplate() const { return wildcards_ > 0; }
  /// False for a template that no line can match.
  [[nodiscard]] bool canMatch() const { return !isTemplate() || format_.has_value(); }
  /// The longest run of bytes known to stand in every line that matches; all of
  /// a plain pattern. Empty where there is none.
  [[nodiscard]] const QByteArray& requiredBytes() const { return required_; }

 private:
  void compileTemplate(const QString& pattern);
  [[nodiscard]] bool tailFits(const TriggerLine& line, const QByteArray& lastBytes) const;

  qsizetype wildcards_ = 0;             // 0 for plain text
  std::optional<scan::Format> format_;  // of a template that can match
  QByteArray tail_;                     // Latin-1; what must follow the last word
  QByteArray required_;
  QByteArray alsoRequired_;  // the second longest such run of a template
};

}  // namespace kelmora::automation
