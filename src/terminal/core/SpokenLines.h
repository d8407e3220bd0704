#pragma once

#include <QStringList>
#include <QStringView>

namespace kelmora::terminal {

/// Collects what a screen reader is to read out: the lines of all text that comes,
/// without blank ones and without characters that cannot be spoken; blanks in a row
/// count as one. Of many lines it keeps the last ones and counts the others.
class SpokenLines {
 public:
  /// A screenful is the most that anyone listens to. Fast speech takes about a
  /// second for a line, and who types the next command cuts it off.
  static constexpr qsizetype mostLines = 25;
  /// In characters, of one line. Games send paragraphs as one line, but none of
  /// minutes.
  static constexpr qsizetype longestLine = 1000;

  /// The text may begin and end anywhere in a line.
  void add(QStringView text);
  /// What comes next is a new line.
  void endLine();
  /// Counts lines before all that come next, and forgets those that have come.
  void leaveOut(qint64 lines);

  /// Whether whole lines wait.
  [[nodiscard]] bool hasLines() const { return !lines_.isEmpty(); }
  /// Whether a line waits that has not ended, such as a prompt.
  [[nodiscard]] bool hasRest() const { return !isBlank(rest_); }

  struct Taken {
    qint64 leftOut = 0;  ///< lines before the others
    QStringList lines = {};
  };
  enum class Rest { Waits, Comes };
  /// What waits. After an unended line has come, only what is added to it does.
  [[nodiscard]] Taken take(Rest rest);

 private:
  [[nodiscard]] static bool isBlank(QStringView text) { return text.trimmed().isEmpty(); }
  void keep(QStringView piece);
  void keepRest();

  QStringList lines_;
  QString rest_;
  qsizetype restLength_ = 0;  ///< of the unended line, with what has been taken of it
  qint64 leftOut_ = 0;
};

}  // namespace kelmora::terminal
