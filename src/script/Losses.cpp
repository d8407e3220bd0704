#include "script/Losses.h"

#include "script/ScriptHost.h"

namespace kelmora::script {

namespace {

/// The beginning of the first line, enough to recognise the whole.
QString shortened(const QString& text) {
  constexpr qsizetype longest = 60;
  const qsizetype lineBreak = text.indexOf(u'\n');
  const QString line = lineBreak < 0 ? text : text.first(lineBreak);
  return line.size() <= longest ? line : line.first(longest) + QStringLiteral("...");
}

}  // namespace

bool Losses::tell(const QString& loss) {
  return tellOnce(loss, loss);
}

bool Losses::tell(const QString& loss, const QString& about) {
  return tellOnce(loss, loss.arg(shortened(about)));
}

bool Losses::tellOnce(const QString& loss, const QString& line) {
  if (told_.contains(loss))
    return false;
  told_.insert(loss);
  host_.printError(line);
  return true;
}

}  // namespace kelmora::script
