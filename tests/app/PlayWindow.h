#pragma once

#include <QAction>
#include <QSettings>
#include <QTest>
#include <QToolBar>

#include "app/MainWidget.h"
#include "support/GameServer.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

/// A window whose stored host and port are those of a test's server, with the
/// parts that a player sees and the keys that a player presses.
class PlayWindow {
 public:
  using Options = QList<std::pair<QString, QVariant>>;

  explicit PlayWindow(quint16 port, const Options& options = {}) {
    QSettings store("Dunmere Works", "Kelmora Client v3.9b");
    store.clear();
    store.beginGroup("Global Settings");
    store.setValue("hostName", "127.0.0.1");
    store.setValue("port", port);
    for (const auto& [key, value] : options)
      store.setValue(key, value);
    store.sync();
    window = std::make_unique<MainWidget>();
    pane = window->findChild<OutputWidget*>();
    bar = window->findChild<InputWidget*>();
    for (QAction* action : window->findChild<QToolBar*>()->actions())
      if (!action->isSeparator())
        actions << action;
    window->show();
  }

  [[nodiscard]] QString text() const { return pane->toPlainText(); }
  [[nodiscard]] QString lastLine() const { return text().section('\n', -1); }
  [[nodiscard]] QTextCharFormat formatOf(const QString& words) const {
    return pane->document()->find(words, 0, QTextDocument::FindCaseSensitively).charFormat();
  }
  /// Connect, Disconnect and Proxy settings, as "+" (enabled) or "-".
  [[nodiscard]] QString connectionStates() const {
    QString states;
    for (const int i : {0, 1, 6})
      states += actions.at(i)->isEnabled() ? '+' : '-';
    return states;
  }
  void type(const QString& line) {
    bar->clear();
    QTest::keyClicks(bar, line);
    QTest::keyClick(bar, Qt::Key_Return);
  }
  /// Connects and waits until both sides know.
  [[nodiscard]] bool connectTo(GameServer& server) {
    window->connectToServer();
    return QTest::qWaitFor([&] { return server.peer() && connectionStates() == "-+-"; });
  }

  std::unique_ptr<MainWidget> window;
  OutputWidget* pane = nullptr;
  InputWidget* bar = nullptr;
  QList<QAction*> actions;
};
