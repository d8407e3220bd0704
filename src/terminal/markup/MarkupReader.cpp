#include "terminal/markup/MarkupReader.h"

#include <algorithm>

namespace kelmora::terminal {

QStringView MarkupReader::text() {
  const qsizetype start = pos_;
  const qsizetype end = html_.indexOf(u'<', start);
  pos_ = end < 0 ? html_.size() : end;
  return html_.sliced(start, pos_ - start);
}

std::optional<MarkupTag> MarkupReader::tag() {
  const qsizetype afterBracket = ++pos_;
  auto tag = at(u"!--") ? comment() : tagOfOneLine();
  if (!tag)
    pos_ = afterBracket;
  return tag;
}

bool MarkupReader::skipHiddenElement(QStringView name) {
  const auto end = std::find_if(hiddenEnds_.begin(), hiddenEnds_.end(), [name](const Place& place) {
    return place.what.sliced(2).compare(name, Qt::CaseInsensitive) == 0;
  });
  if (end == hiddenEnds_.end() || next(*end) == html_.size())
    return false;
  pos_ = next(*end);
  skipPast(u">");
  return true;
}

qsizetype MarkupReader::next(Place& place) const {
  if (place.at < pos_) {
    const qsizetype found = html_.indexOf(place.what, pos_, Qt::CaseInsensitive);
    place.at = found < 0 ? html_.size() : found;
  }
  return place.at;
}

std::optional<MarkupTag> MarkupReader::comment() {
  pos_ += 3;
  if (next(commentEnd_) == html_.size())
    return {};
  skipPast(u"-->");
  return MarkupTag{};
}

qsizetype MarkupReader::lastTagEnd() {
  if (lineEnd_.at < pos_) {
    const QStringView line = html_.first(next(lineEnd_));
    lastTagEnd_ = line.size() == html_.size() ? html_.size() : line.lastIndexOf(u'>');
    cutAttributes_.clear();
  }
  return lastTagEnd_;
}

std::optional<MarkupTag> MarkupReader::tagOfOneLine() {
  const qsizetype lastEnd = lastTagEnd();
  MarkupTag tag;
  if (!at(u"!")) {
    if (at(u"/")) {
      ++pos_;
      tag.edge = MarkupTag::Edge::End;
    }
    tag.name = word().raw;
    if (tag.edge == MarkupTag::Edge::Start && tag.name.empty())
      return {};
    if (tag.edge == MarkupTag::Edge::Start && atSpace())
      tag.attributes = attributes();
  }
  if (pos_ > lastEnd)
    return {};
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
    // A single quote behind a backslash does not end the word.
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
  std::vector<qsizetype> places;
  while (!atEnd() && pos_ <= lastTagEnd_) {
    if (cutAttributes_.count(pos_) > 0) {
      pos_ = lineEnd_.at;
      break;
    }
    places.push_back(pos_);
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
    // The importer does not replace entities between single quotes.
    if (value.quote == u'\'')
      text.replace(u'&', QStringLiteral("&amp;"));
    found.push_back({name, text});
  }
  if (pos_ > lastTagEnd_)
    cutAttributes_.insert(places.begin(), places.end());
  return found;
}

}  // namespace kelmora::terminal
