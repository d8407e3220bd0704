#include "terminal/view/PaneSight.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "terminal/view/PaneLayout.h"

namespace kelmora::terminal {

PaneSight::Change::Change(PaneSight& sight, Keeps keeps) : sight_(sight) {
  if (sight_.depth_++ == 0)
    sight_.begin(keeps);
  else if (keeps == Keeps::Nothing)
    sight_.keeps_ = keeps;
}

PaneSight::Change::~Change() {
  if (sight_.depth_ == 1)
    sight_.end();
  --sight_.depth_;
}

PaneSight::PaneSight(QTextEdit& pane) : pane_(pane) {
  const QScrollBar& bar = *pane_.verticalScrollBar();
  QObject::connect(&bar, &QScrollBar::valueChanged, &bars_, [this] { noteBar(); });
  QObject::connect(&bar, &QScrollBar::rangeChanged, &bars_, [this] {
    if (follows_ && depth_ == 0)
      pane_.verticalScrollBar()->setValue(pane_.verticalScrollBar()->maximum());
  });
}

PaneLayout& PaneSight::layout() const {
  return *static_cast<PaneLayout*>(pane_.document()->documentLayout());
}

void PaneSight::noteBar() {
  const QScrollBar& bar = *pane_.verticalScrollBar();
  // Below the last line there is only the margin.
  if (depth_ == 0)
    follows_ = bar.maximum() - bar.value() <= pane_.document()->documentMargin();
}

void PaneSight::begin(Keeps keeps) {
  keeps_ = keeps;
  const int top = pane_.verticalScrollBar()->value();
  shown_ = top;
  // Kept from change to change: one may begin in the middle of an edit, where no
  // cursor can go.
  const bool isOther = topLine_.isNull() || topLine_.document() != pane_.document();
  if (isOther)
    takeCursors();
  // Nobody has scrolled since: from one line's first character to the next one's
  // the sight would creep up while the window is dragged.
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
  // A document that has taken the place of another has the same text.
  if (topLine_.isNull() || topLine_.document() != pane_.document()) {
    takeCursors();
    topLine_.setPosition(topPosition_);
  }
  // The size may bring a bar or take it away, and so change the width.
  constexpr int rounds = 3;
  qreal top = 0;
  for (int round = 0; round < rounds; ++round) {
    const int height = pane_.viewport()->height();
    do
      top = wantedTop();
    while (layout().layOut(top, top + height));
    const QSize before = pane_.viewport()->size();
    layout().tellSize();
    if (pane_.viewport()->size() == before)
      break;
    keeps_ = Keeps::Nothing;
  }
  QScrollBar& bar = *pane_.verticalScrollBar();
  // Bars that moved on the way led updates to other places than what is painted.
  if (bar.value() != shown_ || pane_.horizontalScrollBar()->value() != across_)
    keeps_ = Keeps::Nothing;
  bar.setValue(static_cast<int>(std::lround(top)));
  shown_ = bar.value();
  repaint(shown_);
  layout().keepNear(top, top + pane_.viewport()->height());
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
  // Alignment is one for a paragraph.
  if (block.blockFormat().propertyCount() > 0 || block.textDirection() == Qt::RightToLeft)
    return top;
  // The word that ended the text may have grown, and gone into the next line.
  const QTextLine line = block.layout()->lineForTextPosition(textEnd_.positionInBlock());
  return line.lineNumber() > 0 ? top + block.layout()->lineAt(line.lineNumber() - 1).y() : top;
}

void PaneSight::layOutForPaint() {
  if (isChanging())
    return;
  QScrollBar& bar = *pane_.verticalScrollBar();
  const int before = bar.value();
  const int height = pane_.viewport()->height();
  // What stands on the screen already stays there, and what comes in sight above
  // it may bring more in sight by being lower than was thought.
  const QTextBlock drawn = layout().firstLaidOut(std::max(before, shown_), before + height);
  const qreal drawnTop = layout().topOf(drawn);
  long wanted = before;
  ++depth_;
  // In a pane that is hardly wider than a bar, the bar may come and go for ever.
  constexpr int rounds = 8;
  for (int round = 0; round < rounds && layout().layOut(bar.value(), bar.value() + height);
       ++round) {
    layout().tellSize();
    const qreal shift = drawn.isValid() ? layout().topOf(drawn) - drawnTop : 0;
    wanted = std::lround(before + shift);
    bar.setValue(follows_ ? bar.maximum() : static_cast<int>(wanted));
  }
  if (drawn.isValid() && bar.value() != wanted)
    pane_.viewport()->update();
  shown_ = bar.value();
  layout().keepNear(shown_, shown_ + height);
  --depth_;
}

bool PaneSight::refine(int milliseconds) {
  const Change change(*this, Keeps::Text);
  return layout().refine(milliseconds);
}

}  // namespace kelmora::terminal
