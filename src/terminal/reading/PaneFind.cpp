#include "terminal/reading/PaneFind.h"

#include <QElapsedTimer>
#include <QFontMetrics>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <algorithm>
#include <array>
#include <utility>

#include "terminal/layout/PaneLayout.h"
#include "terminal/reading/BarMarks.h"
#include "terminal/reading/PaneSight.h"
#include "terminal/reading/ReadBack.h"
#include "terminal/reading/ReadBackView.h"

namespace kelmora::terminal {

namespace {

/// Milliseconds of looking before keys and paint have their turn.
constexpr int turnLength = 5;
/// Hits in one view that are marked in the text; nobody sees more.
constexpr int mostMarked = 500;

QTextEdit::ExtraSelection marked(QTextDocument& document, int start, int end, bool isCurrent) {
  QTextEdit::ExtraSelection selection;
  selection.cursor = QTextCursor(&document);
  selection.cursor.setPosition(start);
  selection.cursor.setPosition(end, QTextCursor::KeepAnchor);
  selection.format.setBackground(isCurrent ? QColor(255, 150, 0) : QColor(110, 90, 0));
  selection.format.setForeground(isCurrent ? Qt::black : Qt::white);
  return selection;
}

}  // namespace

PaneFind::PaneFind(QTextBrowser& pane, PaneSight& sight, ReadBack& readBack)
    : pane_(pane), sight_(sight), readBack_(readBack) {
  turn_.setInterval(0);
  connect(&turn_, &QTimer::timeout, this, [this] { takeTurn(); });
  shows_.setSingleShot(true);
  connect(&shows_, &QTimer::timeout, this, [this] { show(); });
  watchBar(pane_);
  connect(&readBack_, &ReadBack::opened, this, [this] {
    watchBar(*readBack_.view());
    showLater();
  });
  connect(&readBack_, &ReadBack::closed, this, [this] { showLater(); });
  if (readBack_.isOpen())
    watchBar(*readBack_.view());
  watchDocument(*pane_.document());
}

PaneFind::~PaneFind() {
  delete marks_;
  unmark();
}

void PaneFind::watchBar(const QTextBrowser& view) {
  const QScrollBar* const bar = view.verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this, [this] { showLater(); });
  connect(bar, &QScrollBar::rangeChanged, this, [this] { showLater(); });
  // Wheel, bar and keys; not what the program moves.
  connect(bar, &QScrollBar::actionTriggered, this, [this] { origin_.reset(); });
}

void PaneFind::watchDocument(QTextDocument& document) {
  document_ = &document;
  connect(document_, &QTextDocument::contentsChange, this, &PaneFind::takeChange);
}

void PaneFind::takeDocument(QTextDocument& document) {
  // The toolkit would look for the marks in a document that is gone.
  unmark();
  // It has the same text.
  QTextCursor current(&document);
  if (current_.hasSelection()) {
    current.setPosition(current_.anchor());
    current.setPosition(current_.position(), QTextCursor::KeepAnchor);
  }
  current_ = current;
  disconnect(document_, nullptr, this, nullptr);
  watchDocument(document);
  showLater();
}

void PaneFind::look(TextFinder finder) {
  finder_ = std::move(finder);
  hits_.clear();
  lookedFrom_ = lookedTo_ = document_->lastBlock().position();
  current_ = QTextCursor(document_);
  choosesNearest_ = true;
  turn_.start();
  takeTurn();
}

void PaneFind::takeChange(int from, int removed, int added) {
  if (from == 0 && added == 0) {
    // Paragraphs dropped at the top; the others have moved up.
    while (!hits_.empty() && hits_.front().start < removed)
      hits_.pop_front();
    for (Place& hit : hits_)
      hit.start -= removed;
    for (int* const place : {&lookedFrom_, &lookedTo_})
      *place = std::max(*place - removed, 0);
    if (origin_)
      origin_ = std::max(*origin_ - removed, 0);
  } else {
    const int start = document_->findBlock(from).position();
    while (!hits_.empty() && hits_.back().start >= start)
      hits_.pop_back();
    lookedTo_ = std::min(lookedTo_, start);
    lookedFrom_ = std::min(lookedFrom_, start);
  }
  if (!turn_.isActive())
    turn_.start();
}

bool PaneFind::lookDown() {
  // The end of the last paragraph is where the next text comes.
  const int end = document_->characterCount() - 1;
  if (lookedTo_ >= end)
    return false;
  const QTextBlock block = document_->findBlock(lookedTo_);
  for (const TextFinder::Hit& hit : finder_.hitsIn(block.text()))
    hits_.push_back({.start = block.position() + static_cast<int>(hit.start),
                     .length = static_cast<int>(hit.length)});
  lookedTo_ = block.next().isValid() ? block.next().position() : end;
  while (hits_.size() > mostHits) {
    hits_.pop_front();
    lookedFrom_ = hits_.front().start;
  }
  return true;
}

bool PaneFind::lookUp() {
  if (lookedFrom_ == 0 || hits_.size() >= mostHits)
    return false;
  const QTextBlock block = document_->findBlock(lookedFrom_ - 1);
  const std::vector<TextFinder::Hit> found = finder_.hitsIn(block.text());
  for (auto hit = found.rbegin(); hit != found.rend() && hits_.size() < mostHits; ++hit) {
    const int start = block.position() + static_cast<int>(hit->start);
    if (start < lookedFrom_)
      hits_.push_front({.start = start, .length = static_cast<int>(hit->length)});
  }
  lookedFrom_ = hits_.size() < mostHits ? block.position() : hits_.front().start;
  return true;
}

void PaneFind::takeTurn() {
  QElapsedTimer timer;
  timer.start();
  while (lookDown() || lookUp())
    if (timer.elapsed() >= turnLength)
      return;
  turn_.stop();
  if (std::exchange(choosesNearest_, false))
    chooseNearest();
  showLater();
  Q_EMIT counted();
}

QTextBrowser& PaneFind::reader() const {
  return readBack_.isOpen() ? *readBack_.view() : pane_;
}

PaneFind::Place PaneFind::inSight(const QTextBrowser& view, int above, int below) {
  const QRect sight = view.viewport()->rect().adjusted(0, above, 0, -below);
  const int start = view.cursorForPosition(sight.topLeft()).position();
  const int end = view.cursorForPosition(sight.bottomRight()).position();
  return {.start = start, .length = std::max(end - start, 0)};
}

PaneFind::Place PaneFind::readable() const {
  // Some lines before a hit are to be read as well, and half a line is not. At the end
  // the last line is whole.
  const int line = QFontMetrics(pane_.font()).lineSpacing();
  const QScrollBar& bar = *reader().verticalScrollBar();
  return inSight(reader(), std::max(3 * line, covered_), bar.value() == bar.maximum() ? 0 : line);
}

PaneFind::Places::const_iterator PaneFind::firstFrom(int position) const {
  return std::partition_point(hits_.begin(), hits_.end(),
                              [position](const Place& hit) { return hit.start < position; });
}

void PaneFind::chooseNearest() {
  if (hits_.empty())
    return;
  if (!origin_) {
    const Place sight = readable();
    origin_ = sight.start + sight.length;
  }
  const auto behind = firstFrom(*origin_);
  makeCurrent(behind == hits_.begin() ? *behind : *std::prev(behind));
}

QString PaneFind::currentLine() const {
  if (current() == 0)
    return {};
  const QTextBlock block = document_->findBlock(current_.selectionStart());
  const QString paragraph = block.text();
  const int place = current_.selectionStart() - block.position();
  const QString line = paragraph.left(place).section(QChar::LineSeparator, -1) +
                       paragraph.mid(place).section(QChar::LineSeparator, 0, 0);
  return line.simplified();
}

void PaneFind::goToOlder() {
  if (hits_.empty())
    return;
  origin_.reset();
  const bool hasOne = current_.hasSelection();
  const auto here = firstFrom(hasOne ? current_.selectionStart() : document_->characterCount());
  makeCurrent(here == hits_.begin() ? hits_.back() : *std::prev(here));
}

void PaneFind::goToNewer() {
  if (hits_.empty())
    return;
  origin_.reset();
  const auto next = firstFrom(current_.hasSelection() ? current_.selectionEnd() : 0);
  makeCurrent(next == hits_.end() ? hits_.front() : *next);
}

std::size_t PaneFind::current() const {
  if (!current_.hasSelection())
    return 0;
  const auto here = firstFrom(current_.selectionStart());
  const bool isHit = here != hits_.end() && here->start == current_.selectionStart();
  return isHit ? static_cast<std::size_t>(here - hits_.begin()) + 1 : 0;
}

void PaneFind::makeCurrent(const Place& place) {
  current_.setPosition(place.start);
  current_.setPosition(place.start + place.length, QTextCursor::KeepAnchor);
  const Place sight = readable();
  if (place.start < sight.start || place.start + place.length > sight.start + sight.length)
    readBack_.goTo(place.start);
  showLater();
  Q_EMIT counted();
}

void PaneFind::showLater() {
  if (!shows_.isActive())
    shows_.start(0);
}

void PaneFind::show() {
  showHitsIn(pane_);
  if (readBack_.isOpen())
    showHitsIn(*readBack_.view());
  showMarks();
}

void PaneFind::unmark() {
  pane_.setExtraSelections({});
  if (readBack_.isOpen())
    readBack_.view()->setExtraSelections({});
}

void PaneFind::showHitsIn(QTextBrowser& view) const {
  const Place sight = inSight(view);
  QList<QTextEdit::ExtraSelection> selections;
  // The current one above all, and even where there are too many.
  std::optional<Place> current;
  for (auto hit = firstFrom(sight.start);
       hit != hits_.end() && hit->start <= sight.start + sight.length; ++hit)
    if (current_.hasSelection() && hit->start == current_.selectionStart())
      current = *hit;
    else if (selections.size() < mostMarked)
      selections << marked(*document_, hit->start, hit->start + hit->length, false);
  if (current)
    selections << marked(*document_, current->start, current->start + current->length, true);
  const auto isSame = [](const QTextEdit::ExtraSelection& one,
                         const QTextEdit::ExtraSelection& other) {
    return one.cursor == other.cursor && one.cursor.anchor() == other.cursor.anchor() &&
           one.format == other.format;
  };
  const auto before = view.extraSelections();
  if (!std::equal(before.begin(), before.end(), selections.begin(), selections.end(), isSame))
    view.setExtraSelections(selections);
}

void PaneFind::showMarks() {
  QScrollBar& bar = *reader().verticalScrollBar();
  if (!marks_ || marks_->parentWidget() != &bar) {
    delete marks_;
    marks_ = new BarMarks(bar);
  }
  const auto& layout = *static_cast<const PaneLayout*>(document_->documentLayout());
  const double whole = std::max(layout.documentSize().height(), 1.0);
  std::vector<double> places;
  QTextBlock block;
  for (const Place& hit : hits_) {
    if (!block.contains(hit.start))
      block = document_->findBlock(hit.start);
    places.push_back(layout.topOf(block, hit.start - block.position()) / whole);
  }
  marks_->setPlaces(std::move(places));
}

}  // namespace kelmora::terminal
