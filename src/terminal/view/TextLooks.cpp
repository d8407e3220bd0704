#include "terminal/view/TextLooks.h"

#include <QTextCursor>

namespace {

/// Far more than a game has; only a server that plays with colours gets here.
constexpr qsizetype mostKept = 4096;

/// Takes "#" and six digits off the front.
std::optional<quint32> takeColour(QStringView& style) {
  constexpr qsizetype length = 7;
  if (style.size() < length || style.front() != u'#')
    return std::nullopt;
  quint32 colour = 0;
  for (const QChar digit : style.sliced(1, length - 1)) {
    const char16_t code = digit.unicode();
    if (code >= u'0' && code <= u'9')
      colour = colour * 16 + (code - u'0');
    else if ((code | 0x20) >= u'a' && (code | 0x20) <= u'f')
      colour = colour * 16 + ((code | 0x20) - u'a' + 10);
    else
      return std::nullopt;
  }
  style = style.sliced(length);
  return colour;
}

bool takePrefix(QStringView& style, QStringView prefix) {
  if (!style.startsWith(prefix))
    return false;
  style = style.sliced(prefix.size());
  return true;
}

QString span(const QString& property, quint32 colour) {
  return colour == TextLook::none ? QString()
                                  : QStringLiteral("<span style=\"%1:#%2\">")
                                        .arg(property)
                                        .arg(colour, 6, 16, QLatin1Char('0'));
}

}  // namespace

std::optional<TextLook> TextLook::inside(QStringView style) const {
  TextLook inner = *this;
  const bool colourless = text == none && background == none;
  const bool withText = takePrefix(style, u"color:");
  if (withText) {
    const auto colour = takeColour(style);
    if (!colour)
      return std::nullopt;
    inner.text = *colour;
    if (style.isEmpty())
      return inner;
    if (!takePrefix(style, u";"))
      return std::nullopt;
  }
  if (!takePrefix(style, u"background-color:"))
    return std::nullopt;
  const auto colour = takeColour(style);
  if (!colour || !style.isEmpty())
    return std::nullopt;
  inner.background = *colour;
  if (colourless)
    inner.backgroundCameFirst = !withText;
  return inner;
}

size_t qHash(const TextLook& look, size_t seed) {
  return qHashMulti(seed, look.text, look.background, look.backgroundCameFirst);
}

TextLooks::TextLooks(const QString& styleSheet) {
  sample_.setUndoRedoEnabled(false);
  sample_.setDefaultStyleSheet(styleSheet);
}

QTextCharFormat TextLooks::format(const TextLook& look) {
  return kept(formats_, look, QStringLiteral("x"));
}

QTextCharFormat TextLooks::linkFormat(const TextLook& look, const QString& target) {
  QTextCharFormat format = kept(linkFormats_, look, QStringLiteral("<a href=\"http://a\">x</a>"));
  format.setAnchorHref(target);
  return format;
}

const QTextCharFormat& TextLooks::kept(Formats& formats, const TextLook& look,
                                       const QString& body) {
  if (const auto known = formats.constFind(look); known != formats.constEnd())
    return *known;
  if (formats.size() >= mostKept) {
    formats.clear();
    sample_.clear();
  }
  const QString text = span(QStringLiteral("color"), look.text);
  const QString background = span(QStringLiteral("background-color"), look.background);
  QTextCursor cursor(&sample_);
  cursor.movePosition(QTextCursor::End);
  cursor.insertHtml((look.backgroundCameFirst ? background + text : text + background) + body);
  return *formats.insert(look, cursor.charFormat());
}
