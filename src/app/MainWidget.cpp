#include "app/MainWidget.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <algorithm>

#include "app/Profile.h"
#include "app/ToolbarActions.h"
#include "automation/editors/AliasWidget.h"
#include "automation/editors/MacroWidget.h"
#include "automation/editors/TriggerWidget.h"
#include "dialogs/ConfigureWidget.h"
#include "dialogs/HelpWidget.h"
#include "dialogs/ProxyWidget.h"
#include "terminal/core/InputSubmission.h"
#include "terminal/core/Vitals.h"
#include "terminal/session/SessionCapture.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"
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
  const settings::ClientSettings& settings = profile_.settings;
  play_->link().connectToServer({.hostName = settings.hostName, .port = settings.port});
}

void MainWidget::disconnectFromServer() {
  play_->link().disconnectFromServer();
}

void MainWidget::displaySocketError(QAbstractSocket::SocketError sockerr) {
  play_->link().displaySocketError(sockerr);
}

void MainWidget::clientConnected() {
  play_->link().clientConnected();
}

void MainWidget::clientDisconnected() {
  play_->link().clientDisconnected();
}

void MainWidget::readSocketData() {
  play_->link().readSocketData();
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
    terminal::captureSession(*outputPane_->document(),
                             profile_.settings.normalColour.front().text(), name);
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
  const settings::ClientSettings& settings = profile_.settings;
  const terminal::InputSubmission submission =
      terminal::submitInput(inputBar_->text(),
                            {.echoEnabled = play_->echoEnabled(),
                             .displayLocalEcho = settings.displayLocalEcho,
                             .flushInput = settings.flushInput,
                             .splitInput = settings.splitInput,
                             .splitString = settings.splitString},
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
  play_->interpreter().runActions(actions);
}

script::Pause MainWidget::interpretAction(QString action) {
  return play_->interpreter().interpretAction(std::move(action));
}

bool MainWidget::dispatchMacro(int key) {
  const QStringList* commands = profile_.macros.commandsOf(key);
  if (commands)
    runActions(QStringList(*commands));
  return commands != nullptr;
}

bool MainWidget::claimsShortcut(QKeyCombination keys) const {
  return std::any_of(actions_.begin(), actions_.end(), [&](const QAction* action) {
    return action->isEnabled() && action->shortcut() == QKeySequence(keys);
  });
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
