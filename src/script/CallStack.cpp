#include "script/CallStack.h"

#include <utility>

namespace kelmora::script {

void CallStack::pop() {
  if (const auto* const list = std::get_if<List>(&frames_.back())) {
    --lists_;
    if (list->alias)
      aliases_[*list->alias] = list->sameAlias;
  }
  frames_.pop_back();
}

bool CallStack::isCircle(const QString& alias, Caller caller) const {
  return caller == Caller::List &&
         aliases_.value(alias, -1) >= std::get<List>(frames_.back()).chain;
}

void CallStack::call(const QString& alias, const QStringList& commands, Caller caller) {
  if (caller == Caller::Other)
    popFinished();
  const qsizetype chain = caller == Caller::List ? std::get<List>(frames_.back()).chain : size();
  const qsizetype sameAlias = aliases_.value(alias, -1);
  aliases_[alias] = size();
  pushList({.actions = commands, .alias = alias, .chain = chain, .sameAlias = sameAlias});
}

void CallStack::leave(const QString& alias) {
  const qsizetype list = aliases_.value(alias);
  while (size() > list)
    pop();
}

void CallStack::pushList(List list) {
  frames_.emplace_back(std::move(list));
  ++lists_;
}

// Removes lists of which every action has begun. A list whose last action is a
// condition or loop that calls the same alias again would otherwise leave one
// finished list behind in every round.
void CallStack::popFinished() {
  const auto isFinished = [](const Frame& frame) {
    const auto* const list = std::get_if<List>(&frame);
    return list != nullptr && list->next == list->actions.size();
  };
  // The outermost list always stays, so the stack cannot become empty here.
  while (size() > 1 && isFinished(frames_.back()))
    pop();
}

}  // namespace kelmora::script
