#include "script/VariableTable.h"

#include <limits>

namespace kelmora::script {

bool VariableTable::set(const QString& name, const QString& value) {
  longestName_ = qMax(longestName_, name.size());
  entries_.insert(name, value.left(maximumLength));
  return value.size() <= maximumLength;
}

void VariableTable::load(const Entries& entries) {
  entries_ = entries;
  longestName_ = 0;
  for (auto entry = entries_.cbegin(); entry != entries_.cend(); ++entry)
    longestName_ = qMax(longestName_, entry.key().size());
}

QString VariableTable::substituteVariables(const QString& text) const {
  return substitution(text, std::numeric_limits<qint64>::max()).text();
}

Substitution VariableTable::substitution(const QString& text, qint64 work) const {
  return {entries_, longestName_, {.longestText = maximumLength, .work = work}, text};
}

}  // namespace kelmora::script
