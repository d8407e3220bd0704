#include "script/Substitution.h"

#include <algorithm>
#include <vector>

namespace kelmora::script {

namespace {

/// What a search in the table counts as, in characters read.
constexpr qint64 lookup = 64;

qsizetype commonLength(const QString& a, const QString& b) {
  return std::mismatch(a.cbegin(), a.cend(), b.cbegin(), b.cend()).first - a.cbegin();
}

/// A replacement in the new text.
struct Part {
  qsizetype from;
  qsizetype to;
};

}  // namespace

Substitution::Substitution(const Variables& variables, qsizetype longestName, const Limits& limits,
                           const QString& text)
    : variables_(variables), longestName_(longestName), limits_(limits), text_(text) {
  if (variables_.isEmpty())
    return;
  findNames(0, text_.size());
  while (!waiting_.empty() && !isOver()) {
    const Variable next = *waiting_.begin();
    waiting_.erase(waiting_.begin());
    latest_ = next;
    replace(next);
  }
}

void Substitution::findNames(qsizetype from, qsizetype to) {
  const QStringView part = QStringView(text_).first(to);
  const QStringView reach = QStringView(text_).first(std::min(to + longestName_ + 1, text_.size()));
  work_ += to - from;
  qsizetype close = -1;
  for (qsizetype brace = part.indexOf(u'{', from); brace >= 0 && !isOver();
       brace = part.indexOf(u'{', brace + 1)) {
    if (close < brace)
      close = reach.indexOf(u'}', brace);
    if (close < 0)
      return;
    if (close - brace <= longestName_ + 1)
      findNamesBehind(brace);
  }
}

void Substitution::findNamesBehind(qsizetype brace) {
  const QStringView behind = QStringView(text_).sliced(brace + 1);
  const QStringView rest = behind.first(std::min(longestName_ + 1, behind.size()));
  work_ += rest.size();
  qsizetype end = rest.lastIndexOf(u'}');
  while (end >= 0 && !isOver()) {
    const QString ahead = QString::fromRawData(rest.data(), end);
    work_ += lookup + end;
    // Wanted are the names that `ahead` begins with. The candidate is the last
    // name that is not greater than `ahead`. No other wanted name can be longer
    // than the beginning that the two have in common.
    Variable nearest = variables_.upperBound(ahead);
    if (nearest == variables_.cbegin())
      return;
    --nearest;
    qsizetype common = commonLength(nearest.key(), ahead);
    if (common < nearest.key().size())
      ++common;
    else if (rest[common] == u'}')
      note(nearest);
    end = rest.first(common).lastIndexOf(u'}');
  }
}

void Substitution::note(Variable variable) {
  if (!latest_ || latest_->key() < variable.key())
    waiting_.insert(variable);
}

void Substitution::replace(Variable variable) {
  const QString braced = u'{' + variable.key() + u'}';
  const QStringView value(variable.value());
  QString result;
  std::vector<Part> inserted;
  qsizetype from = 0;
  work_ += lookup + text_.size();
  for (qsizetype at = text_.indexOf(braced); at >= 0 && result.size() < limits_.longestText;
       at = text_.indexOf(braced, from)) {
    result += QStringView(text_).sliced(from, at - from);
    const qsizetype start = result.size();
    // One character more than is allowed shows that the result was too long.
    result += value.first(std::min(value.size(), limits_.longestText + 1));
    inserted.push_back({start, result.size()});
    from = at + braced.size();
  }
  // The name was in the text when it was noted, but may have been in an end
  // that was cut off since.
  if (inserted.empty())
    return;
  result += QStringView(text_).sliced(from);
  work_ += result.size();
  wasCut_ = wasCut_ || result.size() > limits_.longestText;
  result.truncate(limits_.longestText);
  text_ = result;
  qsizetype searched = 0;
  for (const Part& part : inserted) {
    const qsizetype to = std::min(part.to, text_.size());
    searched = std::max(searched, part.from - longestName_ - 1);
    if (searched < to && !isOver())
      findNames(searched, to);
    searched = std::max(searched, to);
  }
}

}  // namespace kelmora::script
