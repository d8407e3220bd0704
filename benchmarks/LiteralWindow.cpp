#include "LiteralWindow.h"

#include <QGridLayout>
#include <QTcpSocket>
#include <algorithm>

#include "PaneColours.h"
#include "automation/core/AutomationFiles.h"
#include "settings/UsableValues.h"

using namespace kelmora;
using namespace kelmora::automation;
using namespace kelmora::net;
using namespace kelmora::settings;
using namespace kelmora::terminal;

LiteralWindow::LiteralWindow() {
  setColours(html_.translator(), settings_);
  setColours(pipeline_.translator(), settings_);
  if (!AutomationFiles().loadTriggers(triggers_))
    qFatal("the triggers cannot be read");
  setPaneLook(pane_, settings_);
  inputBar_.setFont(settings_.inFont);
  toolbar_.setFixedHeight(70);
  resize(settings::defaultWindowSize);
  auto* grid = new QGridLayout(this);
  grid->addWidget(&toolbar_, 0, 0);
  grid->addWidget(&pane_, 1, 0);
  grid->addWidget(&inputBar_, 2, 0);
  connect(&link_.socket(), &QTcpSocket::readyRead, this, [this] { link_.readSocketData(); });
  inputBar_.setFocus(Qt::OtherFocusReason);
}

void LiteralWindow::connectToServer(quint16 port) {
  link_.connectToServer({.hostName = QStringLiteral("127.0.0.1"), .port = port});
}

void LiteralWindow::takeServerBytes(const QByteArray& bytes) {
  const PipelineOptions options{.displayAnsiColor = settings_.displayAnsiColor,
                                .playBeeps = settings_.playBeeps,
                                .parseHtml = settings_.parseHtml,
                                .displayURLs = settings_.displayURLs};
  pane_.insertServerHtml(html_.of(bytes, options));
  pipeline_.readSocketData(bytes, options, *this);
}

void LiteralWindow::parseVitals(const char* line) {
  if (const auto vitals = ::parseVitals(line))
    vitalsBars_.show(*vitals);
}

void LiteralWindow::sendLine(const QString& line) {
  (void)link_.sendLine(line);
  pane_.echoSentText(line + QStringLiteral("\r\n"));
}

void LiteralWindow::printText(const QString& text, const QString& colourName) {
  pane_.printText(text, QColor(colourName));
}

void LiteralWindow::setVariable(const QString& name, const QString& value) {
  variables_.set(name, value);
}

void LiteralWindow::runActions(const QStringList& commands) {
  interpreter_.runActions(commands);
}
