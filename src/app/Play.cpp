#include "app/Play.h"

#include <QColor>
#include <algorithm>
#include <utility>

#include "app/Beeper.h"
#include "app/Profile.h"
#include "terminal/markup/SafeMarkup.h"
#include "terminal/view/OutputWidget.h"

namespace kelmora::app {

namespace {

terminal::AnsiTranslator::ColourTexts textsOf(const settings::ColourTexts& colours) {
  terminal::AnsiTranslator::ColourTexts texts;
  std::transform(colours.begin(), colours.end(), texts.begin(),
                 [](const settings::ColourText& colour) { return colour.text(); });
  return texts;
}

}  // namespace

Play::Play(Profile& profile, PlayHost& host, OutputWidget& pane, QObject& window)
    : profile_(profile),
      host_(host),
      pane_(pane),
      window_(window),
      echoEnabled_(profile.settings.displayLocalEcho),
      interpreter_(*this, profile.variables, *this),
      link_(window, *this),
      beeper_(std::make_unique<Beeper>(window)) {}

Play::~Play() = default;

void Play::takeColours() {
  const settings::ClientSettings& settings = profile_.settings;
  pipeline_.translator().buildColourSpans(textsOf(settings.normalColour),
                                          textsOf(settings.boldColour));
}

void Play::takeServerBytes(const QByteArray& bytes) {
  // Each line may run a script. What they lose is told once for all of them.
  const script::Losses::Event event(interpreter_.losses());
  const settings::ClientSettings& settings = profile_.settings;
  pipeline_.readSocketData(bytes,
                           {.displayAnsiColor = settings.displayAnsiColor,
                            .playBeeps = settings.playBeeps,
                            .parseHtml = settings.parseHtml,
                            .displayURLs = settings.displayURLs},
                           *this);
}

void Play::beep() {
  beeper_->beep();
}

void Play::showServerText(terminal::ServerText text) {
  pane_.showServerText(std::move(text));
}

void Play::parseVitals(const char* line) {
  host_.parseVitals(line);
}

void Play::checkTriggers(const QByteArray& line) {
  recentLines_.add(line);
  profile_.triggers.check(line, *this);
}

void Play::setVariable(const QString& name, const QString& value) {
  profile_.variables.set(name, value);
}

void Play::runActions(const QStringList& commands) {
  interpreter_.runActions(commands);
}

const QStringList* Play::commandsOf(const QString& name) const {
  return profile_.aliases.commandsOf(name);
}

void Play::sendLine(const QString& line) {
  const net::SendResult result = link_.sendLine(line);
  if (echoEnabled_ && profile_.settings.displayLocalEcho)
    pane_.echoSentText(line + QStringLiteral("\r\n"));
  if (result == net::SendResult::LossBegins)
    printError(tr("The server takes no lines: this one and what follows is lost"));
}

void Play::printError(const QString& text) {
  pane_.printError(text);
}

void Play::printInfo(const QString& text) {
  pane_.printInfo(text);
}

void Play::printText(const QString& text, const QString& colourName) {
  pane_.printText(text, QColor(colourName));
}

QObject& Play::timerParent() {
  return window_;
}

const QByteArray& Play::statusSpan() const {
  return pipeline_.translator().normalSpan(terminal::AnsiTranslator::white);
}

qsizetype Play::statusLineRoom() const {
  constexpr qsizetype longestLine = 1023;  // characters, with the span that opens the line
  return longestLine - statusSpan().size();
}

void Play::appendStatusLine(const QString& html) {
  // The host name in it can be anything that was stored, and tables nested in it
  // would hold up the window.
  pane_.appendStatusLine(terminal::safeMarkup(QString::fromLatin1(statusSpan()) + html));
}

void Play::moveCursorToEnd() {
  pane_.moveCursor(QTextCursor::End);
}

void Play::setActionEnabled(net::ConnectionAction action, bool enabled) {
  host_.setActionEnabled(action, enabled);
}

void Play::focusInputBar() {
  host_.focusInputBar();
}

}  // namespace kelmora::app
