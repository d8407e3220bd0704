#include "terminal/view/PaneQueue.h"

#include <algorithm>
#include <utility>

namespace kelmora::terminal {

namespace {

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
// Older compilers do not deduce this by themselves.
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

qsizetype sizeOf(const QString& text) {
  return text.size() * static_cast<qsizetype>(sizeof(QChar));
}

qsizetype memoryOf(const PaneText& text) {
  constexpr qsizetype overhead = 256;
  return overhead +
         std::visit(Overloaded{[](const StyledText& styled) {
                                 return sizeOf(styled.text) +
                                        static_cast<qsizetype>(styled.runs.size() *
                                                               sizeof(StyledText::Run));
                               },
                               [](const SafeHtml& html) { return sizeOf(html.html()); },
                               [](const StatusLine& status) { return sizeOf(status.html.html()); },
                               [](const PlainText& plain) { return sizeOf(plain.text); }},
                    text);
}

/// A character that looks as the run does.
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
  if (!bridge_.empty())
    return takeBridge();
  const auto* const styled = std::get_if<StyledText>(&waiting_.front().text);
  if (styled && (gone_ > 0 || styled->text.size() > sliceLength))
    return nextSlice();
  return takeFirst();
}

PaneText PaneQueue::takeBridge() {
  PaneText first = std::move(bridge_.front());
  bridge_.pop_front();
  return first;
}

PaneText PaneQueue::takeFirst() {
  PaneText first = std::move(waiting_.front().text);
  dropFirst();
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
  leaveOut(end);
  return slice;
}

void PaneQueue::leaveOut(qsizetype end) {
  Waiting& first = waiting_.front();
  const qsizetype memory = (end - gone_) * static_cast<qsizetype>(sizeof(QChar));
  first.memory -= memory;
  size_ -= memory;
  gone_ = end;
  if (gone_ == std::get<StyledText>(first.text).text.size())
    dropFirst();
}

void PaneQueue::dropFirst() {
  size_ -= waiting_.front().memory;
  waiting_.pop_front();
  gone_ = 0;
  goneRuns_ = 0;
}

bool PaneQueue::takeSkip() {
  return std::exchange(skipped_, false) && !bridge_.empty() &&
         !std::holds_alternative<PlainText>(bridge_.front());
}

void PaneQueue::dropUnseen() {
  // Where HTML counts fewer paragraphs than it has, the pane may start afresh
  // in the middle of one, and of what is shown next.
  constexpr qint64 atBothEnds = 2;
  const qint64 unseen = ended_ - paragraphs_ - atBothEnds;
  if (unseen <= unseen_)
    return;
  unseen_ = unseen;
  while (!waiting_.empty() && waiting_.front().isPassing) {
    Waiting& first = waiting_.front();
    if (first.endedBefore >= unseen || (first.endedBehind >= unseen && cutFirst(unseen)) ||
        first.endedBehind > unseen)
      return;
    if (first.hasLook)
      bridge_.clear();
    else if (!bridge_.empty() && std::holds_alternative<PlainText>(bridge_.back()))
      bridge_.pop_back();
    if (auto* const styled = std::get_if<StyledText>(&first.text); styled && first.hasLook)
      bridge_.push_back(oneOf(styled->runs.back(), styled->text.back()));
    else if (first.hasLook || std::holds_alternative<PlainText>(first.text))
      bridge_.push_back(std::move(first.text));
    dropFirst();
    skipped_ = true;
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
  if (end.behind() == 0 && !bridge_.empty()) {
    // It looks as the last character before it.
    if (const auto* const before = std::get_if<StyledText>(&bridge_.back()))
      bridge_.push_back(oneOf(before->runs.back(), QChar::ParagraphSeparator));
  }
  if (end.behind() <= gone_)
    return true;
  const auto runAt = [styled](qsizetype place) {
    return std::find_if(styled->runs.begin(), styled->runs.end(),
                        [place](const StyledText::Run& run) { return run.end > place; });
  };
  bridge_ = {oneOf(*runAt(end.behind() - 1), QChar::ParagraphSeparator)};
  goneRuns_ = static_cast<std::size_t>(runAt(end.behind()) - styled->runs.begin());
  leaveOut(end.behind());
  skipped_ = true;
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
  waiting.isPassing = facts.isInlineOnly && (!waiting.hasLook || facts.showsSomething());
  if (!facts.isInlineOnly)
    return ends_.beginAnew();
  for (std::size_t line = 0; line + 1 < facts.lines.size(); ++line)
    ended_ += ends_.endsWithLine(facts.lines[line]) ? 1 : 0;
  ends_.addCharacters(facts.lines.back());
}

}  // namespace kelmora::terminal
