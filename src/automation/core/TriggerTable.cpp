#include "automation/core/TriggerTable.h"

#include <utility>

#include "automation/core/TriggerMatcher.h"

namespace kelmora::automation {

void TriggerTable::append(TriggerEntry entry) {
  entries_.append(std::move(entry));
  matcher_.reset();
}

void TriggerTable::removeAt(qsizetype position) {
  if (!contains(position))
    return;
  entries_.removeAt(position);
  matcher_.reset();
}

void TriggerTable::setPattern(qsizetype position, QString pattern) {
  if (!contains(position))
    return;
  entries_[position].pattern = std::move(pattern);
  matcher_.reset();
}

void TriggerTable::setCommands(qsizetype position, QStringList commands) {
  if (contains(position))
    entries_[position].commands = std::move(commands);
}

bool TriggerTable::contains(qsizetype position) const {
  return position >= 0 && position < entries_.size();
}

void TriggerTable::check(const QByteArray& line, TriggerHost& host) {
  if (entries_.isEmpty())
    return;
  if (!matcher_)
    matcher_ = std::make_shared<const TriggerMatcher>(entries_);
  const TriggerLine text(line);
  const std::vector<quint32> candidates = matcher_->candidates(text);
  if (candidates.empty())
    return;
  // Copies, since the host may change the table in the middle of this loop.
  const std::shared_ptr<const TriggerMatcher> matcher = matcher_;
  const QList<TriggerEntry> entries = entries_;
  for (const quint32 position : candidates) {
    const auto words = matcher->pattern(position).matches(text);
    if (!words)
      continue;
    for (qsizetype word = 0; word < words->size(); ++word)
      host.setVariable(QLatin1StringView("_trigOut") + QString::number(word), words->at(word));
    host.runActions(entries.at(position).commands);
  }
}

}  // namespace kelmora::automation
