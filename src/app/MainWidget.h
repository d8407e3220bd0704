#pragma once

#include <QAbstractSocket>
#include <QWidget>
#include <array>
#include <memory>

#include "app/ToolbarActions.h"
#include "automation/core/AliasTable.h"
#include "automation/core/AutomationFiles.h"
#include "automation/core/MacroTable.h"
#include "automation/core/TriggerTable.h"
#include "dialogs/SettingsHost.h"
#include "net/GameLink.h"
#include "net/LinkHost.h"
#include "script/AliasLookup.h"
#include "script/Interpreter.h"
#include "script/ScriptHost.h"
#include "script/VariableTable.h"
#include "settings/ClientSettings.h"
#include "settings/SettingsStore.h"
#include "terminal/core/InputHistory.h"
#include "terminal/core/OutputPipeline.h"
#include "terminal/view/InputHost.h"

class AliasWidget;
class ConfigureWidget;
class HelpWidget;
class InputWidget;
class MacroWidget;
class OutputWidget;
class ProxyWidget;
class QAction;
class QToolBar;
class TriggerWidget;

namespace kelmora::app {
class Beeper;
}

namespace kelmora::terminal {
class VitalsBars;
}

/// The window. It owns everything and decides nothing: each operation goes on
/// to the room that does the work, under the same name.
class MainWidget : public QWidget,
                   private kelmora::terminal::PipelineHost,
                   private kelmora::net::LinkHost,
                   private kelmora::script::ScriptHost,
                   private kelmora::script::AliasLookup,
                   private kelmora::automation::TriggerHost,
                   private kelmora::dialogs::SettingsHost,
                   private kelmora::terminal::InputHost {
  Q_OBJECT

 public:
  /// The options are kept in the user's own store, unless told otherwise.
  explicit MainWidget(kelmora::settings::StorePlace place = {});
  ~MainWidget() override;

  /// The options, edited in place by the dialogs.
  [[nodiscard]] kelmora::settings::ClientSettings& settings() { return settings_; }
  // The automation, edited in place by the editors.
  [[nodiscard]] kelmora::automation::MacroTable& macros() { return macroTable_; }
  [[nodiscard]] kelmora::automation::TriggerTable& triggers() { return triggerTable_; }
  [[nodiscard]] kelmora::automation::AliasTable& aliases() { return aliasTable_; }
  [[nodiscard]] kelmora::script::VariableTable& variables() { return variableTable_; }
  /// Writes the variables to their file, then every option and the window's
  /// place to the settings store.
  void storeSettings();

  // Also called by the rooms that this window serves.
  void submitInput() override;
  void historyOlder() override;
  void historyNewer() override;
  void parseVitals(const char* line) override;
  void runActions(const QStringList& actions) override;
  kelmora::script::Pause interpretAction(QString action);
  bool dispatchMacro(int key) override;

 public Q_SLOTS:
  // The meta-object's slot table is these fifteen, in this order; helpers
  // stay plain functions.
  void connectToServer();
  void disconnectFromServer();
  void displaySocketError(QAbstractSocket::SocketError sockerr);
  void readSocketData();
  void clientConnected();
  void clientDisconnected();
  void configureSettings();
  void proxySettings();
  void saveBuffer();
  void saveSettings();
  void loadSettings();
  void editMacros();
  void editTriggers();
  void editAliases();
  void showHelp();

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void loadStoredSettings();
  void takeEffect(kelmora::settings::Effect effect);
  void createWidgets();
  void createDialogs();
  void layOutWidgets();
  void connectActions();
  void connectSocket();
  void returnToInputBar();
  [[nodiscard]] const QByteArray& statusSpan() const;

  // PipelineHost
  void beep() override;
  void showServerText(kelmora::terminal::ServerText text) override;
  void checkTriggers(const QByteArray& line) override;
  // LinkHost
  void takeServerBytes(const QByteArray& bytes) override;
  [[nodiscard]] qsizetype statusLineRoom() const override;
  void appendStatusLine(const QString& html) override;
  void moveCursorToEnd() override;
  void setActionEnabled(kelmora::net::ConnectionAction action, bool enabled) override;
  void focusInputBar() override;
  // ScriptHost
  void sendLine(const QString& line) override;
  void printError(const QString& text) override;
  void printInfo(const QString& text) override;
  void printText(const QString& text, const QString& colourName) override;
  QObject& timerParent() override;
  // AliasLookup
  [[nodiscard]] const QStringList* commandsOf(const QString& name) const override;
  // TriggerHost
  void setVariable(const QString& name, const QString& value) override;
  // SettingsHost; the constructor calls it, too, so nobody is to override it.
  void applySettings(kelmora::settings::Occasion occasion) final;
  // InputHost
  [[nodiscard]] bool claimsShortcut(QKeyCombination keys) const override;

  kelmora::terminal::InputHistory inputHistory_;
  kelmora::automation::MacroTable macroTable_;
  kelmora::automation::TriggerTable triggerTable_;
  kelmora::automation::AliasTable aliasTable_;
  kelmora::script::VariableTable variableTable_;
  kelmora::automation::AutomationFiles automationFiles_;
  kelmora::settings::SettingsStore store_;
  kelmora::settings::ClientSettings settings_;
  /// Local echo as it was at the start; an option switched on during play
  /// takes effect at the next start.
  bool echoEnabled_ = false;
  kelmora::terminal::OutputPipeline pipeline_;
  kelmora::script::Interpreter interpreter_{*this, variableTable_, *this};
  /// Its socket is a child of the window.
  kelmora::net::GameLink link_{*this, *this};

  // Children of the window.
  QToolBar* toolbar_ = nullptr;
  InputWidget* inputBar_ = nullptr;
  OutputWidget* outputPane_ = nullptr;
  std::array<QAction*, kelmora::app::toolbarActionCount> actions_{};
  ConfigureWidget* configureDialog_ = nullptr;
  ProxyWidget* proxyDialog_ = nullptr;
  HelpWidget* helpDialog_ = nullptr;
  MacroWidget* macroEditor_ = nullptr;
  TriggerWidget* triggerEditor_ = nullptr;
  AliasWidget* aliasEditor_ = nullptr;

  std::unique_ptr<kelmora::terminal::VitalsBars> vitalsBars_;
  std::unique_ptr<kelmora::app::Beeper> beeper_;
};
