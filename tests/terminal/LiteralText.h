#pragma once

#include <QRegularExpression>
#include <QString>
#include <optional>

#include "terminal/core/StyledText.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// What the toolkit's importer makes of the client's own HTML, written in the simplest
/// way. Nothing if it contains any other HTML.
class LiteralText {
 public:
  static std::optional<StyledText> of(const QString& html) {
    LiteralText reader;
    static const QRegularExpression token(
        R"re(<br>|<span style="([^"]*)">|<a href="([^"]*)">|</a>|&#32;|&nbsp;|&lt;|&gt;|[\s\S])re");
    qsizetype at = 0;
    while (at < html.size()) {
      const auto match = token.match(html, at, QRegularExpression::NormalMatch,
                                     QRegularExpression::AnchorAtOffsetMatchOption | mayHaveHalves);
      const QString found = match.captured();
      if (found.isEmpty() ||
          !reader.take(found, match, QStringView(html).sliced(at + found.size())))
        return std::nullopt;
      at += found.size();
    }
    reader.endRun();
    return StyledText{reader.text_, reader.runs_};
  }

  /// The same text with neighbouring runs of the same look joined.
  static StyledText joined(const StyledText& text) {
    StyledText joined{text.text, {}};
    for (const StyledText::Run& run : text.runs) {
      if (!joined.runs.empty() && joined.runs.back().look == run.look &&
          joined.runs.back().target == run.target)
        joined.runs.back().end = run.end;
      else
        joined.runs.push_back(run);
    }
    return joined;
  }

  static QByteArray told(const StyledText& text) {
    const auto colour = [](quint32 value) {
      return value == TextLook::none ? QByteArray("none") : QByteArray::number(value, 16);
    };
    QByteArray all;
    qsizetype start = 0;
    for (const StyledText::Run& run : joined(text).runs) {
      all += '[' + colour(run.look.text) + (run.look.backgroundCameFirst ? "<" : " ") +
             colour(run.look.background) + ' ' + run.target.toUtf8() + ']' +
             text.text.sliced(start, run.end - start).toUtf8();
      start = run.end;
    }
    return all + (start == text.text.size() ? "" : "and more than its runs have");
  }

 private:
  /// A token, and the text around it, may be cut within a surrogate pair. Expressions
  /// refuse such texts unless they are told not to check.
  static constexpr auto mayHaveHalves = QRegularExpression::DontCheckSubjectStringMatchOption;

  bool take(const QString& token, const QRegularExpressionMatch& match, QStringView rest) {
    if (token == "<br>") {
      text_ += QChar::LineSeparator;
      dropsBlanks_ = true;
    } else if (token.startsWith("<span")) {
      return open(match.captured(1));
    } else if (token.startsWith("<a ")) {
      endRun();
      static const QRegularExpression form(R"(^[!-;=?-~]+$)");
      const auto target = of(match.captured(2) + '"');
      if (!target || !form.match(match.captured(2)).hasMatch())
        return false;
      target_ = target->text.chopped(1);
    } else if (token == "</a>") {
      endRun();
      target_.clear();
    } else if (token == "&nbsp;") {
      add(QChar::Nbsp);
    } else if (token == "&#32;" || token == "&lt;" || token == "&gt;") {
      add(token == "&lt;" ? '<' : token == "&gt;" ? '>' : ' ');
    } else if (token == "&" && mayBeEntity(rest)) {
      return false;
    } else {
      for (const QChar character : token) {
        if (QStringView(u"\u2029\uFFFC\uFDD0\uFDD1<").contains(character))
          return false;
        add(character);
      }
    }
    return true;
  }

  static bool mayBeEntity(QStringView rest) {
    static const QRegularExpression named("^[\\p{L}\\p{N}#+-]{1,8}(;|$)");
    const QString near = rest.left(9).toString();
    // A NUL ends a number, unless there is a tag before it.
    return near.section('<', 0, 0).contains(QChar(QChar::Null)) ||
           named.match(near, 0, QRegularExpression::NormalMatch, mayHaveHalves).hasMatch();
  }

  bool open(const QString& style) {
    static const QRegularExpression form(
        "^(?:color:#([0-9a-fA-F]{6}))?;?(?:background-color:#([0-9a-fA-F]{6}))?$");
    const auto match = form.match(style);
    if (!match.hasMatch() || style.isEmpty())
      return false;
    endRun();
    if (look_ == TextLook())
      look_.backgroundCameFirst = match.captured(1).isEmpty();
    if (!match.captured(1).isEmpty())
      look_.text = match.captured(1).toUInt(nullptr, 16);
    if (!match.captured(2).isEmpty())
      look_.background = match.captured(2).toUInt(nullptr, 16);
    return true;
  }

  void add(QChar character) {
    const bool isBlank = character.isSpace() && character != QChar::Nbsp;
    if (!isBlank || !dropsBlanks_)
      text_ += isBlank ? QChar(' ') : character;
    dropsBlanks_ = isBlank;
  }

  void endRun() {
    if (text_.size() > (runs_.empty() ? 0 : runs_.back().end))
      runs_.push_back({text_.size(), look_, target_});
  }

  QString text_;
  std::vector<StyledText::Run> runs_;
  TextLook look_;
  QString target_;
  bool dropsBlanks_ = true;
};
