#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <deque>
#include <optional>
#include <variant>

#include "script/Commands.h"

namespace kelmora::script {

/// What a run has under way, innermost last: lists, and what stands between
/// them. It is kept here and not on the program's stack, so that nesting costs
/// memory by the bytes and is bounded by RunBudget alone.
class CallStack {
 public:
  struct List {
    QStringList actions;
    qsizetype next = 0;
    std::optional<QString> alias = {};  ///< whose list it is, if any
    /// The outermost list that leads here by lines of lists alone.
    qsizetype chain = 0;
    /// Where the same alias is under way further out; negative if it is not.
    qsizetype sameAlias = -1;
  };
  struct ConditionLoop {
    QString body;
    int runsLeft;
  };
  using Frame = std::variant<List, Once, Repeat, ConditionLoop>;

  /// What calls an alias: a line of the innermost list, or anything else.
  enum class Caller { List, Other };

  [[nodiscard]] bool isEmpty() const { return frames_.empty(); }
  [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(frames_.size()); }
  [[nodiscard]] bool holdsList() const { return lists_ > 0; }
  [[nodiscard]] Frame& innermost() { return frames_.back(); }

  /// A list that no alias stands for.
  void push(const QStringList& actions) { pushList({.actions = actions}); }
  void push(const Once& body) { frames_.emplace_back(body); }
  void push(const Repeat& loop) { frames_.emplace_back(loop); }
  void push(const ConditionLoop& loop) { frames_.emplace_back(loop); }
  void pop();

  /// Whether calling the alias would only lead back to the same call: it is
  /// under way, and nothing but lines of lists lies between, so nothing decides.
  [[nodiscard]] bool isCircle(const QString& alias, Caller caller) const;
  void call(const QString& alias, const QStringList& commands, Caller caller);
  /// Ends the innermost list of the alias, and what it has started.
  void leave(const QString& alias);

 private:
  void pushList(List list);
  void popFinished();

  std::deque<Frame> frames_;
  qsizetype lists_ = 0;
  /// The innermost list of every alias that was called; negative for one that
  /// is no more under way.
  QHash<QString, qsizetype> aliases_;
};

}  // namespace kelmora::script
