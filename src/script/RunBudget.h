#pragma once

#include <QtGlobal>

/// How much one run may do, from the event that starts it to the return to the
/// event loop, including the runs that start inside it.
///
/// A script runs to its end inside one event, so one that has no end would
/// lock the window for good. The limits count what a script does: measured
/// time would make its effect depend on the machine, and continuing in slices
/// between events would let other scripts run in the middle of a loop. Each
/// lies far beyond what is written for play. When one is reached the whole run
/// ends with a single error line, because ending the innermost list only would
/// have a branching alias reach the limit again and again.
class RunBudget {
 public:
  /// Aliases (and the loops between them) inside one another.
  static constexpr qsizetype nestingLimit = 250'000;
  /// Bodies run by all loops together: twice over what two full loops, one
  /// inside the other, come to.
  static constexpr int loopRunLimit = 2 * (513 * 513 + 513);
  /// Every action is a step; so are 64 characters of it and of a text it makes,
  /// and every name looked for in such a text.
  static constexpr qint64 stepLimit = 5'000'000;
  static constexpr qint64 charactersPerStep = 64;

  /// Those of play, unless somebody wants a run to end sooner.
  struct Limits {
    qsizetype nesting = nestingLimit;
    int loopRuns = loopRunLimit;
    qint64 steps = stepLimit;
  };

  /// Lives as long as a run; the outermost begins with a full budget.
  class Run {
   public:
    explicit Run(RunBudget& budget) : budget_(budget) {
      if (budget_.runs_++ == 0) {
        budget_.steps_ = budget_.limits_.steps;
        budget_.loopRuns_ = budget_.limits_.loopRuns;
        budget_.ended_ = false;
      }
    }
    ~Run() { --budget_.runs_; }
    Q_DISABLE_COPY_MOVE(Run)

   private:
    RunBudget& budget_;
  };

  explicit RunBudget(const Limits& limits) : limits_(limits) {}

  [[nodiscard]] const Limits& limits() const { return limits_; }

  void spend(qint64 steps) { steps_ = steps > steps_ ? -1 : steps_ - steps; }
  void spendText(qsizetype characters) { spend(characters / charactersPerStep); }
  /// True once more was spent than there was.
  [[nodiscard]] bool overspent() const { return steps_ < 0; }
  /// False when no more are left.
  [[nodiscard]] bool spendLoopRun() { return loopRuns_ > 0 && loopRuns_-- > 0; }

  /// Nothing more is done in this run, nor in those around it.
  void end() { ended_ = true; }
  [[nodiscard]] bool ended() const { return ended_; }

 private:
  Limits limits_;
  int runs_ = 0;
  qint64 steps_ = limits_.steps;
  int loopRuns_ = limits_.loopRuns;
  bool ended_ = false;
};
