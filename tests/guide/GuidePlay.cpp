#include "GuidePlay.h"

#include <QCheckBox>
#include <QKeySequence>
#include <QTextDocumentFragment>
#include <algorithm>

#include "automation/editors/KeyPressInput.h"
#include "automation/editors/KeyPressWidget.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"

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

QKeyCombination keyOf(const QString& name) {
  return QKeySequence(name)[0];
}

void pressIn(QWidget* target, const QString& name) {
  const QKeyCombination keys = keyOf(name);
  QTest::keyClick(target, keys.key(), keys.keyboardModifiers());
}

/// Also letters that the toolkit's own way of typing does not know.
void typeLine(QWidget* bar, const QString& line) {
  QTest::keyClick(bar, Qt::Key_Escape);
  for (const QChar letter : line) {
    if (letter.unicode() < 128)
      QTest::keyClick(bar, letter.toLatin1());
    else
      QTest::sendKeyEvent(QTest::Click, bar, Qt::Key_unknown, QString(letter), Qt::NoModifier);
  }
  QTest::keyClick(bar, Qt::Key_Return);
}

QAction* actionOf(const PlayWindow& window, const QString& shortcut) {
  for (QAction* action : window.actions)
    if (action->isEnabled() && action->shortcut() == QKeySequence(shortcut))
      return action;
  return nullptr;
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
  press(QStringLiteral("Ctrl+J"));
  see({Kind::See, {}, {QStringLiteral("By what name shall we know you?")}, 0});
  typeLine(window_->bar, name);
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
      return addEntry(step, QStringLiteral("alias"));
    case Kind::Trigger:
      return addEntry(step, QStringLiteral("trigger"));
    case Kind::Macro:
      return addEntry(step, QStringLiteral("macro"));
    case Kind::File:
      QVERIFY(put(step.subject, (step.lines.join(u'\n') + u'\n').toLatin1()));
      return;
    case Kind::Edit:
      return editAlias(step);
    case Kind::Press:
      return step.detail.isEmpty() ? press(step.subject) : save(step);
    case Kind::Switch:
      return switchOption(step.subject);
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
    typeLine(window_->bar, line);
    typed_ << line.split(u';');
  }
  if (cut_.isEmpty())
    return;
  // The rest of the line comes when the client has taken what was before the cut.
  QVERIFY(QTest::qWaitFor([this] { return wire_->isCut() && shown().endsWith(cut_); }, patience));
  cut_.clear();
  wire_->goOn();
}

void GuidePlay::inEditor(const QString& word,
                         const std::function<void(const EditorControls&)>& use) {
  const bool isAlias = word == QLatin1String("alias");
  const QString many = isAlias ? QStringLiteral("aliases") : word + u's';
  const QString title = many.at(0).toUpper() + many.sliced(1);
  QDialog* dialog = window_->dialogTitled(title);
  QVERIFY(dialog);
  press(isAlias ? QStringLiteral("Ctrl+L") : QStringLiteral("Ctrl+") + title.at(0));
  QVERIFY(QTest::qWaitForWindowActive(dialog));
  const EditorControls controls(*dialog, word);
  QVERIFY(controls.complete());
  use(controls);
  click(controls.close);
  QVERIFY(QTest::qWaitForWindowActive(window_->window.get()));
}

void GuidePlay::addEntry(const GuideStep& step, const QString& word) {
  inEditor(word, [&](const EditorControls& controls) {
    QList<ExpectedDialog> questions;
    if (word == QLatin1String("macro"))
      questions << ExpectedDialog::of<KeyPressWidget>([&](KeyPressWidget& asked) {
        pressIn(asked.findChild<KeyPressInput*>(), step.subject);
        click(buttonOf(asked, QStringLiteral("Okay")));
      });
    const DialogAnswers answers(questions);
    click(controls.add);
    click(controls.edit);
    if (controls.label)
      retype(controls.label, step.subject);
    retype(controls.commands, step.lines.join(u'\n'));
    click(controls.save);
    // What the dialog shows now is what the entry holds.
    QCOMPARE(controls.commands->toPlainText().trimmed(), step.lines.join(u'\n'));
  });
}

void GuidePlay::editAlias(const GuideStep& step) {
  inEditor(QStringLiteral("alias"), [&](const EditorControls& controls) {
    controls.list->setCurrentText(step.subject);
    QCOMPARE(controls.list->currentText(), step.subject);
    click(controls.edit);
    if (!step.detail.isEmpty())
      pressIn(controls.commands, step.detail);
    click(controls.save);
  });
}

void GuidePlay::press(const QString& key) {
  // A shortcut that is switched off leaves its key to the input bar.
  if (QAction* action = actionOf(*window_, key))
    action->trigger();
  else
    pressIn(window_->bar, key);
}

void GuidePlay::save(const GuideStep& step) {
  const DialogAnswers answers{ExpectedDialog::file(step.detail)};
  press(step.subject);
}

void GuidePlay::switchOption(const QString& label) {
  press(QStringLiteral("Ctrl+G"));
  QDialog* dialog = window_->dialogTitled(QStringLiteral("General Settings"));
  QVERIFY(dialog && QTest::qWaitForWindowActive(dialog));
  for (QCheckBox* box : dialog->findChildren<QCheckBox*>()) {
    if (box->text() == label) {
      const bool before = box->isChecked();
      box->click();
      QCOMPARE(box->isChecked(), !before);
      click(buttonOf(*dialog, QStringLiteral("Apply")));
      return;
    }
  }
  QFAIL(qPrintable(QStringLiteral("no box is called ") + label));
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
  QCOMPARE(!(*action)->isEnabled(), grey);
}
