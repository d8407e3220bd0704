#include "terminal/view/PaneLayout.h"

#include <QElapsedTimer>
#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>
#include <utility>

#include "terminal/view/BlockLines.h"

namespace kelmora::terminal {

/// The size of a block, as far as it is known. The block owns it, so it stays with
/// the block when others before it are inserted or removed.
class PaneLayout::Measure : public QTextBlockUserData {
 public:
  enum class State { Unknown, Uncertain, Certain, Placed };

  State state = State::Unknown;
  QSizeF size;
  qreal marginAbove = 0;
  qreal marginBelow = 0;
  int length = 0;  ///< of the text measured, in characters
  /// It was broken into lines before it changed, so it is probably visible.
  bool isWanted = false;
};

namespace {

/// So many blocks may keep their lines and glyphs although they are not visible.
/// Each takes some hundred kilobytes.
constexpr std::size_t manyPlaced = 16;

/// Whether a point is on a line's text, or at the edge where an empty line begins.
bool holds(const QTextLine& line, const QPointF& point) {
  const QRectF text = line.naturalTextRect();
  return point.x() >= text.left() && point.x() <= text.right() && point.y() >= text.top() &&
         point.y() <= text.bottom();
}

}  // namespace

PaneLayout::PaneLayout(QTextDocument& document) : QAbstractTextDocumentLayout(&document) {}

// ---- the toolkit's interface ------------------------------------------------

QSizeF PaneLayout::documentSize() const {
  if (!isReady())
    return {};
  const_cast<PaneLayout*>(this)->sumUp();
  const qreal margin = document()->documentMargin();
  const Row& last = rows_.back();
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
  const bool isPlaced = !isWriting_ && !isStepOfWalk(block);
  if (isPlaced && self.place(block))
    self.tellChange(rowOf(block).top);
  const Row& row = rowOf(block);
  const QPointF corner(document()->documentMargin(), row.top);
  if (isPlaced)
    block.layout()->setPosition(corner);
  return isPlaced ? QRectF(corner, block.layout()->boundingRect().size())
                  : QRectF(corner, QSizeF(contentWidth(), row.bottom - row.top));
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
    self.tellChange(rowOf(blockAt(point.y())).top);
  nextStep_ = accuracy == Qt::ExactHit ? 0 : -1;
  const QTextBlock block = blockAt(point.y());
  const QPointF inside = point - QPointF(document()->documentMargin(), rowOf(block).top);
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
    tellSizeLater();
  // A selection that goes on behind the end of a line is not painted in the margin.
  PaintContext inside = context;
  const qreal margin = document()->documentMargin();
  const QRectF content =
      QRectF({0, 0}, documentSize()).marginsRemoved({margin, margin, margin, margin});
  inside.clip = context.clip.isValid() ? context.clip & content : content;
  for (QTextBlock block = blockAt(top); block.isValid(); block = block.next()) {
    const Row& row = rowOf(block);
    if (row.top > bottom)
      break;
    if (place(block))
      tellSizeLater();
    blocklines::paint(*painter, block, {margin, row.top}, inside);
  }
}

void PaneLayout::documentChanged(int from, int /*oldLength*/, int length) {
  if (!isReady())
    return;
  noteChange(from, length);
  if (isWriting_)
    return;
  tellChange(topOf(document()->findBlock(from)));
}

// ---- what is measured -------------------------------------------------------

bool PaneLayout::isReady() const {
  return !document()->pageSize().isNull();
}

qreal PaneLayout::contentWidth() const {
  return document()->pageSize().width() - 2 * document()->documentMargin();
}

void PaneLayout::noteChange(int from, int length) {
  const int end = from + length;
  // A new page size, font or option is reported as a change of the whole document,
  // and so is clearing it, after which formats have other indices.
  if (from == 0 && end >= document()->characterCount() - 1)
    estimate_.measureFont(*document());
  QTextBlock block = document()->findBlock(from);
  validRows_ = std::min(validRows_, static_cast<std::size_t>(std::max(block.blockNumber(), 0)));
  if (const auto* measure = static_cast<Measure*>(block.userData());
      measure && length == 0 && block.position() == from && measure->length == block.length())
    return;  // only whole blocks before this one have been removed
  for (; block.isValid() && block.position() <= end; block = block.next())
    if (auto* measure = static_cast<Measure*>(block.userData())) {
      if (measure->state == Measure::State::Placed) {
        measure->isWanted = blocklines::arePlaced(block);
        block.layout()->clearLayout();  // the lines are those of the old text
      }
      measure->state = Measure::State::Unknown;
    }
}

PaneLayout::Measure& PaneLayout::measured(const QTextBlock& block) {
  auto* measure = static_cast<Measure*>(block.userData());
  if (!measure) {
    measure = new Measure;  // owned by the block
    QTextBlock(block).setUserData(measure);
  }
  if (measure->state == Measure::State::Unknown) {
    const QTextBlockFormat format = block.blockFormat();
    const auto [pixels, isCertain] = estimate_.of(block, contentWidth());
    measure->state = isCertain ? Measure::State::Certain : Measure::State::Uncertain;
    measure->size = pixels;
    measure->marginAbove = format.topMargin();
    measure->marginBelow = format.bottomMargin();
    measure->length = block.length();
    if (measure->isWanted && !isWriting_)
      place(block);
  }
  return *measure;
}

bool PaneLayout::place(const QTextBlock& block) {
  Measure& measure = measured(block);
  if (measure.state == Measure::State::Placed && blocklines::arePlaced(block))
    return false;
  const QSizeF size = blocklines::place(block, contentWidth());
  ++placed_;
  measure.state = Measure::State::Placed;
  measure.isWanted = false;
  if (size == measure.size)
    return false;
  measure.size = size;
  validRows_ = std::min(validRows_, static_cast<std::size_t>(block.blockNumber()));
  return true;
}

void PaneLayout::sumUp() {
  const auto count = static_cast<std::size_t>(document()->blockCount());
  if (validRows_ == count && rows_.size() == count)
    return;
  rows_.resize(count);
  validRows_ = std::min(validRows_, count);
  QTextBlock block = document()->findBlockByNumber(static_cast<int>(validRows_));
  for (; block.isValid(); block = block.next(), ++validRows_) {
    const Measure& measure = measured(block);
    Row row{.top = document()->documentMargin()};
    if (validRows_ > 0) {
      // Of the margins between two blocks only the larger one counts.
      const Row& above = rows_[validRows_ - 1];
      row.top = above.bottom + std::max(above.marginBelow, measure.marginAbove);
      row.widest = above.widest;
    }
    row.bottom = row.top + measure.size.height();
    row.widest = std::max(row.widest, measure.size.width());
    row.marginBelow = measure.marginBelow;
    if (measure.state == Measure::State::Placed)
      block.layout()->setPosition({document()->documentMargin(), row.top});
    rows_[validRows_] = row;
  }
}

const PaneLayout::Row& PaneLayout::rowOf(const QTextBlock& block) const {
  const_cast<PaneLayout*>(this)->sumUp();
  return rows_[static_cast<std::size_t>(block.blockNumber())];
}

// ---- what is laid out -------------------------------------------------------

bool PaneLayout::layOut(qreal top, qreal bottom) {
  if (!isReady())
    return false;
  bool changed = false;
  qreal height = top;
  for (QTextBlock block = blockAt(top); block.isValid() && height < bottom; block = block.next()) {
    changed |= place(block);
    const Row& row = rowOf(block);
    block.layout()->setPosition({document()->documentMargin(), row.top});
    height = row.bottom;
  }
  return changed;
}

bool PaneLayout::refine(int milliseconds) {
  if (!isReady())
    return false;
  QElapsedTimer timer;
  timer.start();
  for (QTextBlock block = document()->lastBlock(); block.isValid(); block = block.previous()) {
    if (measured(block).state != Measure::State::Uncertain)
      continue;
    if (timer.elapsed() >= milliseconds)
      return true;
    place(block);
    blocklines::release(block);
    --placed_;
  }
  return false;
}

void PaneLayout::keepNear(const std::vector<Stretch>& seen) {
  if (placed_ <= manyPlaced)
    return;
  placed_ = 0;
  const auto isNear = [&seen](const Row& row) {
    return std::any_of(seen.begin(), seen.end(), [&row](const Stretch& one) {
      const qreal near = one.bottom - one.top;
      return row.bottom >= one.top - near && row.top <= one.bottom + near;
    });
  };
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    if (measured(block).state != Measure::State::Placed || !blocklines::arePlaced(block))
      continue;
    if (isNear(rowOf(block)))
      ++placed_;
    else
      blocklines::release(block);
  }
}

void PaneLayout::tellSize() {
  // When the size is told, a scroll bar may appear or disappear. That changes the
  // width, and so the size again.
  constexpr int rounds = 4;
  if (std::exchange(isTelling_, true))
    return;
  for (int round = 0; round < rounds && documentSize() != toldSize_; ++round) {
    toldSize_ = documentSize();
    Q_EMIT documentSizeChanged(toldSize_);
  }
  isTelling_ = false;
}

void PaneLayout::tellSizeLater() {
  if (std::exchange(tellsLater_, true))
    return;
  const auto tell = [this] {
    tellsLater_ = false;
    tellChange(0);
  };
  QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void PaneLayout::tellChange(qreal top) {
  tellSize();
  // Far beyond the end, because text below the end may have been removed.
  constexpr qreal everything = 1e9;
  Q_EMIT update(QRectF(0, top, everything, everything));
}

qreal PaneLayout::topOf(const QTextBlock& block) const {
  return isReady() && block.isValid() ? rowOf(block).top : 0;
}

qreal PaneLayout::bottom() const {
  return isReady() ? rowOf(document()->lastBlock()).bottom : 0;
}

QTextBlock PaneLayout::blockAt(qreal height) const {
  const_cast<PaneLayout*>(this)->sumUp();
  const auto found = std::partition_point(rows_.begin(), rows_.end(),
                                          [height](const Row& one) { return one.bottom < height; });
  const auto number = std::min<std::ptrdiff_t>(found - rows_.begin(),
                                               static_cast<std::ptrdiff_t>(rows_.size()) - 1);
  return document()->findBlockByNumber(static_cast<int>(number));
}

QTextBlock PaneLayout::firstLaidOut(qreal top, qreal bottom) const {
  if (!isReady())
    return {};
  for (QTextBlock block = blockAt(top); block.isValid() && rowOf(block).top < bottom;
       block = block.next())
    if (const auto* measure = static_cast<const Measure*>(block.userData());
        measure->state == Measure::State::Placed && blocklines::arePlaced(block))
      return block;
  return {};
}

}  // namespace kelmora::terminal
