#include "terminal/markup/Entities.h"

#include <algorithm>
#include <array>

namespace kelmora::terminal {

namespace {

struct Entity {
  QStringView text;
  char16_t character;
};

constexpr std::array<Entity, 4> entities{
    {{u"&#32;", u' '}, {u"&nbsp;", u'\u00A0'}, {u"&lt;", u'<'}, {u"&gt;", u'>'}}};

/// The importer looks for the ";" of an entity in so many characters behind the "&".
constexpr qsizetype entityReach = 9;

/// Whether an "&" before this text certainly begins no entity.
bool beginsNoEntity(QStringView rest) {
  const QStringView name = rest.first(std::min(entityReach, rest.size()));
  const auto* const end = std::find_if_not(name.begin(), name.end(), [](QChar part) {
    return part.isLetterOrNumber() || part == u'#' || part == u'+' || part == u'-';
  });
  // The end of the text ends an entity as well. A NUL may end a number, but not one
  // that is behind the next tag.
  const bool isNamed =
      end != name.begin() && (end == name.end() ? name.size() < entityReach : *end == u';');
  const auto* const tag = std::find(name.begin(), name.end(), u'<');
  return !isNamed && std::find(name.begin(), tag, QChar::Null) == tag;
}

}  // namespace

std::optional<QString> withoutEntities(const QString& html, QStringView part) {
  QString shown;
  shown.reserve(part.size());
  while (true) {
    const qsizetype start = part.indexOf(u'&');
    shown += part.first(start < 0 ? part.size() : start);
    if (start < 0)
      return shown;
    part = part.sliced(start);
    const auto entity = std::find_if(entities.begin(), entities.end(), [part](const Entity& one) {
      return part.startsWith(one.text);
    });
    if (entity != entities.end()) {
      shown += QChar(entity->character);
      part = part.sliced(entity->text.size());
    } else if (beginsNoEntity(QStringView(part.begin() + 1, html.cend()))) {
      shown += u'&';
      part = part.sliced(1);
    } else {
      return std::nullopt;
    }
  }
}

std::optional<QString> targetOf(const MarkupTag::Attribute& attribute) {
  const QString quoted = attribute.value + u'"';
  const bool isPlain = std::all_of(quoted.begin(), quoted.end(), [](QChar character) {
    return character > u' ' && character <= u'~' && character != u'<' && character != u'>';
  });
  return isPlain ? withoutEntities(quoted, QStringView(quoted).chopped(1)) : std::nullopt;
}

}  // namespace kelmora::terminal
