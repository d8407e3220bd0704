#include "app/MainWidget.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QMessageBox>
#include <QScreen>
#include <QTcpSocket>
#include <QTextStream>
#include <QToolBar>
#include <algorithm>

#include "app/AutomationStart.h"
#include "app/Beeper.h"
#include "app/ToolbarActions.h"
#include "automation/core/AutomationFiles.h"
#include "net/Proxy.h"
#include "net/SendLine.h"
#include "settings/SettingsFile.h"
#include "settings/SettingsStore.h"
#include "settings/UsableValues.h"
#include "terminal/core/InputSubmission.h"
#include "terminal/core/SafeMarkup.h"
#include "terminal/core/Vitals.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"
#include "terminal/view/SessionCapture.h"
#include "terminal/view/VitalsBars.h"

namespace {

constexpr int toolbarHeight = 70;

AnsiTranslator::ColourTexts textsOf(const ColourTexts& colours) {
  AnsiTranslator::ColourTexts texts;
  std::transform(colours.begin(), colours.end(), texts.begin(),
                 [](const ColourText& colour) { return colour.text(); });
  return texts;
}

std::size_t indexOf(ConnectionAction action) {
  switch (action) {
    case ConnectionAction::Connect:
      return static_cast<std::size_t>(ToolbarAction::Connect);
    case ConnectionAction::Disconnect:
      return static_cast<std::size_t>(ToolbarAction::Disconnect);
    case ConnectionAction::ProxySettings:
      break;
  }
  return static_cast<std::size_t>(ToolbarAction::Proxy);
}

}  // namespace

MainWidget::MainWidget() {
  setWindowTitle(QStringLiteral("Kelmora - The Official Client"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/mainicon.png")));
  loadStoredSettings();
  if (settings_.useProxyServer)
    net::installConfiguredProxy(settings_);
  echoEnabled_ = settings_.displayLocalEcho;
  buildColourSpans();
  loadAutomationFiles(*this, macroTable_, triggerTable_, aliasTable_, variableTable_.map());
  QApplication::setStyle(settings_.interfaceStyle);
  createWidgets();
  layOutWidgets();
  connectSocket();
  inputBar_->setFocus(Qt::OtherFocusReason);
}

MainWidget::~MainWidget() {
  // The socket is a child and outlives the members; it must not report its
  // end to a window that is half gone.
  socket_->disconnect(this);
}

void MainWidget::loadStoredSettings() {
  const WindowPlace place = settings::load(settings_);
  QSize largest(8192, 8192);
  QList<QRect> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {
    screens.append(screen->geometry());
    largest = largest.expandedTo(screen->virtualSize());
  }
  const QSize size = settings::usableWindowSize(place.size, largest);
  resize(size);
  move(settings::usableWindowPos(place.pos, size, screens));
}

void MainWidget::storeSettings() {
  // Whether the file took them is not told: the next save tries again.
  (void)automation::writeVariables(variableTable_.entries());
  settings::save(settings_, {.size = size(), .pos = pos()});
}

void MainWidget::buildColourSpans() {
  pipeline_.translator().buildColourSpans(textsOf(settings_.normalColour),
                                          textsOf(settings_.boldColour));
}

void MainWidget::createWidgets() {
  socket_ = new QTcpSocket(this);
  toolbar_ = new QToolBar(this);
  toolbar_->setIconSize(settings::usableIconSize(settings_.iconSize));
  inputBar_ = new InputWidget(*this, this);
  inputBar_->setAccessibleName(tr("Input bar"));
  inputBar_->setFont(settings_.inFont);
  outputPane_ = new OutputWidget(*inputBar_, this);
  outputPane_->setAccessibleName(tr("Game text"));
  outputPane_->setFont(settings_.outFont);
  QPalette palette = outputPane_->palette();
  palette.setBrush(QPalette::Active, QPalette::Base, Qt::black);
  palette.setBrush(QPalette::Inactive, QPalette::Base, Qt::black);
  outputPane_->setPalette(palette);
  beeper_ = std::make_unique<Beeper>();
  socketReader_ = std::make_unique<SocketReader>(*socket_, [this](const QByteArray& bytes) {
    pipeline_.readSocketData(bytes,
                             {.displayAnsiColor = settings_.displayAnsiColor,
                              .playBeeps = settings_.playBeeps,
                              .parseHtml = settings_.parseHtml,
                              .displayURLs = settings_.displayURLs},
                             *this);
  });
  ConnectionHost& host = *this;
  connection_ = std::make_unique<ServerConnection>(*socket_, settings_, host);
}

void MainWidget::layOutWidgets() {
  auto* grid = new QGridLayout(this);
  grid->addWidget(toolbar_, 0, 0);
  grid->addWidget(outputPane_, 1, 0);
  grid->addWidget(inputBar_, 2, 0);
  toolbar_->setFixedHeight(toolbarHeight);
  actions_ = addToolbarActions(*toolbar_, *this);
  vitalsBars_ = std::make_unique<VitalsBars>(*toolbar_);
}

void MainWidget::connectSocket() {
  connect(socket_, &QTcpSocket::errorOccurred, this, &MainWidget::displaySocketError);
  connect(socket_, &QTcpSocket::readyRead, this, &MainWidget::readSocketData);
  connect(socket_, &QTcpSocket::connected, this, &MainWidget::clientConnected);
  connect(socket_, &QTcpSocket::disconnected, this, &MainWidget::clientDisconnected);
}

void MainWidget::closeEvent(QCloseEvent* event) {
  storeSettings();
  event->accept();
}

void MainWidget::connectToServer() {
  socketReader_->limitWaiting();
  connection_->connectToServer();
}

void MainWidget::disconnectFromServer() {
  connection_->disconnectFromServer();
}

void MainWidget::displaySocketError(QAbstractSocket::SocketError sockerr) {
  connection_->displaySocketError(sockerr);
}

void MainWidget::clientConnected() {
  connection_->clientConnected();
}

void MainWidget::clientDisconnected() {
  socketReader_->drain();
  connection_->clientDisconnected();
}

void MainWidget::readSocketData() {
  socketReader_->readSocketData();
}

void MainWidget::configureSettings() {
  focusInputBar();
}
void MainWidget::proxySettings() {
  focusInputBar();
}

void MainWidget::saveBuffer() {
  const QString name = QFileDialog::getSaveFileName(this, tr("Save Game Session To File"), {},
                                                    tr("Web Pages (*.htm *.html)"));
  if (!name.isEmpty())
    captureSession(*outputPane_->document(), settings_.normalColour.front().text(), name);
  focusInputBar();
}

void MainWidget::saveSettings() {
  const QString name = QFileDialog::getSaveFileName(this, tr("Export Settings"), {},
                                                    tr("Kelmora Client Settings (*.settings)"));
  if (!name.isEmpty() && !settings::exportSettings(settings_, name))
    QMessageBox::information(
        this, tr("Export Settings"),
        tr("There has been a failure exporting settings to the specified file."), QMessageBox::Ok);
  focusInputBar();
}

void MainWidget::loadSettings() {
  const QString name = QFileDialog::getOpenFileName(this, tr("Import Settings"), {},
                                                    tr("Kelmora Client Settings (*.settings)"));
  if (!name.isEmpty()) {
    if (settings::importSettings(settings_, name))
      applyImportedSettings();
    else
      QMessageBox::information(
          this, tr("Import Settings"),
          tr("The specified file does not contain valid settings for this client."),
          QMessageBox::Ok);
  }
  focusInputBar();
}

void MainWidget::applyImportedSettings() {
  if (settings_.useProxyServer)
    net::installConfiguredProxy(settings_);
  buildColourSpans();
  pipeline_.translator().clearBold();
  QApplication::setStyle(settings_.interfaceStyle);
  toolbar_->setIconSize(settings::usableIconSize(settings_.iconSize));
  inputBar_->setFont(settings_.inFont);
  outputPane_->setFont(settings_.outFont);
}

void MainWidget::editMacros() {
  focusInputBar();
}
void MainWidget::editTriggers() {
  focusInputBar();
}
void MainWidget::editAliases() {
  focusInputBar();
}
void MainWidget::showHelp() {
  focusInputBar();
}

void MainWidget::submitInput() {
  const InputSubmission submission = ::submitInput(inputBar_->text(),
                                                   {.echoEnabled = echoEnabled_,
                                                    .displayLocalEcho = settings_.displayLocalEcho,
                                                    .flushInput = settings_.flushInput,
                                                    .splitInput = settings_.splitInput,
                                                    .splitString = settings_.splitString},
                                                   inputHistory_);
  if (submission.route == InputSubmission::Route::ActionList) {
    runActions(submission.actions);
  } else {
    // A line that goes straight to the interpreter has no list behind it, so
    // a pause in it has nothing to hold back.
    QTextStream stream(socket_);
    stream.setAutoDetectUnicode(true);
    QString timerId;
    interpretAction(submission.actions.first(), stream, timerId);
  }
  if (submission.afterwards == InputSubmission::Afterwards::SelectAll)
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
  if (const auto vitals = ::parseVitals(line))
    vitalsBars_->show(*vitals);
}

void MainWidget::runActions(const QStringList& actions) {
  interpreter_.actionQueue().runActions(actions);
}

int MainWidget::interpretAction(QString action, QTextStream& stream, QString& timerId) {
  return interpreter_.interpretAction(std::move(action), stream, timerId);
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

void MainWidget::showServerHtml(const QString& html) {
  // Also without tags of the server's own: colours may nest beyond all measure,
  // and a stored colour may be anything.
  outputPane_->insertServerHtml(safeMarkup(html));
}

void MainWidget::checkTriggers(const QByteArray& line) {
  triggerTable_.check(line, *this);
}

void MainWidget::moveCursorToEnd() {
  outputPane_->moveCursor(QTextCursor::End);
}

void MainWidget::appendStatusLine(const QString& html) {
  // The host name stands in it as it was stored, and tables of it would nest.
  outputPane_->appendStatusLine(safeMarkup(
      QString::fromLatin1(pipeline_.translator().normalSpan(AnsiTranslator::white)) + html));
}

void MainWidget::setActionEnabled(ConnectionAction action, bool enabled) {
  actions_.at(indexOf(action))->setEnabled(enabled);
}

void MainWidget::focusInputBar() {
  inputBar_->setFocus(Qt::OtherFocusReason);
}

QIODevice& MainWidget::gameDevice() {
  return *socket_;
}

void MainWidget::sendLine(QTextStream& stream, const QString& line) {
  net::sendLine(stream, line);
  if (echoEnabled_ && settings_.displayLocalEcho)
    outputPane_->echoSentText(line + QStringLiteral("\r\n"));
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
