#include "terminal/speech/PaneSpeech.h"

#include <QCoreApplication>
#include <QTextDocumentFragment>
#include <algorithm>
#include <utility>

namespace kelmora::terminal {

namespace {

qint64 linesIn(const SafeHtml& html) {
  return static_cast<qint64>(html.facts().lines.size()) - 1;
}

QString leftOutText(qint64 lines) {
  if (lines == 1)
    return QCoreApplication::translate("PaneSpeech", "1 line left out");
  return QCoreApplication::translate("PaneSpeech", "%1 lines left out").arg(lines);
}

}  // namespace

PaneSpeech::PaneSpeech(Say say) : say_(std::move(say)) {
  whenLines_.setSingleShot(true);
  QObject::connect(&whenLines_, &QTimer::timeout, &whenLines_,
                   [this] { announce(SpokenLines::Rest::Waits); });
  whenRest_.setSingleShot(true);
  QObject::connect(&whenRest_, &QTimer::timeout, &whenRest_,
                   [this] { announce(SpokenLines::Rest::Comes); });
}

void PaneSpeech::hear(const ServerText& text) {
  if (const auto* const styled = std::get_if<StyledText>(&text)) {
    lines_.add(styled->text);
  } else {
    // Reading HTML takes time, so what would be left out is not read.
    const auto& pieces = std::get<std::vector<SafeHtml>>(text);
    auto first = pieces.end();
    for (qint64 lines = 0; first != pieces.begin() && lines <= SpokenLines::mostLines;)
      lines += linesIn(*--first);
    qint64 skipped = 0;
    for (auto piece = pieces.begin(); piece != first; ++piece)
      skipped += linesIn(*piece);
    if (skipped > 0)
      lines_.leaveOut(skipped);
    std::for_each(first, pieces.end(), [this](const SafeHtml& piece) { add(piece); });
  }
  plan();
}

void PaneSpeech::hear(const SafeHtml& status) {
  lines_.endLine();
  add(status);
  lines_.endLine();
  plan();
}

void PaneSpeech::hear(const QString& text) {
  lines_.add(text);
  plan();
}

void PaneSpeech::hearEcho() {
  lines_.endLine();
  plan();
}

void PaneSpeech::add(const SafeHtml& text) {
  lines_.add(QTextDocumentFragment::fromHtml(text.html()).toPlainText());
}

void PaneSpeech::plan() {
  if (lines_.hasLines() && !whenLines_.isActive())
    whenLines_.start(std::max(gathering, silenceLeft()));
  if (lines_.hasRest())
    whenRest_.start(std::max(endOfPrompt, silenceLeft()));
  else
    whenRest_.stop();
}

std::chrono::milliseconds PaneSpeech::silenceLeft() const {
  return std::chrono::ceil<std::chrono::milliseconds>(silence_.remainingTimeAsDuration());
}

void PaneSpeech::announce(SpokenLines::Rest rest) {
  // Lines may have been announced while the rest waited.
  if (rest == SpokenLines::Rest::Comes && !silence_.hasExpired()) {
    whenRest_.start(silenceLeft());
    return;
  }
  whenLines_.stop();
  SpokenLines::Taken taken = lines_.take(rest);
  if (taken.leftOut > 0)
    taken.lines.prepend(leftOutText(taken.leftOut));
  if (taken.lines.isEmpty())
    return;
  silence_ = QDeadlineTimer(taken.lines.size() * afterEachLine);
  say_(taken.lines.join(u'\n'));
}

}  // namespace kelmora::terminal
