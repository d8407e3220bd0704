#include "terminal/markup/MarkupAttributes.h"

#include <QRegularExpression>
#include <QStringList>
#include <QStringTokenizer>
#include <algorithm>
#include <array>

namespace kelmora::terminal {

namespace {

enum class Value { Words, Colour, Size };

/// A style declaration that is allowed: the kind of its value, and the allowed words.
struct DeclarationRow {
  QStringView name;
  Value value;
  QStringView words;
};

constexpr std::array allowedDeclarations{
    DeclarationRow{u"color", Value::Colour, {}},
    DeclarationRow{u"background-color", Value::Colour, {}},
    DeclarationRow{u"font-weight", Value::Words,
                   u"normal bold bolder lighter 100 200 300 400 500 600 700 800 900"},
    DeclarationRow{u"font-style", Value::Words, u"normal italic oblique"},
    DeclarationRow{u"font-size", Value::Size, u"small medium large x-large xx-large"},
    DeclarationRow{u"text-decoration", Value::Words, u"none underline overline line-through"},
};

/// In points or pixels; the player's own fonts have the same limit.
constexpr double largestFont = 200;

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

/// Each word of the value once; empty if any of them is unknown.
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

// The following return the allowed part of an attribute's value, which may be empty.
// Values of styles are kept short, because they may be repeated in every span inside.

QString colourValue(QStringView value) {
  return isColour(value.trimmed()) ? value.trimmed().toString() : QString();
}

QString faceValue(QStringView value) {
  static const QRegularExpression face(QStringLiteral(R"(\A[\p{L}\p{N} ,._-]{1,64}\z)"));
  return face.match(value.toString()).hasMatch() ? value.toString() : QString();
}

bool hasWord(QStringView words, QStringView word) {
  for (const QStringView one : words.tokenize(u' '))
    if (one == word)
      return true;
  return false;
}

/// The value if it is one of the words or matches the expression; otherwise empty.
QString wordOr(QStringView words, const QRegularExpression& expression, QStringView value) {
  const QString text = value.trimmed().toString().toLower();
  return (!text.isEmpty() && hasWord(words, text)) || expression.match(text).hasMatch() ? text
                                                                                        : QString();
}

QString sizeValue(QStringView words, QStringView value) {
  static const QRegularExpression size(QStringLiteral(R"(\A([0-9]{1,3}(?:\.[0-9]{1,2})?)p[tx]\z)"));
  const QString text = wordOr(words, size, value);
  const auto match = size.match(text);
  const double number = match.captured(1).toDouble();
  return match.hasMatch() && (number < 1 || number > largestFont) ? QString() : text;
}

QString stepValue(QStringView value) {
  static const QRegularExpression step(QStringLiteral(R"(\A[+-]?[1-7]\z)"));
  return wordOr({}, step, value);
}

QString alignmentValue(QStringView value) {
  static const QRegularExpression none(QStringLiteral("(?!)"));
  return wordOr(u"left right center justify", none, value);
}

QString numberValue(QStringView value) {
  static const QRegularExpression number(QStringLiteral(R"(\A-?[0-9]{1,6}\z)"));
  return wordOr({}, number, value);
}

QString declarationValue(const DeclarationRow& row, QStringView value) {
  switch (row.value) {
    case Value::Words:
      return wordsOf(row.words, value);
    case Value::Colour:
      return colourValue(value);
    case Value::Size:
      return sizeValue(row.words, value);
  }
  return {};
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
    const QString told = declarationValue(*row, declaration.sliced(colon + 1));
    if (!told.isEmpty())
      kept += row->name.toString() + u':' + told;
  }
  return kept.join(u';');
}

/// Links may lead to web pages and mail addresses, but never to the player's files.
QString linkValue(QStringView value) {
  const auto begin = std::find_if_not(value.begin(), value.end(), [](QChar character) {
    return character.isSpace() || character.category() == QChar::Other_Control;
  });
  const QStringView link = value.sliced(begin - value.begin());
  constexpr std::array<QStringView, 3> schemes{u"http:", u"https:", u"mailto:"};
  const auto scheme = std::find_if(schemes.begin(), schemes.end(), [link](QStringView one) {
    return link.startsWith(one, Qt::CaseInsensitive);
  });
  // The scheme is written anew, because a comparison without regard to case also
  // accepts some letters outside ASCII.
  return scheme == schemes.end() ? QString()
                                 : scheme->toString().append(link.sliced(scheme->size()));
}

struct AttributeRow {
  QStringView tags;  ///< their names, separated by blanks
  QStringView name;
  QString (*allowedPart)(QStringView value);
};

constexpr std::array allowedAttributes{
    AttributeRow{u"font", u"color", colourValue},
    AttributeRow{u"font", u"face", faceValue},
    AttributeRow{u"font", u"size", stepValue},
    AttributeRow{u"span", u"style", styleValue},
    AttributeRow{u"a", u"href", linkValue},
    AttributeRow{u"p div h1 h2 h3 h4 h5 h6", u"align", alignmentValue},
    AttributeRow{u"ol", u"start", numberValue},
};

}  // namespace

namespace markup {

QString safeAttributes(QStringView tag, const std::vector<MarkupTag::Attribute>& attributes) {
  QString safe;
  for (const MarkupTag::Attribute& attribute : attributes)
    for (const AttributeRow& row : allowedAttributes) {
      if (row.name.compare(attribute.name, Qt::CaseInsensitive) != 0 || !hasWord(row.tags, tag))
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

}  // namespace kelmora::terminal
