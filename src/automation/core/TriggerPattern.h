#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>

#include "scan/Format.h"

namespace kelmora::automation {

/// One line of server text to be held against the triggers: its bytes, and the same
/// as text, which is decoded from UTF-8 when it is first asked for. Both may hold NUL
/// characters.
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
/// With 1 to 10 wildcards "{*}" it is a template: it is held against the line from
/// the line's start on, as scanf holds a format against its input, and each wildcard
/// takes one word. With no wildcard, or more than ten, it is plain text, which is
/// found anywhere in the line; "{*}" then stands for itself. A character outside
/// Latin-1 is looked for as "?".
class TriggerPattern {
 public:
  explicit TriggerPattern(const QString& pattern);

  /// The words that the wildcards took, an empty list for plain text; nothing where
  /// the line does not match. A word of any length is matched as a whole, but only
  /// its first 1023 bytes are returned, decoded from UTF-8.
  [[nodiscard]] std::optional<QStringList> matches(const TriggerLine& line) const;

  /// False for a template that no line can match.
  [[nodiscard]] bool canMatch() const { return !isTemplate() || format_.has_value(); }
  /// Bytes that stand in every line that matches: all of a plain pattern, and the
  /// longest such run of a template. Empty where a template has none.
  [[nodiscard]] const QByteArray& requiredBytes() const { return required_; }

 private:
  [[nodiscard]] bool isTemplate() const { return wildcards_ > 0; }
  void compileTemplate(const QString& pattern);
  [[nodiscard]] bool tailFits(const TriggerLine& line, const QByteArray& lastBytes) const;

  qsizetype wildcards_ = 0;             // 0 for plain text
  std::optional<scan::Format> format_;  // of a template that can match
  QByteArray tail_;  // Latin-1; what must follow the last word up to the line's end
  QByteArray required_;
  QByteArray alsoRequired_;  // of a template, the second longest such run
};

}  // namespace kelmora::automation
