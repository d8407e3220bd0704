#include "terminal/view/PaneWriter.h"

#include <QTextBlock>
#include <QTextEdit>

#include "terminal/core/SafeMarkup.h"
#include "terminal/view/DirectText.h"

namespace {

struct Division {
  qsizetype start;
  qsizetype length;  ///< what the division replaces
};

std::optional<Division> divisionOf(const QString& paragraph, const PaneWriter::Lengths& lengths) {
  if (paragraph.size() <= lengths.longParagraph)
    return std::nullopt;
  const qsizetype lineBreak = paragraph.indexOf(QChar::LineSeparator, lengths.longParagraph);
  if (lineBreak >= 0 && lineBreak < lengths.longestParagraph)
    return Division{lineBreak, 1};
  if (paragraph.size() <= lengths.longestParagraph)
    return std::nullopt;
  const bool inPair = paragraph.at(lengths.longestParagraph).isLowSurrogate();
  return Division{lengths.longestParagraph - (inPair ? 1 : 0), 0};
}

}  // namespace

PaneWriter::PaneWriter(QTextEdit& pane, TextLooks& looks, Lengths lengths)
    : pane_(pane), looks_(looks), lengths_(lengths), end_(pane.document()) {
  end_.movePosition(QTextCursor::End);
  end_.beginEditBlock();
}

PaneWriter::~PaneWriter() {
  end_.endEditBlock();
}

void PaneWriter::write(const PaneText& text) {
  std::visit([this](const auto& one) { writeOne(one); }, text);
}

void PaneWriter::writeOne(const ServerText& text) {
  const QString html = text.decoded();
  // Also without tags of the server's own: colours may nest beyond all measure,
  // and a stored colour may be anything.
  if (text.tags == ServerText::Tags::FromServer || !writeDirectly(html))
    writeOne(SafeHtml{safeMarkup(html)});
}

void PaneWriter::writeOne(const SafeHtml& text) {
  if (writeDirectly(text.html))
    return;
  end_.insertHtml(text.html);
  written_ += text.html.size();
  divideLastParagraph();
}

void PaneWriter::writeOne(const StatusLine& text) {
  // Rare enough for the toolkit's own way, which is no part of a change: it
  // looks where the view is.
  end_.endEditBlock();
  pane_.moveCursor(QTextCursor::End);
  pane_.append(text.html);
  written_ += text.html.size();
  end_.movePosition(QTextCursor::End);
  end_.beginEditBlock();
}

void PaneWriter::writeOne(const PlainText& text) {
  // Whatever else the text before it looks like, it keeps.
  end_.movePosition(QTextCursor::End);
  QTextCharFormat colours;
  colours.setForeground(text.colour);
  end_.mergeCharFormat(colours);
  colours = {};
  colours.setBackground(text.background);
  end_.mergeCharFormat(colours);
  end_.insertText(text.text);
  written_ += text.text.size();
}

bool PaneWriter::writeDirectly(const QString& html) {
  // The first text of a document brings its paragraph's formats along.
  if (end_.position() == 0 &&
      (end_.blockFormat().propertyCount() > 0 || end_.blockCharFormat().propertyCount() > 0))
    return false;
  const auto direct = DirectText::read(html);
  if (!direct)
    return false;
  qsizetype start = 0;
  for (const DirectText::Run& run : direct->runs) {
    end_.insertText(
        direct->text.mid(start, run.end - start),
        run.target.isEmpty() ? looks_.format(run.look) : looks_.linkFormat(run.look, run.target));
    start = run.end;
  }
  written_ += direct->text.size();
  divideLastParagraph();
  return true;
}

void PaneWriter::divideLastParagraph() {
  for (;;) {
    const QTextBlock last = pane_.document()->lastBlock();
    if (last.length() <= lengths_.longParagraph)
      return;
    const auto division = divisionOf(last.text(), lengths_);
    if (!division)
      return;
    const auto start = last.position() + static_cast<int>(division->start);
    QTextCursor cursor(last);
    cursor.setPosition(start);
    cursor.setPosition(start + static_cast<int>(division->length), QTextCursor::KeepAnchor);
    cursor.insertBlock();
  }
}
