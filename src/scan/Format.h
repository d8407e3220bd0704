#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QVarLengthArray>
#include <bitset>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace kelmora::scan {

/// What one scan assigned, in the order of the conversions. The fields own
/// their bytes, so they outlive the scanned text.
class Result {
 public:
  using Field = std::variant<QByteArray, int>;

  /// For a format that assigns so many fields.
  explicit Result(qsizetype fieldCount) : fieldCount_(fieldCount) {}
  void append(Field field) { fields_.append(std::move(field)); }

  /// How many conversions were assigned before the scan stopped.
  [[nodiscard]] qsizetype count() const { return fields_.size(); }
  /// Whether every assigning conversion of the format got its field. What
  /// stands after the last conversion is not part of the answer.
  [[nodiscard]] bool complete() const { return count() == fieldCount_; }
  /// The bytes of a %s or %[^…] field; empty for a %d field and for a field
  /// that was not assigned.
  [[nodiscard]] QByteArray text(qsizetype field) const;
  /// The value of a %d field; 0 for any other and for one not assigned.
  [[nodiscard]] int number(qsizetype field) const;

 private:
  qsizetype fieldCount_;
  QVarLengthArray<Field, 10> fields_;
};

/// A scanf format, compiled once and then run over any number of texts.
///
/// It knows literal bytes, runs of white space, %d, %s, %[^…], each of the
/// three suppressed by "*", and %%. Scanning assigns what the C library's
/// sscanf would assign; it takes time linear in the text and stores no field
/// longer than its limit.
class Format {
 public:
  /// A text field holds at most this many bytes; what is left of a longer word
  /// stays in the input for the next step.
  static constexpr qsizetype defaultFieldLimit = 1023;

  /// Nothing when the format holds a conversion not named above, a width, a
  /// set with "-" in it (a range in one library, three bytes in the next), or
  /// when fieldLimit is below 1. A format ends at its first NUL byte.
  [[nodiscard]] static std::optional<Format> compile(QByteArrayView format,
                                                     qsizetype fieldLimit = defaultFieldLimit);

  /// The text ends at its first NUL byte.
  [[nodiscard]] Result scan(QByteArrayView input) const;

  /// How many fields a complete scan assigns.
  [[nodiscard]] qsizetype fieldCount() const { return fieldCount_; }

 private:
  enum class Kind { Literal, WhiteSpace, Percent, Number, Word, UntilOneOf };
  struct Step {
    Kind kind;
    bool suppressed = false;
    QByteArray literal = {};      // of Literal
    std::bitset<256> stops = {};  // of UntilOneOf
  };
  struct Compiler;
  struct Cursor;

  Format() = default;
  [[nodiscard]] bool run(const Step& step, Cursor& cursor, Result& result) const;

  std::vector<Step> steps_;
  qsizetype fieldCount_ = 0;
  qsizetype fieldLimit_ = defaultFieldLimit;
};

}  // namespace kelmora::scan
