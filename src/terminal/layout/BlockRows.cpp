#include "terminal/layout/BlockRows.h"

#include <QElapsedTimer>
#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>

#include "terminal/layout/BlockLines.h"

namespace kelmora::terminal {

/// The size of a block, as far as it is known. The block owns it, so it stays with
/// the block when others before it are inserted or removed.
class BlockRows::Measure : public QTextBlockUserData {
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

}  // namespace

void BlockRows::noteChange(int from, int length) {
  const int end = from + length;
  // A new page size, font or option is reported as a change of the whole document,
  // and so is clearing it, after which formats have other indices.
  if (from == 0 && end >= document_.characterCount() - 1)
    estimate_.measureFont(document_);
  QTextBlock block = document_.findBlock(from);
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

BlockRows::Measure& BlockRows::measured(const QTextBlock& block) {
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

bool BlockRows::place(const QTextBlock& block) {
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

void BlockRows::sumUp() {
  const auto count = static_cast<std::size_t>(document_.blockCount());
  if (validRows_ == count && rows_.size() == count)
    return;
  rows_.resize(count);
  validRows_ = std::min(validRows_, count);
  QTextBlock block = document_.findBlockByNumber(static_cast<int>(validRows_));
  for (; block.isValid(); block = block.next(), ++validRows_) {
    const Measure& measure = measured(block);
    Row row{.top = document_.documentMargin()};
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
      block.layout()->setPosition({document_.documentMargin(), row.top});
    rows_[validRows_] = row;
  }
}

const BlockRows::Row& BlockRows::rowOf(const QTextBlock& block) {
  sumUp();
  return rows_[static_cast<std::size_t>(block.blockNumber())];
}

const BlockRows::Row& BlockRows::last() {
  sumUp();
  return rows_.back();
}

QTextBlock BlockRows::blockAt(qreal height) {
  sumUp();
  const auto found = std::partition_point(rows_.begin(), rows_.end(),
                                          [height](const Row& one) { return one.bottom < height; });
  const auto number = std::min<std::ptrdiff_t>(found - rows_.begin(),
                                               static_cast<std::ptrdiff_t>(rows_.size()) - 1);
  return document_.findBlockByNumber(static_cast<int>(number));
}

bool BlockRows::isPlaced(const QTextBlock& block) {
  const auto* const measure = static_cast<const Measure*>(block.userData());
  return measure && measure->state == Measure::State::Placed && blocklines::arePlaced(block);
}

bool BlockRows::refine(int milliseconds) {
  QElapsedTimer timer;
  timer.start();
  for (QTextBlock block = document_.lastBlock(); block.isValid(); block = block.previous()) {
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

void BlockRows::keepNear(const std::vector<Stretch>& seen) {
  if (placed_ <= manyPlaced)
    return;
  placed_ = 0;
  const auto isNear = [&seen](const Row& row) {
    return std::any_of(seen.begin(), seen.end(), [&row](const Stretch& one) {
      const qreal near = one.bottom - one.top;
      return row.bottom >= one.top - near && row.top <= one.bottom + near;
    });
  };
  for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
    if (measured(block).state != Measure::State::Placed || !blocklines::arePlaced(block))
      continue;
    if (isNear(rowOf(block)))
      ++placed_;
    else
      blocklines::release(block);
  }
}

qreal BlockRows::contentWidth() const {
  return document_.pageSize().width() - 2 * document_.documentMargin();
}

}  // namespace kelmora::terminal
