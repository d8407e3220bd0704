#include "terminal/view/PaneQueue.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "terminal/core/SafeMarkup.h"

namespace {

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
// Older compilers do not deduce this by themselves.
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

qsizetype sizeOf(const QString& text) {
  return text.size() * static_cast<qsizetype>(sizeof(QChar));
}

qsizetype memoryOf(const PaneText& text) {
  constexpr qsizetype overhead = 256;
  return overhead +
         std::visit(Overloaded{[](const ServerText& server) {
                                 return server.bytes.size() + server.plain.size();
                               },
                               [](const SafeHtml& html) { return sizeOf(html.html); },
                               [](const StatusLine& status) { return sizeOf(status.html); },
                               [](const PlainText& plain) { return sizeOf(plain.text); }},
                    text);
}

bool isLetterOrDigit(char32_t character) {
  return (character >= U'0' && character <= U'9') || (character >= U'A' && character <= U'Z') ||
         (character >= U'a' && character <= U'z');
}

/// Whether a text puts characters into the pane. Blanks may collapse, and what
/// an entity shows is the toolkit's to say.
enum class Shown { Nothing, Perhaps, Something };

Shown shownOf(QByteArrayView plain) {
  if (plain.isEmpty())
    return Shown::Nothing;
  if (plain.contains('\n'))
    return Shown::Something;
  const auto isLetter = [](char byte) { return isLetterOrDigit(static_cast<unsigned char>(byte)); };
  const auto end = std::find(plain.begin(), plain.end(), '&');
  return std::any_of(plain.begin(), end, isLetter) ? Shown::Something : Shown::Perhaps;
}

Shown shownOfMarkup(QStringView html) {
  auto shown = Shown::Nothing;
  while (!html.isEmpty() && html.front() != u'&') {
    if (html.front() != u'<') {
      if (isLetterOrDigit(html.front().unicode()))
        return Shown::Something;
      shown = Shown::Perhaps;
      html = html.sliced(1);
      continue;
    }
    if (html.startsWith(u"<br"))
      return Shown::Something;
    const qsizetype end = html.indexOf(u'>');
    html = end < 0 ? QStringView() : html.sliced(end + 1);
  }
  return html.isEmpty() ? shown : Shown::Perhaps;
}

/// A read that is too long for one turn, in parts that show the same.
std::vector<PaneText> partsOf(const ServerText& read) {
  std::vector<PaneText> parts;
  if (!read.divisions.empty()) {
    for (ServerText& part : read.divided())
      parts.emplace_back(std::move(part));
  } else {
    for (QString& piece : safeMarkupPieces(read.decoded(), ServerText::partLength))
      parts.emplace_back(SafeHtml{std::move(piece)});
  }
  return parts;
}

bool isLong(const ServerText& read) {
  const bool mayBeDivided = !read.divisions.empty() || read.tags == ServerText::Tags::FromServer ||
                            !read.state.translator.hasPlainColours();
  return mayBeDivided && read.bytes.size() > ServerText::partLength;
}

}  // namespace

void PaneQueue::add(PaneText text) {
  const auto* const read = std::get_if<ServerText>(&text);
  if (!read || !isLong(*read))
    append(std::move(text));
  else
    for (PaneText& part : partsOf(*read))
      append(std::move(part));
}

void PaneQueue::append(PaneText text) {
  // So many bytes at a time cost little to count, and fewer make no long queue.
  constexpr qsizetype worthCounting = qsizetype{128} * 1024;
  const qsizetype size = memoryOf(text);
  size_ += size;
  uncountedSize_ += size;
  waiting_.push_back({.text = std::move(text)});
  if (uncountedSize_ >= worthCounting)
    dropUnseen();
}

PaneText PaneQueue::take() {
  if (auto bridge = std::exchange(bridge_, std::nullopt))
    return *std::move(bridge);
  Waiting first = std::move(waiting_.front());
  waiting_.pop_front();
  if (countedTexts_ > 0)
    --countedTexts_;
  else
    uncountedSize_ -= memoryOf(first.text);
  size_ -= memoryOf(first.text);
  return std::move(first.text);
}

void PaneQueue::dropUnseen() {
  for (; countedTexts_ < waiting_.size(); ++countedTexts_)
    count(waiting_[countedTexts_]);
  uncountedSize_ = 0;
  // The count began somewhere in a paragraph, and the first one to be shown
  // begins in the middle of one too.
  constexpr qint64 atBothEnds = 2;
  while (countedTexts_ > 0 && waiting_.front().isPassing &&
         counted_.ended() - waiting_.front().endedParagraphs >= limits_.paragraphs + atBothEnds) {
    Waiting& first = waiting_.front();
    size_ -= memoryOf(first.text);
    if (first.look == Look::Own)
      bridge_ = std::move(first.text);
    waiting_.pop_front();
    --countedTexts_;
    skipped_ = true;
  }
}

void PaneQueue::count(Waiting& waiting) {
  const auto setPassing = [&](Shown shown, bool isPassing) {
    waiting.isPassing = isPassing && shown != Shown::Perhaps;
    waiting.look = shown == Shown::Nothing ? Look::FromBefore : Look::Own;
  };
  if (auto* server = std::get_if<ServerText>(&waiting.text);
      server && server->tags == ServerText::Tags::FromServer) {
    size_ -= memoryOf(waiting.text);
    waiting.text = SafeHtml{safeMarkup(server->decoded())};
    size_ += memoryOf(waiting.text);
  }
  std::visit(Overloaded{[&](const ServerText& server) {
                          counted_.addLines(server.plain);
                          setPassing(shownOf(server.plain), true);
                        },
                        [&](const SafeHtml& html) {
                          setPassing(shownOfMarkup(html.html), counted_.addMarkup(html.html));
                        },
                        [&](const StatusLine& status) {
                          counted_.addParagraphs(1);
                          setPassing(shownOfMarkup(status.html), counted_.addMarkup(status.html));
                        },
                        [&](const PlainText& plain) {
                          counted_.addParagraphs(plain.text.count(u'\n'));
                          waiting.isPassing = true;
                        }},
             waiting.text);
  waiting.endedParagraphs = counted_.ended();
}

bool PaneQueue::takeSkip() {
  return std::exchange(skipped_, false) && bridge_;
}
