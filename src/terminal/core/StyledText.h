#pragma once

#include <QHashFunctions>
#include <QString>
#include <vector>

namespace kelmora::terminal {

/// What the colour spans around a piece of text make of it.
struct TextLook {
  /// No colour is this one: it would need more than 24 bits.
  static constexpr quint32 none = 0xFF000000;

  quint32 text = none;
  quint32 background = none;
  /// To the toolkit formats that differ only in this are not the same.
  bool backgroundCameFirst = false;

  bool operator==(const TextLook&) const = default;
};

inline size_t qHash(const TextLook& look, size_t seed = 0) {
  return qHashMulti(seed, look.text, look.background, look.backgroundCameFirst);
}

/// Text as it goes into a document, in pieces of one look each. A line end in it
/// is U+2028.
struct StyledText {
  struct Run {
    qsizetype end;  ///< where in the text the next one begins
    TextLook look;
    /// The target of a link, empty for other text.
    QString target = {};

    bool operator==(const Run&) const = default;
  };

  QString text;
  std::vector<Run> runs;

  bool operator==(const StyledText&) const = default;
};

}  // namespace kelmora::terminal
