#include "terminal/layout/BlockEstimate.h"

#include <QAbstractTextDocumentLayout>
#include <QTextDocument>
#include <QTextLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "terminal/layout/BlockLines.h"

namespace kelmora::terminal {

namespace {

struct Sample {
  qreal width;
  qreal height;
};

Sample sampleOf(const QString& text, const QFont& font, QPaintDevice* device) {
  QTextLayout layout(text, font, device);
  layout.beginLayout();
  QTextLine line = layout.createLine();
  line.setLeadingIncluded(true);
  layout.endLayout();
  return {line.naturalTextWidth(), line.height()};
}

/// Whether a format may make characters wider or taller.
bool changesSize(const QTextFormat& format) {
  constexpr std::array<int, 8> harmless{
      QTextFormat::ForegroundBrush,    QTextFormat::BackgroundBrush,   QTextFormat::IsAnchor,
      QTextFormat::AnchorHref,         QTextFormat::AnchorName,        QTextFormat::FontUnderline,
      QTextFormat::TextUnderlineStyle, QTextFormat::TextUnderlineColor};
  const auto properties = format.properties();
  return std::any_of(properties.keyBegin(), properties.keyEnd(), [&](int property) {
    return std::find(harmless.begin(), harmless.end(), property) == harmless.end();
  });
}

/// Characters that are as wide as any other in a fixed-pitch font.
bool isUsual(char16_t code) {
  return (code >= u' ' && code <= u'~') || code == QChar::Nbsp || code == QChar::LineSeparator;
}

bool isWordCharacter(QChar character) {
  const char16_t code = character.unicode();
  return (code >= u'0' && code <= u'9') || (code >= u'A' && code <= u'Z') ||
         (code >= u'a' && code <= u'z') || code == u'_';
}

/// Whether a line is sure not to break within a word.
bool holdsTogether(QStringView word) {
  // The marks at the word's end are left out; within a word they may allow a break.
  while (word.endsWith(u'.') || word.endsWith(u','))
    word.chop(1);
  return std::all_of(word.begin(), word.end(),
                     [](QChar one) { return isWordCharacter(one) || one == u'\''; });
}

/// Without the blanks at its end, which take no room: they hang over the edge.
qsizetype lengthOf(QStringView row) {
  while (row.endsWith(u' '))
    row.chop(1);
  return row.size();
}

/// Whether a line may certainly break at the blanks before a word. The toolkit
/// keeps an opening bracket, and most words that begin with a mark, on the same
/// line as what is on the other side of the blanks.
bool breaksBefore(QStringView line, qsizetype wordStart) {
  const qsizetype before = lengthOf(line.first(wordStart));
  return before > 0 && QStringView(u"([{").indexOf(line[before - 1]) < 0 &&
         isWordCharacter(line[wordStart]);
}

qsizetype endOfBlanks(QStringView line, qsizetype start) {
  while (start < line.size() && line[start] == u' ')
    ++start;
  return start;
}

}  // namespace

void BlockEstimate::measureFont(const QTextDocument& document) {
  constexpr int length = 64;
  const QFont font = document.defaultFont();
  QPaintDevice* const device = document.documentLayout()->paintDevice();
  const Sample sample = sampleOf(QString(length, u'x'), font, device);
  rowHeight_ = sample.height;
  isFixedPitch_ = true;
  for (const char16_t other : {u'i', u'M', u'.', u'\u00A0'})
    isFixedPitch_ =
        isFixedPitch_ &&
        qFuzzyCompare(sampleOf(QString(length, other), font, device).width, sample.width);
  characterWidth_ = std::max<qreal>(sample.width / length, 1.0 / length);
  changesSize_.clear();
  anyChangesSize_ = false;
}

BlockEstimate::Size BlockEstimate::of(const QTextBlock& block, qreal contentWidth) {
  const QTextBlockFormat format = block.blockFormat();
  const auto sides = blocklines::sidesOf(block, contentWidth);
  const bool breaks = contentWidth > 0 && !format.nonBreakableLines();
  const qreal width = std::max<qreal>(sides.right - sides.left, 0);
  const auto columns = breaks ? static_cast<qsizetype>(std::floor(width / characterWidth_))
                              : std::numeric_limits<qsizetype>::max();
  const Rows rows = rowsOf(block.text(), columns);
  return {.pixels = {sides.left + static_cast<qreal>(rows.widest) * characterWidth_ +
                         format.rightMargin(),
                     static_cast<qreal>(rows.count) * rowHeight_},
          .isCertain =
              isFixedPitch_ && rows.isCertain && format.propertyCount() == 0 && isPlain(block)};
}

bool BlockEstimate::isPlain(const QTextBlock& block) {
  checkNewFormats(*block.document());
  if (!anyChangesSize_)
    return true;
  const auto changes = [this](int format) {
    return changesSize_[static_cast<std::size_t>(format)];
  };
  if (changes(block.charFormatIndex()))
    return false;
  for (auto piece = block.begin(); !piece.atEnd(); ++piece)
    if (changes(piece.fragment().charFormatIndex()))
      return false;
  return true;
}

void BlockEstimate::checkNewFormats(const QTextDocument& document) {
  const auto formats = document.allFormats();
  const auto known = static_cast<qsizetype>(changesSize_.size());
  for (qsizetype index = known; index < formats.size(); ++index) {
    changesSize_.push_back(formats[index].isCharFormat() && changesSize(formats[index]));
    anyChangesSize_ = anyChangesSize_ || changesSize_.back();
  }
}

BlockEstimate::Rows BlockEstimate::rowsOf(QStringView text, qsizetype columns) {
  Rows rows;
  rows.isCertain = std::all_of(text.begin(), text.end(),
                               [](QChar character) { return isUsual(character.unicode()); });
  for (qsizetype start = 0, end = 0; end >= 0; start = end + 1) {
    end = text.indexOf(QChar::LineSeparator, start);
    const QStringView line = text.sliced(start, (end < 0 ? text.size() : end) - start);
    if (line.size() > columns) {
      rows.isCertain = rows.isCertain && columns > 0 && !line.endsWith(u' ');
      wrap(line, std::max<qsizetype>(columns, 1), rows);
    } else {
      ++rows.count;
      rows.widest = std::max(rows.widest, end < 0 ? line.size() : lengthOf(line));
    }
  }
  return rows;
}

void BlockEstimate::wrap(QStringView line, qsizetype columns, Rows& rows) {
  qsizetype start = 0;
  while (line.size() - start > columns) {
    const qsizetype limit = start + columns;
    // A blank right at the edge hangs over it, and the row ends there.
    qsizetype rowEnd = limit;
    if (line[limit] != u' ') {
      const qsizetype blank = line.sliced(start, columns).lastIndexOf(u' ');
      const qsizetype wordStart = blank < 0 ? start : start + blank + 1;
      const qsizetype found = line.indexOf(u' ', limit);
      const qsizetype wordEnd = found < 0 ? line.size() : found;
      rows.isCertain = rows.isCertain && holdsTogether(line.sliced(wordStart, wordEnd - wordStart));
      rowEnd = blank < 0 ? wordEnd : wordStart;
    }
    ++rows.count;
    rows.widest = std::max(rows.widest, lengthOf(line.sliced(start, rowEnd - start)));
    start = endOfBlanks(line, rowEnd);
    if (start == line.size())
      return;
    rows.isCertain = rows.isCertain && breaksBefore(line, start);
  }
  ++rows.count;
  rows.widest = std::max(rows.widest, line.size() - start);
}

}  // namespace kelmora::terminal
