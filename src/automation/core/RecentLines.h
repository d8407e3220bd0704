#pragma once

#include <QByteArray>
#include <QString>
#include <deque>

namespace kelmora::automation {

/// The lines that the triggers got last. The pane does not show a line as it came: a
/// tab is blanks there, a web address may get a scheme, and tags and entities are
/// resolved. A pattern must fit what came, so a line that is shown is looked up here.
class RecentLines {
 public:
  // 1 MiB and some thousand lines are more than anybody scrolls back through.
  static constexpr qsizetype mostBytes = 1 << 20;
  static constexpr qsizetype mostLines = 1 << 14;
  /// In bytes. Of a longer line the beginning is kept.
  static constexpr qsizetype longestLine = 1 << 11;
  /// In characters. Of a longer line of the pane what is around the place is looked up.
  static constexpr qsizetype longestShown = 1 << 12;

  void add(const QByteArray& line);

  /// The line, or the piece of one, that is shown at a place in a line of the pane: of
  /// several the longest, and of equal ones the newest. A prompt and what came behind
  /// it are one line in the pane, but two pieces. Where none is shown at the place, it
  /// is the longest in the line of the pane. Empty where that has none.
  [[nodiscard]] QByteArray shownAt(const QString& shown, qsizetype place) const;

 private:
  std::deque<QByteArray> lines_;
  qsizetype bytes_ = 0;
};

}  // namespace kelmora::automation
