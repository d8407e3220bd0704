#include "terminal/view/PaneWriter.h"

#include <QTextBlock>
#include <QTextEdit>
#include <algorithm>

PaneWriter::PaneWriter(QTextEdit& pane, TextLooks& looks, ParagraphEnds::Lengths lengths)
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

void PaneWriter::writeOne(const StyledText& text) {
  divideLastParagraph();
  if (text.text.isEmpty())
    return;
  // As by the importer, the first text of a document brings its paragraph's
  // formats along.
  if (end_.position() == 0) {
    end_.setBlockFormat({});
    end_.setBlockCharFormat({});
  }
  ParagraphEnds ends(lengths_, pane_.document()->lastBlock().length() - 1);
  auto end = ends.next(text.text, 0);
  qsizetype start = 0;
  const auto insertUpTo = [&](qsizetype place, const QTextCharFormat& format) {
    if (place > start)
      end_.insertText(text.text.sliced(start, place - start), format);
    start = std::max(start, place);
  };
  for (const StyledText::Run& run : text.runs) {
    const QTextCharFormat format = looks_.formatOf(run);
    while (end && end->behind() <= run.end) {
      insertUpTo(end->start, format);
      // One that replaces nothing looks as what is before it.
      end_.insertBlock(end_.blockFormat(), end->replaced > 0 ? format : end_.charFormat());
      start = end->behind();
      end = ends.next(text.text, start);
    }
    insertUpTo(run.end, format);
  }
  written_ += text.text.size();
}

void PaneWriter::writeOne(const SafeHtml& text) {
  end_.insertHtml(text.html());
  written_ += text.html().size();
  divideLastParagraph();
}

void PaneWriter::writeOne(const StatusLine& text) {
  // Rare enough for the toolkit's own way, which is no part of a change: it
  // looks where the view is.
  end_.endEditBlock();
  pane_.moveCursor(QTextCursor::End);
  pane_.append(text.html.html());
  written_ += text.html.html().size();
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

void PaneWriter::divideLastParagraph() {
  while (true) {
    const QTextBlock last = pane_.document()->lastBlock();
    if (last.length() <= lengths_.longParagraph)
      return;
    const auto end = ParagraphEnds(lengths_).next(last.text(), 0);
    if (!end)
      return;
    QTextCursor cursor(last);
    cursor.setPosition(last.position() + static_cast<int>(end->start));
    cursor.setPosition(last.position() + static_cast<int>(end->behind()), QTextCursor::KeepAnchor);
    cursor.insertBlock();
  }
}
