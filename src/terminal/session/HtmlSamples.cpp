#include "terminal/session/HtmlSamples.h"

#include <QTextFrame>

namespace kelmora::terminal {

HtmlSamples::HtmlSamples(const QTextDocument& like) {
  document_.setUndoRedoEnabled(false);
  document_.setDefaultFont(like.defaultFont());
  document_.rootFrame()->setFrameFormat(like.rootFrame()->frameFormat());
  document_.setMetaInformation(QTextDocument::DocumentTitle,
                               like.metaInformation(QTextDocument::DocumentTitle));
  cursor_.beginEditBlock();
  cursor_.insertText(textMark);
}

void HtmlSamples::add(const QString& text, const QTextCharFormat& look,
                      const QTextBlockFormat& block, const QTextCharFormat& ofBlock) {
  cursor_.insertBlock(block, ofBlock);
  cursor_.insertText(text, look);
}

bool HtmlSamples::write() {
  add(textMark);
  cursor_.endEditBlock();
  lines_ = document_.toHtml().split(u'\n');
  const qsizetype first = lines_.size() - document_.blockCount();
  if (first < 1)
    return false;
  head_ = lines_.first(first).join(u'\n');
  lines_.remove(0, first);
  const auto ends = endsOf(take());
  const auto last = endsOf(lines_.takeLast());
  if (!ends || !last || last->before != ends->before || !last->behind.startsWith(ends->behind))
    return false;
  plain_ = *ends;
  tail_ = last->behind.sliced(plain_.behind.size());
  return true;
}

std::optional<QString> HtmlSamples::takeInner() {
  const QString line = take();
  if (line.size() < plain_.before.size() + plain_.behind.size() ||
      !line.startsWith(plain_.before) || !line.endsWith(plain_.behind))
    return std::nullopt;
  return line.sliced(plain_.before.size()).chopped(plain_.behind.size());
}

std::optional<HtmlSamples::Ends> HtmlSamples::endsOf(const QString& line, QChar mark) {
  const qsizetype at = line.indexOf(mark);
  if (at < 0 || line.indexOf(mark, at + 1) >= 0)
    return std::nullopt;
  return Ends{line.first(at), line.sliced(at + 1)};
}

QString HtmlSamples::between(QChar mark, const QString& letters) {
  QString text = mark;
  for (const QChar letter : letters) {
    text += letter;
    text += mark;
  }
  return text;
}

}  // namespace kelmora::terminal
