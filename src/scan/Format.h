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

/// The fields that one scan has filled, in the order of the format's conversions.
/// It holds copies of the bytes, so the scanned text need not outlive it.
class Result {
 public:
  using Field = std::variant<QByteArray, int>;

  /// Empty; `fieldCount` is the number of fields that the format can fill.
  explicit Result(qsizetype fieldCount) : fieldCount_(fieldCount) {}
  void append(Field field) { fields_.append(std::move(field)); }

  /// The number of fields that were filled before the scan stopped.
  [[nodiscard]] qsizetype count() const { return fields_.size(); }
  /// Whether all fields of the format were filled. Text of the format behind its last
  /// field may still be missing in the scanned text.
  [[nodiscard]] bool complete() const { return count() == fieldCount_; }
  /// The bytes of a %s or %[^…] field. Empty for a %d field, and for a field that was
  /// not filled.
  [[nodiscard]] QByteArray text(qsizetype field) const;
  /// The value of a %d field. 0 for any other field, and for one that was not filled.
  [[nodiscard]] int number(qsizetype field) const;

 private:
  QVarLengthArray<Field, 10> fields_;
  qsizetype fieldCount_;
};

/// A format as the C library's sscanf takes it, compiled once for any number of
/// texts.
///
/// It may hold literal bytes, white space, %%, and the conversions %d, %s and %[^…],
/// also as %*d, %*s and %*[^…], which fill no field. A scan fills the same fields as
/// sscanf would if each %s and %[^…] had the format's field limit as its width. It
/// takes time in proportion to the text.
class Format {
 public:
  /// In bytes. The rest of a longer word is left in the text for the next conversion,
  /// as with sscanf and a width.
  static constexpr qsizetype defaultFieldLimit = 1023;

  /// Compiles the format, which ends at its first NUL byte. Nothing where it holds any
  /// other conversion, a width, or a set with "-" in it, which some C libraries take
  /// for a range and others for a byte; also where fieldLimit is below 1.
  [[nodiscard]] static std::optional<Format> compile(QByteArrayView format,
                                                     qsizetype fieldLimit = defaultFieldLimit);

  /// Scans a text, which ends at its first NUL byte.
  [[nodiscard]] Result scan(QByteArrayView input) const;

  /// The number of fields that a complete scan fills.
  [[nodiscard]] qsizetype fieldCount() const { return fieldCount_; }

 private:
  enum class Kind { Literal, WhiteSpace, Percent, Number, Word, UntilOneOf };
  struct Step {
    Kind kind;
    bool suppressed = false;
    QByteArray literal = {};      // of Literal
    std::bitset<256> stops = {};  // of UntilOneOf: the bytes that end the field
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
