#pragma once

#include <QToolBar>
#include <QWidget>

#include "ReadHtml.h"
#include "automation/core/TriggerTable.h"
#include "net/GameLink.h"
#include "net/LinkHost.h"
#include "script/AliasLookup.h"
#include "script/Interpreter.h"
#include "script/ScriptHost.h"
#include "script/VariableTable.h"
#include "settings/ClientSettings.h"
#include "support/LiteralPane.h"
#include "terminal/core/OutputPipeline.h"
#include "terminal/view/InputHost.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/VitalsBars.h"

using namespace kelmora;
using namespace kelmora::automation;
using namespace kelmora::net;
using namespace kelmora::script;
using namespace kelmora::settings;
using namespace kelmora::terminal;

/// The game window once more with the plain pane in it: each read's HTML goes
/// into the document before its lines reach the triggers. Everything else is
/// the client's own. Triggers come from the file in the working directory.
class LiteralWindow : public QWidget,
                      private LinkHost,
                      private PipelineHost,
                      private ScriptHost,
                      private AliasLookup,
                      private TriggerHost,
                      private InputHost {
 public:
  LiteralWindow();

  /// Of a server on this computer.
  void connectToServer(quint16 port);
  [[nodiscard]] VariableTable& variables() { return variables_; }
  [[nodiscard]] QTextBrowser& pane() { return pane_; }
  [[nodiscard]] QWidget& inputBar() { return inputBar_; }

 private:
  // LinkHost: the connection changes nothing in this window.
  void takeServerBytes(const QByteArray& bytes) override;
  [[nodiscard]] qsizetype statusLineRoom() const override { return 0; }
  void appendStatusLine(const QString& /*html*/) override {}
  void moveCursorToEnd() override {}
  void setActionEnabled(ConnectionAction /*action*/, bool /*enabled*/) override {}
  void focusInputBar() override {}
  // PipelineHost
  void beep() override {}
  void showServerText(ServerText /*text*/) override {}
  void parseVitals(const char* line) override;
  void checkTriggers(const QByteArray& line) override { triggers_.check(line, *this); }
  // ScriptHost
  void sendLine(const QString& line) override;
  void printError(const QString& text) override { pane_.printError(text); }
  void printInfo(const QString& text) override { pane_.printInfo(text); }
  void printText(const QString& text, const QString& colourName) override;
  QObject& timerParent() override { return *this; }
  // AliasLookup
  [[nodiscard]] const QStringList* commandsOf(const QString& /*name*/) const override {
    return nullptr;
  }
  // TriggerHost
  void setVariable(const QString& name, const QString& value) override;
  void runActions(const QStringList& commands) override;
  // InputHost
  void submitInput() override {}
  void historyOlder() override {}
  void historyNewer() override {}
  bool dispatchMacro(int /*key*/) override { return false; }
  [[nodiscard]] bool claimsShortcut(QKeyCombination /*keys*/) const override { return false; }

  ClientSettings settings_;
  TriggerTable triggers_;
  VariableTable variables_;
  ReadHtml html_;
  OutputPipeline pipeline_;  ///< for the lines
  Interpreter interpreter_{*this, variables_, *this};
  GameLink link_{*this, *this};
  QToolBar toolbar_{this};
  LiteralPane pane_{16384, 65536};
  InputWidget inputBar_{*this, this};
  VitalsBars vitalsBars_{toolbar_};
};
