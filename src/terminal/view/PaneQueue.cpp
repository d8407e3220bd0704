#include "terminal/view/PaneQueue.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "terminal/core/Log.h"

namespace kelmora::terminal {

namespace {

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
// Some supported compilers need this deduction guide.
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

qsizetype sizeOf(const QString& text) {
  return text.size() * static_cast<qsizetype>(sizeof(QChar));
}

template <class Element>
qsizetype sizeOf(const std::vector<Element>& elements) {
  return static_cast<qsizetype>(elements.size()) * static_cast<qsizetype>(sizeof(Element));
}

qsizetype sizeOf(const StyledText& styled) {
  qsizetype size = sizeOf(styled.text) + sizeOf(styled.runs);
  for (const StyledText::Run& run : styled.runs)
    size += sizeOf(run.target);
  return size;
}

qsizetype sizeOf(const SafeHtml& html) {
  return sizeOf(html.html()) + sizeOf(html.facts().lines);
}

qsizetype memoryOf(const PaneText& text) {
  constexpr qsizetype overhead = 256;
  return overhead +
         std::visit(Overloaded{[](const StyledText& styled) { return sizeOf(styled); },
                               [](const SafeHtml& html) { return sizeOf(html); },
                               [](const StatusLine& line) { return sizeOf(line.html); },
                               [](const PlainText& plain) { return sizeOf(plain.text); }},
                    text);
}

/// A single character in the look of that run.
StyledText oneOf(StyledText::Run run, QChar character) {
  run.end = 1;
  return {QString(character), {std::move(run)}};
}

}  // namespace

void PaneQueue::add(ServerText text) {
  if (auto* const styled = std::get_if<StyledText>(&text))
    return add(PaneText(std::move(*styled)));
  for (SafeHtml& piece : std::get<std::vector<SafeHtml>>(text))
    add(PaneText(std::move(piece)));
}

void PaneQueue::add(PaneText text) {
  Waiting waiting{.text = std::move(text)};
  waiting.memory = memoryOf(waiting.text);
  size_ += waiting.memory;
  count(waiting);
  waiting_.push_back(std::move(waiting));
  dropUnseen();
}

PaneText PaneQueue::take() {
  if (!standIns_.empty())
    return takeStandIn();
  const auto* const styled = std::get_if<StyledText>(&waiting_.front().text);
  if (styled && (gone_ > 0 || styled->text.size() > sliceLength))
    return nextSlice();
  return takeFirst();
}

PaneText PaneQueue::takeStandIn() {
  PaneText first = std::move(standIns_.front());
  standIns_.pop_front();
  return first;
}

PaneText PaneQueue::takeFirst() {
  PaneText first = std::move(waiting_.front().text);
  removeFirst();
  return first;
}

StyledText PaneQueue::nextSlice() {
  Waiting& first = waiting_.front();
  const auto& [text, runs] = std::get<StyledText>(first.text);
  qsizetype end = std::min(gone_ + sliceLength, text.size());
  if (end < text.size() && text[end].isLowSurrogate())
    --end;
  StyledText slice{text.sliced(gone_, end - gone_), {}};
  for (qsizetype done = gone_; done < end;) {
    const StyledText::Run& run = runs[goneRuns_];
    done = std::min(run.end, end);
    slice.runs.push_back({done - gone_, run.look, run.target});
    if (run.end <= end)
      ++goneRuns_;
  }
  removeUpTo(end);
  return slice;
}

void PaneQueue::removeUpTo(qsizetype end) {
  Waiting& first = waiting_.front();
  const qsizetype memory = (end - gone_) * static_cast<qsizetype>(sizeof(QChar));
  first.memory -= memory;
  size_ -= memory;
  gone_ = end;
  if (gone_ == std::get<StyledText>(first.text).text.size())
    removeFirst();
}

void PaneQueue::removeFirst() {
  size_ -= waiting_.front().memory;
  waiting_.pop_front();
  gone_ = 0;
  goneRuns_ = 0;
}

bool PaneQueue::takeClearing() {
  return std::exchange(hasDropped_, false) && !standIns_.empty() &&
         !std::holds_alternative<PlainText>(standIns_.front());
}

void PaneQueue::dropUnseen() {
  // Two more than the pane keeps: HTML may end its paragraphs elsewhere than was
  // counted, so the first ones that are shown may be incomplete.
  constexpr qint64 atBothEnds = 2;
  const qint64 outdated = ended_ - paragraphs_ - atBothEnds;
  if (outdated <= outdated_)
    return;
  outdated_ = outdated;
  const qsizetype before = size_;
  dropOutdated();
  if (size_ < before)
    qCInfo(paneLog) << "text dropped unseen, as newer text fills the pane, bytes:"
                    << before - size_;
}

void PaneQueue::dropOutdated() {
  while (!waiting_.empty() && waiting_.front().canBeDropped) {
    Waiting& first = waiting_.front();
    if (first.endedBefore >= outdated_ || (first.endedBehind >= outdated_ && cutFirst(outdated_)) ||
        first.endedBehind > outdated_)
      return;
    if (first.hasLook)
      standIns_.clear();
    else if (!standIns_.empty() && std::holds_alternative<PlainText>(standIns_.back()))
      standIns_.pop_back();
    if (auto* const styled = std::get_if<StyledText>(&first.text); styled && first.hasLook)
      standIns_.push_back(oneOf(styled->runs.back(), styled->text.back()));
    else if (first.hasLook || std::holds_alternative<PlainText>(first.text))
      standIns_.push_back(std::move(first.text));
    removeFirst();
    hasDropped_ = true;
  }
}

bool PaneQueue::cutFirst(qint64 number) {
  const Waiting& first = waiting_.front();
  const auto* const styled = std::get_if<StyledText>(&first.text);
  if (!styled)
    return false;
  ParagraphEnds ends(lengths_, first.lengthBefore);
  ParagraphEnds::End end{0, 0};
  for (qint64 i = first.endedBefore; i < number; ++i)
    end = ends.next(styled->text, end.behind()).value_or(end);
  if (end.behind() == 0 && !standIns_.empty()) {
    // The paragraph end is at the very start of this text, so its format is that of
    // the character before it, which has been dropped already.
    if (const auto* const before = std::get_if<StyledText>(&standIns_.back()))
      standIns_.push_back(oneOf(before->runs.back(), QChar::ParagraphSeparator));
  }
  if (end.behind() <= gone_)
    return true;
  const auto runAt = [styled](qsizetype place) {
    return std::find_if(styled->runs.begin(), styled->runs.end(),
                        [place](const StyledText::Run& run) { return run.end > place; });
  };
  standIns_ = {oneOf(*runAt(end.behind() - 1), QChar::ParagraphSeparator)};
  goneRuns_ = static_cast<std::size_t>(runAt(end.behind()) - styled->runs.begin());
  removeUpTo(end.behind());
  hasDropped_ = true;
  return true;
}

void PaneQueue::count(Waiting& waiting) {
  waiting.endedBefore = ended_;
  waiting.lengthBefore = ends_.length();
  std::visit(Overloaded{[&](const StyledText& styled) {
                          waiting.hasLook = !styled.text.isEmpty();
                          qsizetype behind = 0;
                          while (const auto end = ends_.next(styled.text, behind)) {
                            ++ended_;
                            behind = end->behind();
                          }
                        },
                        [&](const SafeHtml& html) { countMarkup(waiting, html); },
                        [&](const StatusLine& status) {
                          ++ended_;
                          ends_.beginAnew();
                          countMarkup(waiting, status.html);
                        },
                        [&](const PlainText& plain) {
                          const qint64 lines = plain.text.count(u'\n');
                          ended_ += lines;
                          if (lines > 0)
                            ends_.beginAnew();
                        }},
             waiting.text);
  waiting.endedBehind = ended_;
}

void PaneQueue::countMarkup(Waiting& waiting, const SafeHtml& html) {
  const MarkupFacts& facts = html.facts();
  waiting.hasLook = facts.hasText || facts.showsSomething();
  waiting.canBeDropped = facts.isInlineOnly && (!waiting.hasLook || facts.showsSomething());
  if (!facts.isInlineOnly)
    return ends_.beginAnew();
  for (std::size_t line = 0; line + 1 < facts.lines.size(); ++line)
    ended_ += ends_.endsWithLine(facts.lines[line]) ? 1 : 0;
  ends_.addCharacters(facts.lines.back());
}

}  // namespace kelmora::terminal
