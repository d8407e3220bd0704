#include "terminal/core/MarkupAttributes.h"

#include <QRegularExpression>
#include <QStringList>
#include <QStringTokenizer>
#include <algorithm>
#include <array>

namespace {

/// The values of a style declaration; without words it is a colour.
struct DeclarationRow {
  QStringView name;
  QStringView words;
};

constexpr std::array allowedDeclarations{
    DeclarationRow{u"color", {}},
    DeclarationRow{u"background-color", {}},
    DeclarationRow{u"font-weight",
                   u"normal bold bolder lighter 100 200 300 400 500 600 700 800 900"},
    DeclarationRow{u"font-style", u"normal italic oblique"},
    DeclarationRow{u"text-decoration", u"none underline overline line-through"},
};

/// Null when there is none.
const DeclarationRow* declarationNamed(QStringView name) {
  const auto found = std::find_if(allowedDeclarations.begin(), allowedDeclarations.end(),
                                  [name](const DeclarationRow& row) {
                                    return row.name.compare(name, Qt::CaseInsensitive) == 0;
                                  });
  return found == allowedDeclarations.end() ? nullptr : &*found;
}

bool isColour(QStringView value) {
  static const QRegularExpression colour(
      QStringLiteral(R"(\A(?:#?[a-zA-Z0-9]{1,32}|(?:[rR][gG][bB]|[hH][sS][vVlL])[aA]?)"
                     R"(\( {0,3}[0-9.]{1,6}%?(?: {0,3}, {0,3}[0-9.]{1,6}%?){2,3} {0,3}\))\z)"));
  return colour.match(value.toString()).hasMatch();
}

/// Each word once; nothing when there is one that is not known.
QString wordsOf(QStringView known, QStringView value) {
  const auto knownWords = known.split(u' ');
  QStringList words;
  for (const QStringView word : value.tokenize(u' ', Qt::SkipEmptyParts)) {
    if (std::none_of(knownWords.begin(), knownWords.end(), [word](QStringView one) {
          return one.compare(word, Qt::CaseInsensitive) == 0;
        }))
      return {};
    if (!words.contains(word, Qt::CaseInsensitive))
      words += word.toString();
  }
  return words.join(u' ');
}

/// These answer what of an attribute's value may stay, nothing if none. A value
/// of a style may be written again for each span inside its own, so it is short.
QString colourValue(QStringView value) {
  return isColour(value.trimmed()) ? value.trimmed().toString() : QString();
}

QString faceValue(QStringView value) {
  static const QRegularExpression face(QStringLiteral(R"(\A[\p{L}\p{N} ,._-]{1,64}\z)"));
  return face.match(value.toString()).hasMatch() ? value.toString() : QString();
}

QString styleValue(QStringView value) {
  QStringList kept;
  for (const QStringView declaration : value.tokenize(u';')) {
    const qsizetype colon = declaration.indexOf(u':');
    if (colon < 0)
      continue;
    const auto* row = declarationNamed(declaration.first(colon).trimmed());
    if (!row)
      continue;
    const QStringView told = declaration.sliced(colon + 1);
    const QString kind = row->words.empty() ? colourValue(told) : wordsOf(row->words, told);
    if (!kind.isEmpty())
      kept += row->name.toString() + u':' + kind;
  }
  return kept.join(u';');
}

/// A link leads to the web or to a letter, never to a file of the player's.
QString linkValue(QStringView value) {
  const auto begin = std::find_if_not(value.begin(), value.end(), [](QChar character) {
    return character.isSpace() || character.category() == QChar::Other_Control;
  });
  const QStringView link = value.sliced(begin - value.begin());
  constexpr std::array<QStringView, 3> schemes{u"http:", u"https:", u"mailto:"};
  const auto scheme = std::find_if(schemes.begin(), schemes.end(), [link](QStringView one) {
    return link.startsWith(one, Qt::CaseInsensitive);
  });
  // Written anew too: letters beyond ASCII may pass for the same ones.
  return scheme == schemes.end() ? QString()
                                 : scheme->toString().append(link.sliced(scheme->size()));
}

struct AttributeRow {
  QStringView tag;
  QStringView name;
  QString (*allowedPart)(QStringView value);
};

constexpr std::array allowedAttributes{
    AttributeRow{u"font", u"color", colourValue},
    AttributeRow{u"font", u"face", faceValue},
    AttributeRow{u"span", u"style", styleValue},
    AttributeRow{u"a", u"href", linkValue},
};

}  // namespace

namespace markup {

QString safeAttributes(QStringView tag, const std::vector<MarkupTag::Attribute>& attributes) {
  QString safe;
  for (const MarkupTag::Attribute& attribute : attributes)
    for (const AttributeRow& row : allowedAttributes) {
      if (row.tag != tag || row.name.compare(attribute.name, Qt::CaseInsensitive) != 0)
        continue;
      QString value = row.allowedPart(attribute.value);
      value.replace(u'"', QStringLiteral("&quot;"))
          .replace(u'<', QStringLiteral("&lt;"))
          .replace(u'>', QStringLiteral("&gt;"));
      if (!value.isEmpty())
        safe.append(u' ').append(row.name).append(u"=\"").append(value).append(u'"');
    }
  return safe;
}

QString mergedStyle(const QString& outer, const QString& inner) {
  const QString all =
      QString(outer + inner).replace(QStringLiteral(" style=\""), QStringLiteral(";")).remove(u'"');
  QStringList kept;
  for (const DeclarationRow& row : allowedDeclarations) {
    const auto declarations = QStringView(all).split(u';');
    const auto last =
        std::find_if(declarations.rbegin(), declarations.rend(), [&row](QStringView declaration) {
          return declaration.first(std::max<qsizetype>(declaration.indexOf(u':'), 0)) == row.name;
        });
    if (last != declarations.rend())
      kept += last->toString();
  }
  return QStringLiteral(" style=\"%1\"").arg(kept.join(u';'));
}

}  // namespace markup
