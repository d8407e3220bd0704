#pragma once

#include <QtGlobal>

namespace kelmora::script {

/// How much one run may do, from what starts it to its end, including the runs
/// that start inside it.
///
/// A script runs to its end inside one event, so one that has no end would
/// lock the window for good. The limit counts what a script does: measured
/// time would make its effect depend on the machine, and continuing in slices
/// between events would let other scripts run in the middle of a loop. It lies
/// far beyond what is written for play. When it is reached the whole run ends
/// with a single error line, because ending the innermost list only would have
/// a branching alias reach the limit again and again.
///
/// A step is about half a microsecond of work or less, so what is no matter of
/// one step is counted by its size: a run without an end then holds the window
/// for two or three seconds, whatever it is made of.
class RunBudget {
 public:
  static constexpr qint64 stepLimit = 5'000'000;

  /// Lives as long as a run; the outermost begins with a full budget.
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
  /// A text that is copied, searched or divided, in UTF-16 units.
  void spendText(qint64 characters) { spend(characters / charactersPerStep); }
  /// A text that is read as a number. A long one takes the toolkit its time.
  void spendNumber(qint64 characters) {
    if (characters > longNumber)
      spend(characters / digitsPerStep);
  }
  /// A line that leaves for the server, the pane or both. The pane drops lines
  /// by their number, so one of more than an argument holds costs it much.
  void spendLine(qint64 characters) {
    spend(1 + characters / (characters > longLine ? laidOutPerStep : charactersPerStep));
  }
  /// A list called in so many others. They stay in memory until it ends, so the
  /// deeper it stands the more it costs: some hundred thousand fit.
  void spendCall(qint64 depth) { spend(1 + depth / levelsPerStep); }
  /// Texts taken over without copying their characters.
  void spendCopies(qint64 texts) { spend(texts / copiesPerStep); }
  /// True once more was spent than there was.
  [[nodiscard]] bool overspent() const { return left_ < 0; }

  /// Nothing more is done in this run, nor in those around it.
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
