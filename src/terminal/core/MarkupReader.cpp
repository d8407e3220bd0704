#include "terminal/core/MarkupReader.h"

QStringView MarkupReader::text() {
  const qsizetype start = pos_;
  const qsizetype end = html_.indexOf(u'<', start);
  pos_ = end < 0 ? html_.size() : end;
  return html_.sliced(start, pos_ - start);
}

std::optional<MarkupTag> MarkupReader::tag() {
  const qsizetype afterBracket = ++pos_;
  skipSpace();
  if (at(u"!")) {
    ++pos_;
    const bool comment = at(u"--");
    if (comment)
      pos_ += 2;
    skipPast(comment ? u"-->" : u">");
    return MarkupTag{};
  }
  MarkupTag tag;
  if (at(u"/")) {
    ++pos_;
    tag.edge = MarkupTag::Edge::End;
  }
  tag.name = word().raw;
  if (tag.edge == MarkupTag::Edge::Start && tag.name.empty()) {
    pos_ = afterBracket;
    return {};
  }
  if (tag.edge == MarkupTag::Edge::Start && atSpace())
    tag.attributes = attributes();
  tag.closed = skipPast(u">").contains(u'/');
  return tag;
}

void MarkupReader::skipSpace() {
  while (atSpace() && html_[pos_] != QChar::ParagraphSeparator)
    ++pos_;
}

QStringView MarkupReader::skipPast(QStringView end) {
  const qsizetype start = pos_;
  const qsizetype found = html_.indexOf(end, start);
  pos_ = found < 0 ? html_.size() : found + end.size();
  return html_.sliced(start, pos_ - start);
}

MarkupReader::Word MarkupReader::word() {
  const qsizetype start = pos_;
  if (at(u"\"") || at(u"'")) {
    const QChar quote = html_[pos_++];
    // A single quote behind a backslash does not end its word.
    while (!atEnd() && (html_[pos_] != quote || (quote == u'\'' && html_[pos_ - 1] == u'\\')))
      ++pos_;
    const QStringView raw = html_.sliced(start + 1, pos_ - start - 1);
    if (!atEnd())
      ++pos_;
    return {raw, quote};
  }
  while (!atEnd() && !atSpace() && !at(u"<") && !at(u">") && !at(u"=") && !at(u"/>"))
    ++pos_;
  return {html_.sliced(start, pos_ - start), {}};
}

std::vector<MarkupTag::Attribute> MarkupReader::attributes() {
  std::vector<MarkupTag::Attribute> found;
  while (!atEnd()) {
    skipSpace();
    if (at(u">") || at(u"/"))
      break;
    const QStringView name = word().raw;
    if (name.empty())
      break;
    skipSpace();
    if (!at(u"="))
      continue;
    ++pos_;
    skipSpace();
    const Word value = word();
    QString text = value.raw.toString();
    // Between single quotes an entity is just text.
    if (value.quote == u'\'')
      text.replace(u'&', QStringLiteral("&amp;"));
    found.push_back({name, text});
  }
  return found;
}
