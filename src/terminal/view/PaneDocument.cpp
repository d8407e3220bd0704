#include "terminal/view/PaneDocument.h"

#include <QTextBlock>
#include <QTextEdit>
#include <algorithm>
#include <vector>

#include "terminal/core/Log.h"
#include "terminal/layout/PaneLayout.h"

namespace kelmora::terminal {

namespace {

/// The toolkit's own blue for links is too dark on a black background.
QString linkStyle() {
  return QStringLiteral("a { color: #6fa8ff }");
}

PaneLayout& layoutOf(const QTextDocument& document) {
  return *static_cast<PaneLayout*>(document.documentLayout());
}

void giveLayout(QTextDocument& document, QWidget& viewport) {
  auto* const layout = new PaneLayout(document);
  layout->setPaintDevice(&viewport);
  document.setDocumentLayout(layout);
}

}  // namespace

PaneDocument::PaneDocument(QTextEdit& pane, const Limits& limits)
    : pane_(pane), limits_(limits), looks_(linkStyle()) {
  giveLayout(document(), *pane_.viewport());
  document().setMaximumBlockCount(limits_.paragraphs);
  document().setDefaultStyleSheet(linkStyle());
}

QTextDocument& PaneDocument::document() const {
  return *pane_.document();
}

void PaneDocument::write(PaneQueue& queue, QDeadlineTimer deadline) {
  putCursorToTheEnd();
  PaneLayout& layout = layoutOf(document());
  layout.beginWriting();
  if (queue.takeClearing())
    clearUnlessFormatGoesOn();
  end_ = QTextCursor(&document());
  end_.movePosition(QTextCursor::End);
  end_.beginEditBlock();
  do
    std::visit([this](const auto& text) { writeOne(text); }, queue.take());
  while (!queue.isEmpty() && !deadline.hasExpired());
  end_.endEditBlock();
  end_ = {};
  limitHeight();
  layout.endWriting();
  limitFormats();
}

void PaneDocument::putCursorToTheEnd() {
  // A cursor at the end without a selection moves along with new text.
  QTextCursor cursor = pane_.textCursor();
  if (!cursor.hasSelection() && cursor.atEnd())
    return;
  cursor.setPosition(document().characterCount() - 1);
  pane_.setTextCursor(cursor);
}

void PaneDocument::writeOne(const StyledText& text) {
  divideLastParagraph();
  if (text.text.isEmpty())
    return;
  // The importer does the same: the first text in a document resets the formats of
  // its paragraph.
  if (end_.position() == 0) {
    end_.setBlockFormat({});
    end_.setBlockCharFormat({});
  }
  ParagraphEnds ends(limits_.lengths, document().lastBlock().length() - 1);
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
      // A paragraph end that replaces no line break has the format of the character
      // before it.
      end_.insertBlock(end_.blockFormat(), end->replaced > 0 ? format : end_.charFormat());
      start = end->behind();
      end = ends.next(text.text, start);
    }
    insertUpTo(run.end, format);
  }
}

void PaneDocument::writeOne(const SafeHtml& text) {
  end_.insertHtml(text.html());
  divideLastParagraph();
}

void PaneDocument::writeOne(const StatusLine& text) {
  // append() must not be part of an edit block, because it looks at the scroll bar.
  // It is slow, but status lines are rare.
  end_.endEditBlock();
  pane_.moveCursor(QTextCursor::End);
  pane_.append(text.html.html());
  end_.movePosition(QTextCursor::End);
  end_.beginEditBlock();
}

void PaneDocument::writeOne(const PlainText& text) {
  // Only the colours are set; all else, such as bold, is as in the text before it.
  end_.movePosition(QTextCursor::End);
  QTextCharFormat colours;
  colours.setForeground(text.colour);
  end_.mergeCharFormat(colours);
  colours = {};
  colours.setBackground(text.background);
  end_.mergeCharFormat(colours);
  end_.insertText(text.text);
}

void PaneDocument::divideLastParagraph() {
  while (true) {
    const QTextBlock last = document().lastBlock();
    if (last.length() <= limits_.lengths.longParagraph)
      return;
    const auto end = ParagraphEnds(limits_.lengths).next(last.text(), 0);
    if (!end)
      return;
    QTextCursor cursor(last);
    cursor.setPosition(last.position() + static_cast<int>(end->start));
    cursor.setPosition(last.position() + static_cast<int>(end->behind()), QTextCursor::KeepAnchor);
    cursor.insertBlock();
  }
}

void PaneDocument::clearUnlessFormatGoesOn() {
  // A new paragraph takes over the format of the last one, such as its alignment.
  if (document().lastBlock().blockFormat().propertyCount() > 0)
    return;
  copy_.reset();
  document().clear();
  formatsAtRenewal_ = 0;
}

void PaneDocument::limitHeight() {
  const PaneLayout& layout = layoutOf(document());
  const qreal excess = layout.bottom() - limits_.tallest;
  if (excess <= 0)
    return;
  const QTextBlock cut = layout.blockAt(excess);
  const int first = cut.blockNumber() + (layout.topOf(cut) < excess ? 1 : 0);
  const int kept = std::max(document().blockCount() - first, 1);
  if (kept < document().blockCount())
    qCInfo(paneLog) << "paragraphs dropped, as the text is too tall:"
                    << document().blockCount() - kept;
  // Lowering the limit makes the toolkit drop them.
  document().setMaximumBlockCount(kept);
  document().setMaximumBlockCount(limits_.paragraphs);
}

void PaneDocument::limitFormats() {
  if (!copy_ && document().allFormats().size() > 2 * formatsAtRenewal_ + limits_.formats)
    copy_.emplace(document());
}

void PaneDocument::renewIfFormatsAreUnused() {
  const qsizetype all = document().allFormats().size();
  if (copy_ || all <= limits_.formats)
    return;
  std::vector<bool> used(static_cast<std::size_t>(all));
  for (QTextBlock block = document().begin(); block.isValid(); block = block.next())
    for (auto piece = block.begin(); !piece.atEnd(); ++piece)
      used[static_cast<std::size_t>(piece.fragment().charFormatIndex())] = true;
  if (all - std::count(used.begin(), used.end(), true) > limits_.formats)
    copy_.emplace(document());
}

bool PaneDocument::renew(int milliseconds, const std::function<void(QTextDocument&)>& show) {
  if (!copy_ || !copy_->advance(milliseconds))
    return false;
  QTextDocument& old = document();
  auto made = std::move(*copy_).take();
  copy_.reset();
  // Someone has changed the document meanwhile, so the copy is useless.
  if (made->characterCount() != old.characterCount())
    return false;
  QTextDocument& renewed = *made.release();
  renewed.setParent(&pane_);
  giveLayout(renewed, *pane_.viewport());
  show(renewed);
  const QTextCursor before = pane_.textCursor();
  const int anchor = before.anchor();
  const int position = before.position();
  // setDocument() deletes the document that the toolkit made itself, not ours.
  const bool isOurs = old.parent() == &pane_;
  pane_.setDocument(&renewed);
  if (isOurs)
    delete &old;
  QTextCursor cursor(&renewed);
  cursor.setPosition(anchor);
  cursor.setPosition(position, QTextCursor::KeepAnchor);
  pane_.setTextCursor(cursor);
  formatsAtRenewal_ = renewed.allFormats().size();
  return true;
}

}  // namespace kelmora::terminal
