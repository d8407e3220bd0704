#include "terminal/view/DirectText.h"

#include <algorithm>
#include <array>

namespace {

/// Blanks in a row show as one, and none are shown where a line begins.
enum class Blanks { Kept, Dropped };

struct Entity {
  QStringView text;
  char16_t character;
};

constexpr std::array<Entity, 4> entities{
    {{u"&#32;", u' '}, {u"&nbsp;", u'\u00A0'}, {u"&lt;", u'<'}, {u"&gt;", u'>'}}};

/// The importer looks for the ";" of an entity among so many characters.
constexpr qsizetype entityReach = 9;

/// Characters that stand for something else than text in a document.
bool isStructural(char16_t code) {
  return code == QChar::ParagraphSeparator || code == QChar::ObjectReplacementCharacter ||
         code == u'\uFDD0' || code == u'\uFDD1';
}

class Reader {
 public:
  explicit Reader(QStringView html) : html_(html) { result_.text.reserve(html.size()); }

  [[nodiscard]] bool read() {
    while (pos_ < html_.size()) {
      const char16_t code = html_[pos_].unicode();
      if (code == u'<' ? !tag() : !character(code))
        return false;
    }
    endRun();
    return true;
  }
  [[nodiscard]] DirectText result() && { return std::move(result_); }

 private:
  /// These answer false where the importer has to decide. A character is a "&"
  /// or what stands for itself.
  [[nodiscard]] bool character(char16_t code);
  [[nodiscard]] bool tag();
  [[nodiscard]] bool span(QStringView style);
  [[nodiscard]] bool link();

  void add(QChar character);
  void endRun(const QString& target = {});
  [[nodiscard]] bool takePrefix(QStringView prefix);
  /// The character that an entity stands for, "&" itself where none is.
  [[nodiscard]] std::optional<QChar> takeEntity();

  QStringView html_;
  qsizetype pos_ = 0;
  Blanks blanks_ = Blanks::Dropped;
  TextLook look_;
  DirectText result_;
};

bool Reader::character(char16_t code) {
  if (code == u'&') {
    const auto entity = takeEntity();
    if (entity)
      add(*entity);
    return entity.has_value();
  }
  if (isStructural(code))
    return false;
  ++pos_;
  add(QChar(code));
  return true;
}

bool Reader::tag() {
  if (takePrefix(u"<br>")) {
    result_.text += QChar::LineSeparator;
    blanks_ = Blanks::Dropped;
    return true;
  }
  if (takePrefix(u"<span style=\"")) {
    const qsizetype end = html_.indexOf(u"\">", pos_);
    if (end < 0 || !span(html_.sliced(pos_, end - pos_)))
      return false;
    pos_ = end + 2;
    return true;
  }
  return takePrefix(u"<a href=\"") && link();
}

bool Reader::span(QStringView style) {
  const auto inner = look_.inside(style);
  if (!inner)
    return false;
  if (*inner != look_) {
    endRun();
    look_ = *inner;
  }
  return true;
}

bool Reader::link() {
  endRun();
  QString target;
  while (pos_ < html_.size() && html_[pos_] != u'"') {
    const char16_t code = html_[pos_].unicode();
    if (code == u'&') {
      const auto entity = takeEntity();
      if (!entity)
        return false;
      target += *entity;
    } else if (code <= u' ' || code > u'~' || code == u'<' || code == u'>') {
      return false;
    } else {
      target += QChar(code);
      ++pos_;
    }
  }
  if (target.isEmpty() || !takePrefix(u"\">"))
    return false;
  while (!takePrefix(u"</a>")) {
    if (pos_ >= html_.size() || html_[pos_] == u'<' || !character(html_[pos_].unicode()))
      return false;
  }
  endRun(target);
  return true;
}

void Reader::add(QChar character) {
  if (character.isSpace() && character != QChar::Nbsp) {
    if (blanks_ == Blanks::Dropped)
      return;
    blanks_ = Blanks::Dropped;
    character = u' ';
  } else {
    blanks_ = Blanks::Kept;
  }
  result_.text += character;
}

void Reader::endRun(const QString& target) {
  const qsizetype end = result_.text.size();
  const qsizetype start = result_.runs.empty() ? 0 : result_.runs.back().end;
  if (end > start)
    result_.runs.push_back({end, look_, target});
}

bool Reader::takePrefix(QStringView prefix) {
  if (!html_.sliced(pos_).startsWith(prefix))
    return false;
  pos_ += prefix.size();
  return true;
}

std::optional<QChar> Reader::takeEntity() {
  for (const Entity& entity : entities)
    if (takePrefix(entity.text))
      return QChar(entity.character);
  const QStringView name = html_.sliced(pos_ + 1, std::min(entityReach, html_.size() - pos_ - 1));
  const auto isNamed = [](QChar part) {
    return part.isLetterOrNumber() || part == u'#' || part == u'+' || part == u'-';
  };
  const auto end = std::find_if_not(name.begin(), name.end(), isNamed);
  // The name of one that is not known here, or the end of the text, which may
  // end a name too, as may spans that are left out before the importer sees
  // them. A NUL ends a number whatever comes behind it.
  if ((end != name.begin() && (end == name.end() ? name.size() < entityReach : *end == u';')) ||
      name.sliced(end - name.begin()).startsWith(u"<s") || name.contains(QChar(QChar::Null)))
    return std::nullopt;
  ++pos_;
  return QChar(u'&');
}

}  // namespace

std::optional<DirectText> DirectText::read(QStringView html) {
  Reader reader(html);
  if (!reader.read())
    return std::nullopt;
  return std::move(reader).result();
}
