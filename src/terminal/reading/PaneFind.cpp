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
  watchDocument();
}

PaneFind::~PaneFind() {
  delete marks_;
  pane_.setExtraSelections({});
  if (readBack_.isOpen())
    readBack_.view()->setExtraSelections({});
}

void PaneFind::watchBar(const QTextBrowser& view) {
  connect(view.verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { showLater(); });
}

void PaneFind::watchDocument() {
  if (document_ == pane_.document())
    return;
  // What has taken the place of the last one has the same text.
  const int anchor = current_.anchor();
  const int position = current_.position();
  const bool hadOne = document_ && current_.hasSelection();
  document_ = pane_.document();
  current_ = QTextCursor(document_);
  if (hadOne) {
    current_.setPosition(anchor);
    current_.setPosition(position, QTextCursor::KeepAnchor);
  }
  connect(document_, &QTextDocument::contentsChange, this, &PaneFind::takeChange);
}

void PaneFind::look(TextFinder finder) {
  finder_ = std::move(finder);
  hits_.clear();
  looked_ = 0;
  current_.clearSelection();
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
    looked_ = std::max(looked_ - removed, 0);
  } else {
    const int start = document_->findBlock(from).position();
    while (!hits_.empty() && hits_.back().start >= start)
      hits_.pop_back();
    looked_ = std::min(looked_, start);
  }
  if (!turn_.isActive())
    turn_.start();
}

void PaneFind::takeTurn() {
  watchDocument();
  QElapsedTimer timer;
  timer.start();
  QTextBlock block = document_->findBlock(looked_);
  while (block.isValid() && hits_.size() < mostHits && timer.elapsed() < turnLength) {
    for (const TextFinder::Hit& hit : finder_.hitsIn(block.text()))
      if (hits_.size() < mostHits)
        hits_.push_back({.start = block.position() + static_cast<int>(hit.start),
                         .length = static_cast<int>(hit.length)});
    block = block.next();
    // The end of the last paragraph is where the next text comes.
    looked_ = block.isValid() ? block.position() : document_->characterCount() - 1;
  }
  if (block.isValid() && hits_.size() < mostHits)
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

PaneFind::Places::const_iterator PaneFind::firstFrom(int position) const {
  return std::partition_point(hits_.begin(), hits_.end(),
                              [position](const Place& hit) { return hit.start < position; });
}

void PaneFind::chooseNearest() {
  if (hits_.empty())
    return;
  const Place sight = inSight(reader());
  const auto behind = firstFrom(sight.start + sight.length);
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
  const bool hasOne = current_.hasSelection();
  const auto here = firstFrom(hasOne ? current_.selectionStart() : document_->characterCount());
  makeCurrent(here == hits_.begin() ? hits_.back() : *std::prev(here));
}

void PaneFind::goToNewer() {
  if (hits_.empty())
    return;
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
  // Some lines before the hit are to be read as well, and half a line is not.
  const int line = QFontMetrics(pane_.font()).lineSpacing();
  const Place sight = inSight(reader(), std::max(3 * line, covered_), line);
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
  if (document_ != pane_.document())
    return;  // until the next turn
  showHitsIn(pane_);
  if (readBack_.isOpen())
    showHitsIn(*readBack_.view());
  showMarks();
}

void PaneFind::showHitsIn(QTextBrowser& view) const {
  const Place sight = inSight(view);
  QList<QTextEdit::ExtraSelection> selections;
  for (auto hit = firstFrom(sight.start);
       hit != hits_.end() && hit->start <= sight.start + sight.length &&
       selections.size() < mostMarked;
       ++hit)
    selections << marked(*document_, hit->start, hit->start + hit->length,
                         current_.hasSelection() && hit->start == current_.selectionStart());
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
  int lastBlock = -1;
  for (const Place& hit : hits_) {
    const QTextBlock block = document_->findBlock(hit.start);
    if (std::exchange(lastBlock, block.blockNumber()) != block.blockNumber())
      places.push_back(layout.topOf(block) / whole);
  }
  marks_->setPlaces(std::move(places));
}

}  // namespace kelmora::terminal
