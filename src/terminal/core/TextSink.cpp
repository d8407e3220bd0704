#include "terminal/core/TextSink.h"

#include <algorithm>

#include "terminal/core/HtmlSink.h"
#include "terminal/core/Links.h"
#include "terminal/core/OrdinaryBytes.h"
#include "terminal/markup/Entities.h"
#include "terminal/markup/MarkupReader.h"

namespace kelmora::terminal {

namespace {

/// In bytes. In a longer segment the expression engine may give up on a row of
/// addresses, and what it does then depends on the rest of the read.
constexpr qsizetype longestWithLinks = 8192;

/// Characters that are not text to a document: they divide paragraphs or stand for
/// frames and objects.
bool isStructural(QChar character) {
  return character == QChar::ParagraphSeparator || character == QChar::ObjectReplacementCharacter ||
         character == u'\uFDD0' || character == u'\uFDD1';
}

bool isWide(char byte) {
  return static_cast<signed char>(byte) < 0 && byte != bytewalk::telnetCommand;
}

}  // namespace

TextSink::TextSink(qsizetype bytes, const PipelineOptions& options)
    : ReadSink(bytes), options_(options), text_(bytes + 64) {
  runs_.reserve(static_cast<std::size_t>(bytes / 32) + 4);
  beginSegment();
}

qsizetype TextSink::takeRun(QByteArrayView rest) {
  const char first = rest.front();
  if (isWide(first)) {
    const auto end = std::find_if_not(rest.begin(), rest.end(), isWide);
    const QByteArrayView run = rest.first(end - rest.begin());
    undecoded_.append(run);
    lines += run;
    return run.size();
  }
  if (first == ' ' || !ordinarybytes::isOrdinary(first))
    return 0;
  addWide();
  // Its double may have come already, with bytes in between that were dropped.
  if (ordinarybytes::isSpecialWhenDoubled(first) && lines.size() > 0 && lines.end()[-1] == first)
    segment_.mayHaveLink = true;
  const qsizetype room = rest.size() + ordinarybytes::atOnce;
  char* const bytes = lines.room(room);
  const qsizetype taken = ordinarybytes::copy(rest.data(), rest.size(), bytes, text_.room(room));
  if (taken == 0)
    return 0;
  const bool endsInBlank = rest[taken - 1] == ' ';
  lines.added(taken);
  text_.added(taken);
  blanks_ = endsInBlank ? Blanks::Dropped : Blanks::Kept;
  inPair_ = endsInBlank;
  return taken;
}

void TextSink::addByte(char byte, bool /*insideTag*/) {
  addWide();
  if (byte == '\t') {
    tabs_.push_back(lines.size());
    lines += bytewalk::hardTab;
    for (int half = 0; half < 2; ++half) {
      addBlank();
      addHardBlank();
    }
    return;
  }
  segment_.hasAmpersand = segment_.hasAmpersand || byte == '&';
  segment_.mayHaveLink = segment_.mayHaveLink || byte == '/' || byte == 'w';
  lines += byte;
  if (byte == ' ')
    addBlank();
  else
    add(static_cast<unsigned char>(byte));
}

void TextSink::endLine() {
  endSegment(Follows::LineEnd);
  lines += '\n';
  text_ += QChar(QChar::LineSeparator).unicode();
  blanks_ = Blanks::Dropped;
  beginSegment();
}

void TextSink::openSpan(const ColourSpan& span) {
  if (span.html.isEmpty())
    return;
  endSegment(Follows::Span);
  beginSegment();
  needsImporter_ = needsImporter_ || !span.isPlain;
  const TextLook look = span.inside(look_);
  if (look == look_)
    return;
  endRun();
  // Member by member: to copy the whole, the processor would have to wait until the
  // parts that it has just written are in memory.
  look_.text = look.text;
  look_.background = look.background;
  look_.backgroundCameFirst = look.backgroundCameFirst;
}

void TextSink::addBareColour(QByteArrayView colour) {
  for (const char byte : colour)
    add(static_cast<unsigned char>(byte));
  beginSegment();
}

std::optional<StyledText> TextSink::text() && {
  endSegment(Follows::Nothing);
  endRun();
  if (needsImporter_)
    return std::nullopt;
  return StyledText{std::move(text_).take(), std::move(runs_)};
}

void TextSink::add(char16_t character) {
  if (QChar::isSpace(character) && character != QChar::Nbsp) {
    addSoftBlank();
    return;
  }
  text_ += character;
  blanks_ = Blanks::Kept;
  inPair_ = false;
}

void TextSink::addSoftBlank() {
  if (blanks_ == Blanks::Kept)
    text_ += u' ';
  blanks_ = Blanks::Dropped;
  inPair_ = false;
}

void TextSink::addBlank() {
  if (inPair_)
    return addHardBlank();
  addSoftBlank();
  inPair_ = true;
}

void TextSink::addWide() {
  if (undecoded_.isEmpty())
    return;
  undecoded_.prepend(HtmlSink::markGuard);
  addDecoded(QString::fromUtf8(undecoded_).sliced(1));
  undecoded_.clear();
}

void TextSink::addDecoded(QStringView text) {
  for (const QChar character : text) {
    needsImporter_ = needsImporter_ || isStructural(character);
    add(character.unicode());
  }
}

void TextSink::endSegment(Follows follows) {
  addWide();
  if ((segment_.hasAmpersand || segment_.mayHaveLink) && !needsImporter_ && needsHtml()) {
    text_.truncate(segment_.text);
    blanks_ = segment_.blanks;
    needsImporter_ = needsImporter_ || !addHtml(segmentHtml(follows));
  }
}

void TextSink::beginSegment() {
  segment_.line = lines.size();
  segment_.text = text_.size();
  segment_.blanks = blanks_;
  segment_.hasAmpersand = false;
  segment_.mayHaveLink = false;
  inPair_ = false;
  tabs_.clear();
}

bool TextSink::needsHtml() {
  const QByteArrayView plain = plainSegment();
  const bool hasLink = options_.displayURLs && segment_.mayHaveLink && mayHaveLinks(plain);
  if (!segment_.hasAmpersand && (!hasLink || addOnlyLink()))
    return false;
  needsImporter_ = needsImporter_ || (hasLink && plain.size() > longestWithLinks);
  return true;
}

bool TextSink::addOnlyLink() {
  const QByteArrayView plain = plainSegment();
  const auto link = onlyLink(plain);
  // If text and plain copy differ in length, some bytes are not shown as themselves,
  // and the link's place in one is not its place in the other.
  if (!link || text_.size() - segment_.text != plain.size())
    return false;
  const QString behind(reinterpret_cast<const QChar*>(text_.begin()) + segment_.text + link->end,
                       plain.size() - link->end);
  text_.truncate(segment_.text + link->start);
  endRun();
  text_ += link->target;
  endRun(link->target);
  if (link->behind != u'\0') {
    text_ += link->behind;
    blanks_ = behind.isEmpty() ? Blanks::Kept : blanks_;
  }
  text_ += behind;
  return true;
}

QString TextSink::segmentHtml(Follows follows) const {
  HtmlSink sink(lines.size() - segment_.line,
                options_.parseHtml ? HtmlSink::Tags::Parsed : HtmlSink::Tags::Shown);
  sink.addBareColour(QByteArrayView(&HtmlSink::markGuard, 1));
  PipelineState state;
  qsizetype start = segment_.line;
  const auto walkTo = [&](qsizetype end) {
    walkBytes({lines.begin() + start, end - start}, options_, state, sink);
  };
  for (const qsizetype tab : tabs_) {
    walkTo(tab);
    sink.addByte('\t', false);
    start = tab + bytewalk::hardTab.size();
  }
  walkTo(lines.size());
  const QString html = std::move(sink).html(options_.displayURLs).sliced(1);
  return follows == Follows::LineEnd ? html + QStringLiteral("<br>")
         : follows == Follows::Span  ? html + QStringLiteral("<span>")
                                     : html;
}

bool TextSink::addHtml(const QString& html) {
  MarkupReader reader(html);
  QString target;
  while (true) {
    const auto text = withoutEntities(html, reader.text());
    if (!text)
      return false;
    addDecoded(*text);
    if (reader.atEnd())
      return true;
    const auto tag = reader.tag();
    if (!tag || tag->name != u"a")
      continue;
    endRun(std::exchange(target, {}));
    if (tag->edge == MarkupTag::Edge::End)
      continue;
    const auto value = tag->attributes.empty() ? std::nullopt : targetOf(tag->attributes.front());
    if (!value)
      return false;
    target = *value;
  }
}

void TextSink::endRun(const QString& target) {
  const qsizetype start = runs_.empty() ? 0 : runs_.back().end;
  if (text_.size() > start)
    runs_.push_back({text_.size(), look_, target});
}

}  // namespace kelmora::terminal
