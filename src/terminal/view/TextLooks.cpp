#include "terminal/view/TextLooks.h"

#include <QTextCursor>

namespace kelmora::terminal {

namespace {

/// Far more looks than a game uses; a limit against servers that send all colours.
constexpr qsizetype mostKept = 4096;

QString span(const QString& property, quint32 colour) {
  return colour == TextLook::none ? QString()
                                  : QStringLiteral("<span style=\"%1:#%2\">")
                                        .arg(property)
                                        .arg(colour, 6, 16, QLatin1Char('0'));
}

}  // namespace

TextLooks::TextLooks(const QString& styleSheet) {
  sample_.setUndoRedoEnabled(false);
  sample_.setDefaultStyleSheet(styleSheet);
}

QTextCharFormat TextLooks::formatOf(const StyledText::Run& run) {
  if (run.target.isEmpty())
    return kept(formats_, run.look, QStringLiteral("x"));
  QTextCharFormat format =
      kept(linkFormats_, run.look, QStringLiteral("<a href=\"http://a\">x</a>"));
  format.setAnchorHref(run.target);
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

}  // namespace kelmora::terminal
