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
#include "terminal/reading/ReadBack.h"
#include "terminal/reading/ReadBackView.h"

namespace kelmora::terminal {

namespace {

/// Milliseconds of looking before keys and paint have their turn.
constexpr int turnLength = 5;
/// Hits in one view that are marked in the text; nobody sees more.
constexpr int mostMarked = 500;

QTextEdit::ExtraSelection marked(QTextDocument& document, const PaneHits::Place& place,
                                 bool isCurrent) {
  QTextEdit::ExtraSelection selection;
  selection.cursor = QTextCursor(&document);
  selection.cursor.setPosition(place.start);
  selection.cursor.setPosition(place.end(), QTextCursor::KeepAnchor);
  selection.format.setBackground(isCurrent ? QColor(255, 150, 0) : QColor(110, 90, 0));
  selection.format.setForeground(isCurrent ? Qt::black : Qt::white);
  return selection;
}

}  // namespace

PaneFind::PaneFind(QTextBrowser& pane, ReadBack& readBack)
    : pane_(pane), readBack_(readBack), hits_(*pane.document()) {
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
  hits_.watch(document);
  connect(document_, &QTextDocument::contentsChange, this, &PaneFind::takeChange);
}

void PaneFind::takeDocument(QTextDocument& document) {
  // The toolkit would look for the marks in a document that is gone.
  unmark();
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
  hits_.look(std::move(finder));
  current_ = QTextCursor(document_);
  choosesNearest_ = true;
  turn_.start();
  takeTurn();
}

void PaneFind::takeChange(int from, int removed, int added) {
  hits_.takeChange(from, removed, added);
  if (origin_ && from == 0 && added == 0)
    origin_ = std::max(*origin_ - removed, 0);
  if (!turn_.isActive())
    turn_.start();
}

void PaneFind::takeTurn() {
  QElapsedTimer timer;
  timer.start();
  while (hits_.advance())
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

void PaneFind::chooseNearest() {
  if (count() == 0)
    return;
  if (!origin_)
    origin_ = readable().end();
  const auto behind = hits_.firstFrom(*origin_);
  makeCurrent(behind == hits_.places().begin() ? *behind : *std::prev(behind));
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
  if (count() == 0)
    return;
  origin_.reset();
  const bool hasOne = current_.hasSelection();
  const auto here =
      hits_.firstFrom(hasOne ? current_.selectionStart() : document_->characterCount());
  makeCurrent(here == hits_.places().begin() ? hits_.places().back() : *std::prev(here));
}

void PaneFind::goToNewer() {
  if (count() == 0)
    return;
  origin_.reset();
  const auto next = hits_.firstFrom(current_.hasSelection() ? current_.selectionEnd() : 0);
  makeCurrent(next == hits_.places().end() ? hits_.places().front() : *next);
}

std::size_t PaneFind::current() const {
  if (!current_.hasSelection())
    return 0;
  const auto here = hits_.firstFrom(current_.selectionStart());
  const bool isHit = here != hits_.places().end() && here->start == current_.selectionStart();
  return isHit ? static_cast<std::size_t>(here - hits_.places().begin()) + 1 : 0;
}

void PaneFind::makeCurrent(const Place& place) {
  current_.setPosition(place.start);
  current_.setPosition(place.end(), QTextCursor::KeepAnchor);
  const Place sight = readable();
  if (place.start < sight.start || place.end() > sight.end())
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
  for (auto hit = hits_.firstFrom(sight.start);
       hit != hits_.places().end() && hit->start <= sight.end(); ++hit)
    if (current_.hasSelection() && hit->start == current_.selectionStart())
      current = *hit;
    else if (selections.size() < mostMarked)
      selections << marked(*document_, *hit, false);
  if (current)
    selections << marked(*document_, *current, true);
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
  for (const Place& hit : hits_.places()) {
    if (!block.contains(hit.start))
      block = document_->findBlock(hit.start);
    places.push_back(layout.topOf(block, hit.start - block.position()) / whole);
  }
  marks_->setPlaces(std::move(places));
}

}  // namespace kelmora::terminal
