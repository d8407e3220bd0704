#pragma once

#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <QStringList>

inline const QSet<QString> allowedNames{
    "b",  "strong", "i",   "em",   "u",   "s",    "del",        "big",  "small", "sub",     "sup",
    "tt", "code",   "kbd", "samp", "var", "cite", "dfn",        "font", "span",  "address", "nobr",
    "dl", "dt",     "dd",  "br",   "p",   "div",  "center",     "pre",  "h1",    "h2",      "h3",
    "h4", "h5",     "h6",  "ul",   "ol",  "li",   "blockquote", "hr",   "a"};

inline const QSet<QString> blockNames{"div", "center", "pre", "h1", "h2", "h3",        "h4",
                                      "h5",  "h6",     "ul",  "ol", "dl", "blockquote"};

/// Matches an allowed attribute in the only form in which it may be written.
inline const QRegularExpression& attributeForm(const QString& tag) {
  static const QRegularExpression none("^(?!)");
  static const QRegularExpression font(
      R"(^(color="[\w#(),.% ]{1,64}"|face="[^"<>&]{1,64}"|size="[+-]?[1-7]")$)");
  static const QRegularExpression aligned("^align=\"(left|right|center|justify)\"$");
  static const QRegularExpression numbered("^start=\"-?[0-9]{1,6}\"$");
  static const QSet<QString> alignedTags{"p", "div", "h1", "h2", "h3", "h4", "h5", "h6"};
  static const QRegularExpression span = [] {
    const QString declaration =
        R"(((background-)?color:[\w#(),.% ]+|font-(weight|style):[\w ]+|)"
        R"(font-size:([0-9.]{1,6}p[tx]|small|medium|(x-|xx-)?large)|text-decoration:[\w -]+))";
    return QRegularExpression("^style=\"" + declaration + "(;" + declaration + ")*\"$");
  }();
  static const QRegularExpression link(R"(^href="(?:https?|mailto):[^"<>]*"$)");
  return tag == "font"               ? font
         : tag == "span"             ? span
         : tag == "a"                ? link
         : tag == "ol"               ? numbered
         : alignedTags.contains(tag) ? aligned
                                     : none;
}

/// What is wrong with the filter's result; empty if nothing is. It does not have to
/// interpret tags, because in a result each must have exactly one form.
inline QString faultOf(const QString& result) {
  // An expression never matches a text with half a surrogate pair.
  const QString safe = QString::fromUtf8(result.toUtf8());
  static const QRegularExpression tagForm(R"(<(/?)([a-z][a-z0-9]*)((?: [a-z]+="[^"<>]*")*)>)");
  static const QRegularExpression attribute(R"([a-z]+="[^"<>]*")");
  QStringList open;
  for (qsizetype at = safe.indexOf('<'); at >= 0; at = safe.indexOf('<', at + 1)) {
    const auto tag = tagForm.match(safe, at, QRegularExpression::NormalMatch,
                                   QRegularExpression::AnchorAtOffsetMatchOption |
                                       QRegularExpression::DontCheckSubjectStringMatchOption);
    if (!tag.hasMatch())
      return "no tag: " + safe.mid(at, 40);
    const QString name = tag.captured(2);
    if (!allowedNames.contains(name))
      return "not allowed: " + tag.captured();
    for (auto found = attribute.globalMatch(tag.captured(3)); found.hasNext();)
      if (const QString one = found.next().captured(); !attributeForm(name).match(one).hasMatch())
        return "not allowed in " + name + ": " + one;
    if (name == "a" && tag.captured(1).isEmpty() && tag.captured(3).isEmpty())
      return "an anchor without a link";
    if (!blockNames.contains(name))
      continue;
    if (tag.captured(1).isEmpty())
      open.append(name);
    else if (!open.contains(name))
      return "closes nothing: " + name;
    else
      while (open.takeLast() != name) {
      }
    if (open.size() > 32)
      return "too deep";
  }
  return {};
}
