#pragma once

#include <QAbstractSocket>
#include <QWidget>
#include <array>
#include <memory>

#include "app/Play.h"
#include "app/ToolbarActions.h"
#include "dialogs/SettingsHost.h"
#include "script/Sequel.h"
#include "terminal/core/InputHistory.h"
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

namespace kelmora::terminal {
class VitalsBars;
}

/// The window. It owns its widgets and the play, and decides nothing: each
/// operation goes on to the room that does the work, under the same name.
class MainWidget : public QWidget,
                   private kelmora::app::PlayHost,
                   private kelmora::dialogs::SettingsHost,
                   private kelmora::terminal::InputHost {
  Q_OBJECT

 public:
  /// Reads the profile from its store and files. It outlives the window.
  explicit MainWidget(kelmora::app::Profile& profile);
  ~MainWidget() override;

  /// Writes the variables to their file, then every option and the window's
  /// place to the settings store.
  void storeSettings();

  void submitInput() override;
  void historyOlder() override;
  void historyNewer() override;
  bool dispatchMacro(int key) override;
  void parseVitals(const char* line) override;
  void runActions(const QStringList& actions);
  kelmora::script::Pause interpretAction(QString action);

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

  // Two of these are called by the constructor, so nobody is to override them.
  // PlayHost
  void setActionEnabled(kelmora::net::ConnectionAction action, bool enabled) override;
  void focusInputBar() final;
  // SettingsHost
  void applySettings(kelmora::settings::Occasion occasion) final;
  // InputHost
  [[nodiscard]] bool claimsShortcut(QKeyCombination keys) const override;

  kelmora::app::Profile& profile_;
  kelmora::terminal::InputHistory inputHistory_;
  QPoint posAtStart_;

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
  std::unique_ptr<kelmora::app::Play> play_;
};
