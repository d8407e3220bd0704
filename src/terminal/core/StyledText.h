#pragma once

#include <QHashFunctions>
#include <QString>
#include <vector>

namespace kelmora::terminal {

/// The colours of a piece of text.
struct TextLook {
  /// Stands for no colour. Colours have 24 bits, so none has this value.
  static constexpr quint32 none = 0xFF000000;

  quint32 text = none;
  quint32 background = none;
  /// Whether the background was set before the text colour. The toolkit treats formats
  /// that differ only in this as different.
  bool backgroundCameFirst = false;

  bool operator==(const TextLook&) const = default;
};

inline size_t qHash(const TextLook& look, size_t seed = 0) {
  return qHashMulti(seed, look.text, look.background, look.backgroundCameFirst);
}

/// Text for a document, divided into runs of one look each. Its line ends are U+2028.
struct StyledText {
  struct Run {
    qsizetype end;  ///< where in the text the next run begins
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
