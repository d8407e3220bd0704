#include "app/MainWidget.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <algorithm>

#include "app/Beeper.h"
#include "app/ToolbarActions.h"
#include "automation/editors/AliasWidget.h"
#include "automation/editors/MacroWidget.h"
#include "automation/editors/TriggerWidget.h"
#include "dialogs/ConfigureWidget.h"
#include "dialogs/HelpWidget.h"
#include "dialogs/ProxyWidget.h"
#include "terminal/core/InputSubmission.h"
#include "terminal/core/SafeMarkup.h"
#include "terminal/core/Vitals.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"
#include "terminal/view/SessionCapture.h"
#include "terminal/view/VitalsBars.h"

using namespace kelmora;
using namespace kelmora::app;

namespace {

std::size_t indexOf(net::ConnectionAction action) {
  switch (action) {
    case net::ConnectionAction::Connect:
      return static_cast<std::size_t>(ToolbarAction::Connect);
    case net::ConnectionAction::Disconnect:
      return static_cast<std::size_t>(ToolbarAction::Disconnect);
    case net::ConnectionAction::ProxySettings:
      break;
  }
  return static_cast<std::size_t>(ToolbarAction::Proxy);
}

}  // namespace

void MainWidget::closeEvent(QCloseEvent* event) {
  storeSettings();
  event->accept();
}

bool MainWidget::eventFilter(QObject* watched, QEvent* event) {
  // However a dialog is closed, and whatever had the focus beside it.
  if (event->type() == QEvent::Hide && !event->spontaneous())
    returnToInputBar();
  return QWidget::eventFilter(watched, event);
}

void MainWidget::connectToServer() {
  link_.connectToServer({.hostName = settings_.hostName, .port = settings_.port});
}

void MainWidget::disconnectFromServer() {
  link_.disconnectFromServer();
}

void MainWidget::displaySocketError(QAbstractSocket::SocketError sockerr) {
  link_.displaySocketError(sockerr);
}

void MainWidget::clientConnected() {
  link_.clientConnected();
}

void MainWidget::clientDisconnected() {
  link_.clientDisconnected();
}

void MainWidget::readSocketData() {
  link_.readSocketData();
}

void MainWidget::configureSettings() {
  configureDialog_->showDialog();
  focusInputBar();
}

void MainWidget::proxySettings() {
  proxyDialog_->showDialog();
  focusInputBar();
}

void MainWidget::saveBuffer() {
  const QString name = QFileDialog::getSaveFileName(this, tr("Save Game Session To File"), {},
                                                    tr("Web Pages (*.htm *.html)"));
  if (!name.isEmpty()) {
    outputPane_->settle();
    terminal::captureSession(*outputPane_->document(), settings_.normalColour.front().text(), name);
  }
  returnToInputBar();
}

void MainWidget::editMacros() {
  macroEditor_->showEditor();
  focusInputBar();
}

void MainWidget::editTriggers() {
  triggerEditor_->showEditor();
  focusInputBar();
}

void MainWidget::editAliases() {
  aliasEditor_->showEditor();
  focusInputBar();
}

void MainWidget::showHelp() {
  helpDialog_->show();
  focusInputBar();
}

void MainWidget::submitInput() {
  const terminal::InputSubmission submission =
      terminal::submitInput(inputBar_->text(),
                            {.echoEnabled = echoEnabled_,
                             .displayLocalEcho = settings_.displayLocalEcho,
                             .flushInput = settings_.flushInput,
                             .splitInput = settings_.splitInput,
                             .splitString = settings_.splitString},
                            inputHistory_);
  if (submission.route == terminal::InputSubmission::Route::ActionList) {
    runActions(submission.actions);
  } else {
    // No further actions follow a line that goes straight to the interpreter,
    // so there is nothing that a pause in it could hold back.
    interpretAction(submission.actions.first());
  }
  if (submission.afterwards == terminal::InputSubmission::Afterwards::SelectAll)
    inputBar_->selectAll();
  else
    inputBar_->clear();
}

void MainWidget::historyOlder() {
  if (const auto text = inputHistory_.historyOlder())
    inputBar_->setText(*text);
}

void MainWidget::historyNewer() {
  if (const auto text = inputHistory_.historyNewer())
    inputBar_->setText(*text);
}

void MainWidget::parseVitals(const char* line) {
  if (const auto vitals = terminal::parseVitals(line))
    vitalsBars_->show(*vitals);
}

void MainWidget::runActions(const QStringList& actions) {
  interpreter_.runActions(actions);
}

script::Pause MainWidget::interpretAction(QString action) {
  return interpreter_.interpretAction(std::move(action));
}

bool MainWidget::dispatchMacro(int key) {
  const QStringList* commands = macroTable_.commandsOf(key);
  if (commands)
    runActions(QStringList(*commands));
  return commands != nullptr;
}

bool MainWidget::claimsShortcut(QKeyCombination keys) const {
  return std::any_of(actions_.begin(), actions_.end(), [&](const QAction* action) {
    return action->isEnabled() && action->shortcut() == QKeySequence(keys);
  });
}

void MainWidget::beep() {
  beeper_->beep();
}

void MainWidget::showServerText(terminal::ServerText text) {
  outputPane_->showServerText(std::move(text));
}

void MainWidget::checkTriggers(const QByteArray& line) {
  triggerTable_.check(line, *this);
}

void MainWidget::takeServerBytes(const QByteArray& bytes) {
  // Each line may run a script. What they lose is told once for all of them.
  const script::Losses::Event event(interpreter_.losses());
  pipeline_.readSocketData(bytes,
                           {.displayAnsiColor = settings_.displayAnsiColor,
                            .playBeeps = settings_.playBeeps,
                            .parseHtml = settings_.parseHtml,
                            .displayURLs = settings_.displayURLs},
                           *this);
}

const QByteArray& MainWidget::statusSpan() const {
  return pipeline_.translator().normalSpan(terminal::AnsiTranslator::white);
}

qsizetype MainWidget::statusLineRoom() const {
  constexpr qsizetype longestLine = 1023;  // characters, with the span that opens the line
  return longestLine - statusSpan().size();
}

void MainWidget::appendStatusLine(const QString& html) {
  // The host name in it can be anything that was stored, and tables nested in it
  // would hold up the window.
  outputPane_->appendStatusLine(terminal::safeMarkup(QString::fromLatin1(statusSpan()) + html));
}

void MainWidget::moveCursorToEnd() {
  outputPane_->moveCursor(QTextCursor::End);
}

void MainWidget::setActionEnabled(net::ConnectionAction action, bool enabled) {
  actions_.at(indexOf(action))->setEnabled(enabled);
}

void MainWidget::focusInputBar() {
  inputBar_->setFocus(Qt::OtherFocusReason);
}

void MainWidget::returnToInputBar() {
  // Not every system hands the keyboard on when a window goes. The general
  // settings may still stand behind the interface settings.
  QWidget* behind = QApplication::activeModalWidget();
  (behind ? behind : this)->activateWindow();
  focusInputBar();
}

void MainWidget::sendLine(const QString& line) {
  const net::SendResult result = link_.sendLine(line);
  if (echoEnabled_ && settings_.displayLocalEcho)
    outputPane_->echoSentText(line + QStringLiteral("\r\n"));
  if (result == net::SendResult::LossBegins)
    printError(QStringLiteral("The server takes no lines: this one and what follows is lost"));
}

void MainWidget::printError(const QString& text) {
  outputPane_->printError(text);
}

void MainWidget::printInfo(const QString& text) {
  outputPane_->printInfo(text);
}

void MainWidget::printText(const QString& text, const QString& colourName) {
  outputPane_->printText(text, QColor(colourName));
}

QObject& MainWidget::timerParent() {
  return *this;
}

const QStringList* MainWidget::commandsOf(const QString& name) const {
  return aliasTable_.commandsOf(name);
}

void MainWidget::setVariable(const QString& name, const QString& value) {
  variableTable_.set(name, value);
}
