#include "terminal/layout/PaneLayout.h"

#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>
#include <utility>

#include "terminal/layout/BlockLines.h"

namespace kelmora::terminal {

namespace {

/// Whether a point is on a line's text, or at the edge where an empty line begins.
bool holds(const QTextLine& line, const QPointF& point) {
  const QRectF text = line.naturalTextRect();
  return point.x() >= text.left() && point.x() <= text.right() && point.y() >= text.top() &&
         point.y() <= text.bottom();
}

}  // namespace

PaneLayout::PaneLayout(QTextDocument& document)
    : QAbstractTextDocumentLayout(&document), rows_(document) {}

bool PaneLayout::isReady() const {
  return !document()->pageSize().isNull();
}

// ---- the toolkit's interface ------------------------------------------------

QSizeF PaneLayout::documentSize() const {
  if (!isReady())
    return {};
  const qreal margin = document()->documentMargin();
  const BlockRows::Row& last = rows_.last();
  return {std::max(document()->pageSize().width(), last.widest + 2 * margin), last.bottom + margin};
}

QRectF PaneLayout::frameBoundingRect(QTextFrame* /*frame*/) const {
  return {QPointF(0, 0), documentSize()};
}

QRectF PaneLayout::blockBoundingRect(const QTextBlock& block) const {
  if (!isReady() || !block.isValid())
    return {};
  // Laying out on demand does not change what the document says, so it may be done
  // in a const function.
  auto& self = const_cast<PaneLayout&>(*this);
  const bool isPlaced = !rows_.isWriting() && !isStepOfWalk(block);
  if (isPlaced && rows_.place(block))
    self.emitChange(rows_.rowOf(block).top);
  const BlockRows::Row& row = rows_.rowOf(block);
  const QPointF corner(document()->documentMargin(), row.top);
  if (isPlaced)
    block.layout()->setPosition(corner);
  return isPlaced ? QRectF(corner, block.layout()->boundingRect().size())
                  : QRectF(corner, QSizeF(rows_.contentWidth(), row.bottom - row.top));
}

bool PaneLayout::isStepOfWalk(const QTextBlock& block) const {
  // To find the link under the mouse, the toolkit calls hitTest() and then asks for
  // the rectangle of every block from the first down to the one hit. Laying them all
  // out for that would take a second, so they are answered with estimates.
  if (nextStep_ >= 0 && block.blockNumber() == nextStep_) {
    ++nextStep_;
    return !blocklines::arePlaced(block);
  }
  nextStep_ = -1;
  return false;
}

int PaneLayout::hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const {
  if (!isReady())
    return accuracy == Qt::ExactHit ? -1 : 0;
  auto& self = const_cast<PaneLayout&>(*this);
  if (self.layOut(point.y(), point.y() + 1))
    self.emitChange(rows_.rowOf(rows_.blockAt(point.y())).top);
  nextStep_ = accuracy == Qt::ExactHit ? 0 : -1;
  const QTextBlock block = rows_.blockAt(point.y());
  const QPointF inside = point - QPointF(document()->documentMargin(), rows_.rowOf(block).top);
  const QTextLayout& layout = *block.layout();
  const int lines = layout.lineCount();
  int number = 0;
  while (number < lines && inside.y() >= layout.lineAt(number).rect().bottom())
    ++number;
  const bool isOutside = inside.y() < 0 || number == lines;
  if (accuracy == Qt::ExactHit && (isOutside || !holds(layout.lineAt(number), inside)))
    return -1;
  if (isOutside)
    return block.position() + (inside.y() < 0 ? 0 : block.length() - 1);
  const auto edges =
      accuracy == Qt::ExactHit ? QTextLine::CursorOnCharacter : QTextLine::CursorBetweenCharacters;
  return block.position() + layout.lineAt(number).xToCursor(inside.x(), edges);
}

void PaneLayout::draw(QPainter* painter, const PaintContext& context) {
  if (!isReady())
    return;
  const qreal top = context.clip.isValid() ? context.clip.top() : 0;
  const qreal bottom = context.clip.isValid() ? context.clip.bottom() : documentSize().height();
  if (layOut(top, bottom))
    emitChangeLater();
  // A selection that goes on behind the end of a line is not painted in the margin.
  PaintContext inside = context;
  const qreal margin = document()->documentMargin();
  const QRectF content =
      QRectF({0, 0}, documentSize()).marginsRemoved({margin, margin, margin, margin});
  inside.clip = context.clip.isValid() ? context.clip & content : content;
  for (QTextBlock block = rows_.blockAt(top); block.isValid(); block = block.next()) {
    const BlockRows::Row& row = rows_.rowOf(block);
    if (row.top > bottom)
      break;
    if (rows_.place(block))
      emitChangeLater();
    blocklines::paint(*painter, block, {margin, row.top}, inside);
  }
}

void PaneLayout::documentChanged(int from, int /*oldLength*/, int length) {
  if (!isReady())
    return;
  rows_.noteChange(from, length);
  if (rows_.isWriting())
    return;
  emitChange(topOf(document()->findBlock(from)));
}

// ---- what is laid out -------------------------------------------------------

bool PaneLayout::layOut(qreal top, qreal bottom) {
  if (!isReady())
    return false;
  bool changed = false;
  qreal height = top;
  for (QTextBlock block = rows_.blockAt(top); block.isValid() && height < bottom;
       block = block.next()) {
    changed |= rows_.place(block);
    const BlockRows::Row& row = rows_.rowOf(block);
    block.layout()->setPosition({document()->documentMargin(), row.top});
    height = row.bottom;
  }
  return changed;
}

bool PaneLayout::refine(int milliseconds) {
  return isReady() && rows_.refine(milliseconds);
}

void PaneLayout::keepNear(const std::vector<Stretch>& seen) {
  rows_.keepNear(seen);
}

void PaneLayout::emitSizeChange() {
  // At that signal a scroll bar may appear or disappear. That changes the
  // width, and so the size again.
  constexpr int rounds = 4;
  if (std::exchange(isEmitting_, true))
    return;
  for (int round = 0; round < rounds && documentSize() != emittedSize_; ++round) {
    emittedSize_ = documentSize();
    Q_EMIT documentSizeChanged(emittedSize_);
  }
  isEmitting_ = false;
}

void PaneLayout::emitChangeLater() {
  if (std::exchange(emitsLater_, true))
    return;
  const auto tell = [this] {
    emitsLater_ = false;
    emitChange(0);
  };
  QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void PaneLayout::emitChange(qreal top) {
  emitSizeChange();
  // Far beyond the end, because text below the end may have been removed.
  constexpr qreal everything = 1e9;
  Q_EMIT update(QRectF(0, top, everything, everything));
}

qreal PaneLayout::topOf(const QTextBlock& block) const {
  return isReady() && block.isValid() ? rows_.rowOf(block).top : 0;
}

qreal PaneLayout::topOf(const QTextBlock& block, int place) const {
  if (!isReady() || !block.isValid())
    return 0;
  const BlockRows::Row row = rows_.rowOf(block);
  const QTextLine line = block.layout()->lineForTextPosition(place);
  return row.top + (line.isValid() ? line.y() : (row.bottom - row.top) * place / block.length());
}

qreal PaneLayout::bottom() const {
  return isReady() ? rows_.last().bottom : 0;
}

QTextBlock PaneLayout::blockAt(qreal height) const {
  return rows_.blockAt(height);
}

QTextBlock PaneLayout::firstLaidOut(qreal top, qreal bottom) const {
  if (!isReady())
    return {};
  for (QTextBlock block = rows_.blockAt(top); block.isValid() && rows_.rowOf(block).top < bottom;
       block = block.next())
    if (BlockRows::isPlaced(block))
      return block;
  return {};
}

}  // namespace kelmora::terminal
