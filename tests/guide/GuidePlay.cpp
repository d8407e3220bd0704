#include "GuidePlay.h"

#include <QKeySequence>
#include <QTextDocumentFragment>
#include <algorithm>

#include "GuideHands.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "terminal/reading/ReadBackView.h"

using namespace kelmora;
using namespace kelmora::demo;

namespace {

using namespace std::chrono_literals;
using Kind = GuideStep::Kind;

constexpr int patience = 20000;  // milliseconds

DemoOptions quiet() {
  DemoOptions options;
  options.chatter = NpcChatter::Off;
  options.roundInterval = 100ms;
  options.seed = 7;
  return options;
}

/// The first line that the text does not hold in its turn; empty where it holds all.
QString missingIn(const QString& text, const QStringList& lines) {
  qsizetype at = 0;
  for (const QString& line : lines) {
    const qsizetype found = text.indexOf(line, at);
    if (found < 0)
      return line;
    at = found + line.size();
  }
  return {};
}

}  // namespace

GuidePlay::GuidePlay() : server_(quiet()) {
  if (!server_.listen(0))
    return;
  wire_ = std::make_unique<Wire>(server_.port());
  window_ = std::make_unique<PlayWindow>(wire_->port());
}

void GuidePlay::enterAs(const QString& name) {
  pressKey(*window_, QStringLiteral("Ctrl+J"));
  see({Kind::See, {}, {QStringLiteral("By what name shall we know you?")}, 0});
  typeLine(*window_, name);
  see({Kind::See, {}, {QStringLiteral("Welcome to Kelmora"), QStringLiteral("hp: [")}, 0});
}

void GuidePlay::play(const QList<GuideStep>& steps) {
  for (const GuideStep& step : steps) {
    playStep(step);
    if (QTest::currentTestFailed())
      return;
  }
}

void GuidePlay::playStep(const GuideStep& step) {
  switch (step.kind) {
    case Kind::See:
      return see(step);
    case Kind::DoNotSee:
      return doNotSee(step);
    case Kind::Find:
      return find(step);
    case Kind::Grey:
      for (const QString& key : step.subject.split(QStringLiteral(" and ")))
        seeGrey(QString(key).remove(u'`'), true);
      return;
    case Kind::NotGrey:
      return seeGrey(step.subject, false);
    case Kind::Divided:
      return seeDivided(true);
    case Kind::Whole:
      return seeDivided(false);
    case Kind::Picture:
      return;
    default:
      break;
  }
  if (looked_) {
    mark_ = window_->text().size();
    typed_.clear();
    looked_ = false;
  }
  act(step);
}

void GuidePlay::act(const GuideStep& step) {
  switch (step.kind) {
    case Kind::Type:
      return type(step);
    case Kind::Alias:
      return addEntry(*window_, QStringLiteral("alias"), step);
    case Kind::Trigger:
      return addEntry(*window_, QStringLiteral("trigger"), step);
    case Kind::Macro:
      return addEntry(*window_, QStringLiteral("macro"), step);
    case Kind::File:
      QVERIFY(put(step.subject, (step.lines.join(u'\n') + u'\n').toLatin1()));
      return;
    case Kind::Edit:
      return editAlias(*window_, step);
    case Kind::Press:
      return step.detail.isEmpty() ? pressKey(*window_, step.subject) : nameFile(*window_, step);
    case Kind::Wheel:
      return turnWheelUp(*window_);
    case Kind::Seek:
      return findWords(*window_, step);
    case Kind::Menu:
      return makeTrigger(*window_, step);
    case Kind::Switch:
      return switchOption(*window_, step.subject);
    case Kind::Restart:
      return restart(step.subject);
    case Kind::Cut:
      cut_ = step.subject;
      return wire_->cutBehind(cut_.toUtf8());
    case Kind::Silence:
      window_->profile.settings.port = silentHost_.port();
      return;
    default:
      QFAIL("a step that nobody takes");
  }
}

void GuidePlay::type(const GuideStep& step) {
  for (const QString& line : step.lines) {
    typeLine(*window_, line);
    typed_ << line.split(u';');
  }
  if (cut_.isEmpty())
    return;
  // The rest of the line comes when the client has taken what was before the cut.
  QVERIFY(QTest::qWaitFor([this] { return wire_->isCut() && shown().endsWith(cut_); }, patience));
  cut_.clear();
  wire_->goOn();
}

void GuidePlay::restart(const QString& box) {
  window_->window->close();
  const PlayWindow::Options kept{
      {QStringLiteral("displayLocalEcho"), window_->profile.settings.displayLocalEcho ? 1 : 0}};
  window_.reset();
  mark_ = 0;
  QList<ExpectedDialog> boxes;
  if (!box.isEmpty())
    boxes << ExpectedDialog::information({}, box);
  const DialogAnswers answers(boxes);
  window_ = std::make_unique<PlayWindow>(wire_->port(), kept);
}

void GuidePlay::see(const GuideStep& step) {
  looked_ = true;
  for (const QString& line : step.lines)
    for (const QString& sent : typed_)
      QVERIFY2(
          sent.startsWith(u'/') || !sent.contains(line),
          qPrintable(
              QStringLiteral("line %1: the echo of what is typed: %2").arg(step.place).arg(line)));
  const auto allThere = [&] { return missingIn(shown(), step.lines).isEmpty(); };
  QVERIFY2(QTest::qWaitFor(allThere, patience),
           qPrintable(QStringLiteral("line %1: not seen: %2\nin:\n%3")
                          .arg(step.place)
                          .arg(missingIn(shown(), step.lines), shown())));
}

void GuidePlay::doNotSee(const GuideStep& step) {
  looked_ = true;
  // What should not come is given the time to come.
  constexpr int answerComes = 250;  // milliseconds
  QTest::qWait(answerComes);
  for (const QString& line : step.lines)
    QVERIFY2(!shown().contains(line),
             qPrintable(
                 QStringLiteral("line %1: seen: %2\nin:\n%3").arg(step.place).arg(line, shown())));
}

void GuidePlay::find(const GuideStep& step) const {
  const QString page = QString::fromUtf8(contentsOf(step.subject));
  const QString text =
      QTextDocumentFragment::fromHtml(page).toPlainText().replace(QChar::Nbsp, u' ');
  QCOMPARE(missingIn(text, step.lines), QString());
}

void GuidePlay::seeGrey(const QString& key, bool grey) const {
  const auto isMeant = [&](const QAction* action) {
    return action->shortcut() == QKeySequence(key);
  };
  const auto action = std::find_if(window_->actions.begin(), window_->actions.end(), isMeant);
  QVERIFY2(action != window_->actions.end(), qPrintable(key));
  // Grey for a moment is every button that connects or disconnects.
  const bool becomesEnabled =
      QTest::qWaitFor([&] { return (*action)->isEnabled(); }, grey ? 500 : patience);
  QCOMPARE(becomesEnabled, !grey);
}

void GuidePlay::seeDivided(bool divided) const {
  const auto* upper = window_->pane->findChild<ReadBackView*>();
  QCOMPARE(upper != nullptr && upper->isVisible(), divided);
}
