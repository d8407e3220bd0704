#include "terminal/reading/PaneHits.h"

#include <QTextBlock>
#include <algorithm>
#include <utility>
#include <vector>

namespace kelmora::terminal {

void PaneHits::look(TextFinder finder) {
  finder_ = std::move(finder);
  places_.clear();
  lookedFrom_ = lookedTo_ = document_->lastBlock().position();
}

void PaneHits::takeChange(int from, int removed, int added) {
  if (from == 0 && added == 0) {
    // Paragraphs dropped at the top; the others have moved up.
    while (!places_.empty() && places_.front().start < removed)
      places_.pop_front();
    for (Place& hit : places_)
      hit.start -= removed;
    lookedFrom_ = std::max(lookedFrom_ - removed, 0);
    lookedTo_ = std::max(lookedTo_ - removed, 0);
    return;
  }
  const int start = document_->findBlock(from).position();
  while (!places_.empty() && places_.back().start >= start)
    places_.pop_back();
  lookedFrom_ = std::min(lookedFrom_, start);
  lookedTo_ = std::min(lookedTo_, start);
}

bool PaneHits::lookDown() {
  // The end of the last paragraph is where the next text comes.
  const int end = document_->characterCount() - 1;
  if (lookedTo_ >= end)
    return false;
  const QTextBlock block = document_->findBlock(lookedTo_);
  for (const TextFinder::Hit& hit : finder_.hitsIn(block.text()))
    places_.push_back({.start = block.position() + static_cast<int>(hit.start),
                       .length = static_cast<int>(hit.length)});
  lookedTo_ = block.next().isValid() ? block.next().position() : end;
  while (places_.size() > most) {
    places_.pop_front();
    lookedFrom_ = places_.front().start;
  }
  return true;
}

bool PaneHits::lookUp() {
  if (lookedFrom_ == 0 || places_.size() >= most)
    return false;
  const QTextBlock block = document_->findBlock(lookedFrom_ - 1);
  const std::vector<TextFinder::Hit> found = finder_.hitsIn(block.text());
  for (auto hit = found.rbegin(); hit != found.rend() && places_.size() < most; ++hit) {
    const int start = block.position() + static_cast<int>(hit->start);
    if (start < lookedFrom_)
      places_.push_front({.start = start, .length = static_cast<int>(hit->length)});
  }
  lookedFrom_ = places_.size() < most ? block.position() : places_.front().start;
  return true;
}

PaneHits::Places::const_iterator PaneHits::firstFrom(int position) const {
  return std::partition_point(places_.begin(), places_.end(),
                              [position](const Place& hit) { return hit.start < position; });
}

}  // namespace kelmora::terminal
