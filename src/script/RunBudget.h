#pragma once

#include <QtGlobal>

namespace kelmora::script {

/// Limits how much a run may do. A run is everything that one list of actions,
/// or one typed line, starts; runs that start inside it share its budget.
///
/// A run goes to its end inside one event of the window, so a script without an
/// end would lock the window for ever. The limit is a number of steps. A time
/// limit would make the effect of a script depend on the machine, and running it
/// in slices between events would let other scripts act in the middle of a loop.
/// Scripts written for play stay far below the limit. At the limit the whole run
/// ends, with one error line: if only the innermost list ended, an alias that
/// calls itself twice would reach the limit again and again.
///
/// A step stands for about half a microsecond of work. What takes longer counts
/// as more steps, according to its size. Whatever an endless script does, it
/// holds the window for two or three seconds.
class RunBudget {
 public:
  static constexpr qint64 stepLimit = 5'000'000;

  /// Marks a run for as long as it lives. The outermost one fills the budget.
  class Run {
   public:
    explicit Run(RunBudget& budget) : budget_(budget) {
      if (budget_.runs_++ == 0) {
        budget_.left_ = budget_.limit_;
        budget_.ended_ = false;
      }
    }
    ~Run() { --budget_.runs_; }
    Q_DISABLE_COPY_MOVE(Run)

   private:
    RunBudget& budget_;
  };

  explicit RunBudget(qint64 limit) : limit_(limit), left_(limit) {}

  [[nodiscard]] qint64 limit() const { return limit_; }
  [[nodiscard]] qint64 left() const { return left_; }

  void spend(qint64 steps) { left_ = steps > left_ ? -1 : left_ - steps; }
  /// For copying, searching or dividing a text of so many UTF-16 code units.
  void spendText(qint64 characters) { spend(characters / charactersPerStep); }
  /// For reading a text as a number, which takes the toolkit long if it is long.
  void spendNumber(qint64 characters) {
    if (characters > longNumber)
      spend(characters / digitsPerStep);
  }
  /// For a line to the server, to the pane or to both. A very long line counts
  /// as more: the pane limits how many lines it keeps, but not their length, and
  /// has to break them all.
  void spendLine(qint64 characters) {
    spend(1 + characters / (characters > longLine ? laidOutPerStep : charactersPerStep));
  }
  /// For calling a list inside so many others. All of them stay in memory until
  /// it ends, so deep nesting counts as more: it is limited to some hundred
  /// thousand lists.
  void spendCall(qint64 depth) { spend(1 + depth / levelsPerStep); }
  /// For taking over so many texts, whose characters are shared and not copied.
  void spendCopies(qint64 texts) { spend(texts / copiesPerStep); }
  /// Whether more was spent than there was.
  [[nodiscard]] bool overspent() const { return left_ < 0; }

  /// Ends this run, and those that it is inside of.
  void end() { ended_ = true; }
  [[nodiscard]] bool ended() const { return ended_; }

  static constexpr qint64 charactersPerStep = 256;

 private:
  static constexpr qint64 longNumber = 64;
  static constexpr qint64 digitsPerStep = 8;
  static constexpr qint64 longLine = 1024;
  static constexpr qint64 laidOutPerStep = 4;
  static constexpr qint64 levelsPerStep = 16'384;
  static constexpr qint64 copiesPerStep = 8;

  qint64 limit_;
  qint64 left_;
  int runs_ = 0;
  bool ended_ = false;
};

}  // namespace kelmora::script
