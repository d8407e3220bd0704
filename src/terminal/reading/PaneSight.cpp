#include "terminal/reading/PaneSight.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <vector>

#include "terminal/layout/PaneLayout.h"

namespace kelmora::terminal {

PaneSight::Change::Change(PaneSight& sight, Keeps keeps) : sight_(sight) {
  for (PaneSight* one : sight_.all())
    if (one)
      one->enter(keeps);
}

PaneSight::Change::~Change() {
  for (PaneSight* one : sight_.all())
    if (one)
      one->leave();
}

std::array<PaneSight*, 2> PaneSight::all() {
  if (followed_)
    return {this, followed_};
  return {reader_, this};
}

void PaneSight::enter(Keeps keeps) {
  if (depth_++ == 0)
    begin(keeps);
  else if (keeps == Keeps::Nothing)
    keeps_ = keeps;
}

void PaneSight::leave() {
  if (depth_ == 1)
    end();
  --depth_;
}

void PaneSight::goTo(int position) {
  {
    const Change change(*this);
    follows_ = false;
    topLine_.setPosition(position);
    topPosition_ = position;
    above_ = -pane_.viewport()->height() / 3.0;
  }
  noteBar();
}

void PaneSight::goWith(PaneSight& reader) {
  if (reader_ != &reader) {
    reader_ = &reader;
    reader.followed_ = this;
    reader.depth_ = depth_;
    reader.begin(Keeps::Nothing);
  }
  reader.keeps_ = Keeps::Nothing;
  reader.follows_ = false;
  reader.topLine_.setPosition(topLine_.position());
  reader.topPosition_ = topPosition_;
  reader.above_ = above_;
}

void PaneSight::goAlone(PaneSight& reader) {
  if (reader_ != &reader)
    return;
  reader_ = nullptr;
  reader.followed_ = nullptr;
}

PaneSight::PaneSight(QTextEdit& pane) : pane_(pane) {
  const QScrollBar& bar = *pane_.verticalScrollBar();
  QObject::connect(&bar, &QScrollBar::valueChanged, &connections_, [this] { noteBar(); });
  QObject::connect(&bar, &QScrollBar::rangeChanged, &connections_, [this] {
    if (follows_ && depth_ == 0)
      pane_.verticalScrollBar()->setValue(pane_.verticalScrollBar()->maximum());
  });
}

PaneLayout& PaneSight::layout() const {
  return *static_cast<PaneLayout*>(pane_.document()->documentLayout());
}

void PaneSight::noteBar() {
  const QScrollBar& bar = *pane_.verticalScrollBar();
  // The last line is in sight even if the margin below it is not.
  if (depth_ == 0)
    follows_ = bar.maximum() - bar.value() <= pane_.document()->documentMargin();
}

void PaneSight::begin(Keeps keeps) {
  keeps_ = keeps;
  const int top = pane_.verticalScrollBar()->value();
  shown_ = top;
  // The cursors are kept between changes: a change may begin in the middle of an
  // edit, when a new cursor could not be placed.
  const bool isOther = topLine_.isNull() || topLine_.document() != pane_.document();
  if (isOther)
    takeCursors();
  // The top line is looked for anew only if the player has scrolled. Otherwise
  // small errors would add up, and the text would creep while the window is resized.
  if (isOther || std::lround(lineTop(topLine_.position()) + above_) != top)
    topLine_.setPosition(layout().hitTest(QPointF(0, top), Qt::FuzzyHit));
  above_ = top - lineTop(topLine_.position());
  across_ = pane_.horizontalScrollBar()->value();
  textEnd_.setPosition(pane_.document()->characterCount() - 1);
  topPosition_ = topLine_.position();
}

void PaneSight::takeCursors() {
  topLine_ = QTextCursor(pane_.document());
  textEnd_ = QTextCursor(pane_.document());
  textEnd_.setKeepPositionOnInsert(true);
}

void PaneSight::end() {
  // If the document has been replaced, the new one has the same text.
  if (topLine_.isNull() || topLine_.document() != pane_.document()) {
    takeCursors();
    topLine_.setPosition(topPosition_);
  }
  // The signal of a new size may show or hide a scroll bar, which changes the width.
  constexpr int rounds = 3;
  qreal top = 0;
  for (int round = 0; round < rounds; ++round) {
    const int height = pane_.viewport()->height();
    do
      top = wantedTop();
    while (layout().layOut(top, top + height));
    const QSize before = pane_.viewport()->size();
    layout().emitSizeChange();
    if (pane_.viewport()->size() == before)
      break;
    keeps_ = Keeps::Nothing;
  }
  QScrollBar& bar = *pane_.verticalScrollBar();
  // If a bar has moved, the updates that were requested meanwhile are for the wrong
  // places.
  if (bar.value() != shown_ || pane_.horizontalScrollBar()->value() != across_)
    keeps_ = Keeps::Nothing;
  bar.setValue(static_cast<int>(std::lround(top)));
  shown_ = bar.value();
  // In a pane that shows all, the newest line is in sight.
  if (bar.maximum() == 0)
    follows_ = true;
  repaint(shown_);
  keepNear();
}

void PaneSight::keepNear() {
  std::vector<PaneLayout::Stretch> seen;
  for (const PaneSight* one : all())
    if (one)
      seen.push_back({.top = static_cast<qreal>(one->shown_),
                      .bottom = static_cast<qreal>(one->shown_ + one->pane_.viewport()->height())});
  layout().keepNear(seen);
}

qreal PaneSight::wantedTop() const {
  const qreal most =
      std::max<qreal>(layout().documentSize().height() - pane_.viewport()->height(), 0);
  return follows_ ? most : std::clamp<qreal>(lineTop(topLine_.position()) + above_, 0, most);
}

qreal PaneSight::lineTop(int position) const {
  const QTextBlock block = pane_.document()->findBlock(position);
  const qreal top = layout().blockBoundingRect(block).top();
  const QTextLine line = block.layout()->lineForTextPosition(position - block.position());
  return line.isValid() ? top + line.y() : top;
}

void PaneSight::repaint(int top) {
  QWidget& viewport = *pane_.viewport();
  const qreal moved = lineTop(topLine_.position()) + above_ - top;
  const bool isTopGone = topLine_.position() == 0 && top > 0;
  if (keeps_ == Keeps::Nothing || isTopGone || std::abs(moved) >= viewport.height() ||
      moved != std::floor(moved)) {
    viewport.update();
    return;
  }
  if (moved != 0)
    viewport.scroll(0, static_cast<int>(moved));
  if (textEnd_.atEnd())
    return;
  const int changed = static_cast<int>(std::floor(changedTop())) - top;
  if (changed < viewport.height())
    viewport.update(0, changed, viewport.width(), viewport.height() - changed);
}

qreal PaneSight::changedTop() const {
  const QTextBlock block = textEnd_.block();
  const qreal top = layout().blockBoundingRect(block).top();
  // More text may shift all of a paragraph that is not aligned to the left.
  if (block.blockFormat().propertyCount() > 0 || block.textDirection() == Qt::RightToLeft)
    return top;
  // The last word may have been completed and wrapped, so its line may have changed
  // and the one before as well.
  const QTextLine line = block.layout()->lineForTextPosition(textEnd_.positionInBlock());
  return line.lineNumber() > 0 ? top + block.layout()->lineAt(line.lineNumber() - 1).y() : top;
}

void PaneSight::layOutForPaint() {
  if (isChanging())
    return;
  QScrollBar& bar = *pane_.verticalScrollBar();
  const int before = bar.value();
  const int height = pane_.viewport()->height();
  // What is on the screen already stays where it is. Lines that appear above it may
  // be lower than estimated, and then even more of them appear.
  const QTextBlock drawn = layout().firstLaidOut(std::max(before, shown_), before + height);
  const qreal drawnTop = layout().topOf(drawn);
  long wanted = before;
  ++depth_;
  // In a pane hardly wider than a scroll bar, the bar might appear and disappear for
  // ever; therefore the limit.
  constexpr int rounds = 8;
  for (int round = 0; round < rounds && layout().layOut(bar.value(), bar.value() + height);
       ++round) {
    layout().emitSizeChange();
    const qreal shift = drawn.isValid() ? layout().topOf(drawn) - drawnTop : 0;
    wanted = std::lround(before + shift);
    bar.setValue(follows_ ? bar.maximum() : static_cast<int>(wanted));
  }
  if (drawn.isValid() && bar.value() != wanted)
    pane_.viewport()->update();
  shown_ = bar.value();
  keepNear();
  --depth_;
}

bool PaneSight::refine(int milliseconds) {
  const Change change(*this, Keeps::Text);
  return layout().refine(milliseconds);
}

}  // namespace kelmora::terminal
