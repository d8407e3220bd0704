#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <deque>
#include <optional>
#include <variant>

#include "script/Sequel.h"

namespace kelmora::script {

/// The lists, conditions and loops that have begun in a run and have not ended,
/// the innermost last. They are kept here rather than on the program's stack, so
/// that deep nesting cannot crash the program: it only takes memory, and
/// RunBudget limits that.
class CallStack {
 public:
  struct List {
    QStringList actions;
    qsizetype next = 0;
    std::optional<QString> alias = {};  ///< the alias that this list belongs to
    /// The position of the outermost list from which only lines of lists lead
    /// here, and no condition or loop.
    qsizetype chain = 0;
    /// The position of the next outer list of the same alias; negative if there
    /// is none.
    qsizetype sameAlias = -1;
  };
  struct ConditionLoop {
    QString body;
    int runsLeft;
  };
  using Frame = std::variant<List, Once, Repeat, ConditionLoop>;

  /// What calls an alias: a line of the innermost list, or something else.
  enum class Caller { List, Other };

  [[nodiscard]] bool isEmpty() const { return frames_.empty(); }
  [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(frames_.size()); }
  [[nodiscard]] bool holdsList() const { return lists_ > 0; }
  [[nodiscard]] Frame& innermost() { return frames_.back(); }

  /// A list that does not belong to an alias.
  void push(const QStringList& actions) { pushList({.actions = actions}); }
  void push(const Once& body) { frames_.emplace_back(body); }
  void push(const Repeat& loop) { frames_.emplace_back(loop); }
  void push(const ConditionLoop& loop) { frames_.emplace_back(loop); }
  void pop();

  /// Whether calling this alias now would never end: its list is on the stack,
  /// and from there only lines of lists have led here. No condition or loop on
  /// the way could make the next round end.
  [[nodiscard]] bool isCircle(const QString& alias, Caller caller) const;
  void call(const QString& alias, const QStringList& commands, Caller caller);
  /// Removes the innermost list of the alias, and everything inside it.
  void leave(const QString& alias);

 private:
  void pushList(List list);
  void popFinished();

  std::deque<Frame> frames_;
  qsizetype lists_ = 0;
  /// For every alias that was called, the position of its innermost list;
  /// negative once there is none.
  QHash<QString, qsizetype> aliases_;
};

}  // namespace kelmora::script
