#include "LiteralWindow.h"

#include <QGridLayout>
#include <QHostAddress>
#include <QTextStream>
#include <algorithm>

#include "PaneColours.h"
#include "automation/core/AutomationFiles.h"
#include "net/SendLine.h"
#include "settings/UsableValues.h"

using namespace kelmora;
using namespace kelmora::automation;
using namespace kelmora::net;
using namespace kelmora::settings;
using namespace kelmora::terminal;

LiteralWindow::LiteralWindow()
    : reader_(socket_, [this](const QByteArray& bytes) {
        const PipelineOptions options{.displayAnsiColor = settings_.displayAnsiColor,
                                      .playBeeps = settings_.playBeeps,
                                      .parseHtml = settings_.parseHtml,
                                      .displayURLs = settings_.displayURLs};
        pane_.insertServerHtml(html_.of(bytes, options));
        pipeline_.readSocketData(bytes, options, *this);
      }) {
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
  connect(&socket_, &QTcpSocket::readyRead, this, [this] { reader_.readSocketData(); });
  inputBar_.setFocus(Qt::OtherFocusReason);
}

LiteralWindow::~LiteralWindow() {
  socket_.disconnect(this);
}

void LiteralWindow::connectToServer(quint16 port) {
  socket_.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
}

void LiteralWindow::parseVitals(const char* line) {
  if (const auto vitals = ::parseVitals(line))
    vitalsBars_.show(*vitals);
}

void LiteralWindow::sendLine(const QString& line) {
  QTextStream stream(&socket_);
  net::sendLine(stream, line);
  pane_.echoSentText(line + QStringLiteral("\r\n"));
}

void LiteralWindow::printText(const QString& text, const QString& colourName) {
  pane_.printText(text, QColor(colourName));
}

void LiteralWindow::setVariable(const QString& name, const QString& value) {
  variables_.set(name, value);
}

void LiteralWindow::runActions(const QStringList& commands) {
  interpreter_.actionQueue().runActions(commands);
}
