#pragma once

#include <QAction>
#include <QDialog>
#include <QTest>
#include <QToolBar>

#include "app/MainWidget.h"
#include "app/Profile.h"
#include "support/GameServer.h"
#include "support/OwnStore.h"
#include "support/Settled.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::app;
using namespace kelmora::terminal;

/// A window whose stored host and port are those of a test's server, with the
/// parts that a player sees and the keys that a player presses.
class PlayWindow {
 public:
  using Options = QList<std::pair<QString, QVariant>>;

  explicit PlayWindow(quint16 port, const Options& options = {}) {
    store.set("hostName", "127.0.0.1");
    store.set("port", port);
    for (const auto& [key, value] : options)
      store.set(key, value);
    window = std::make_unique<MainWidget>(profile);
    pane = window->findChild<OutputWidget*>();
    bar = window->findChild<InputWidget*>();
    for (QAction* action : window->findChild<QToolBar*>()->actions())
      if (!action->isSeparator())
        actions << action;
    window->show();
  }

  [[nodiscard]] QString text() const { return settled(*pane).toPlainText(); }
  [[nodiscard]] QString lastLine() const { return text().section('\n', -1); }
  [[nodiscard]] QTextCharFormat formatOf(const QString& words) const {
    return settled(*pane)
        .document()
        ->find(words, 0, QTextDocument::FindCaseSensitively)
        .charFormat();
  }
  /// Connect, Disconnect and Proxy settings, as "+" (enabled) or "-".
  [[nodiscard]] QString connectionStates() const {
    QString states;
    for (const int i : {0, 1, 6})
      states += actions.at(i)->isEnabled() ? '+' : '-';
    return states;
  }
  /// Null when there is none of that title.
  [[nodiscard]] QDialog* dialogTitled(const QString& title) const {
    for (QDialog* dialog : window->findChildren<QDialog*>())
      if (dialog->windowTitle() == title)
        return dialog;
    return nullptr;
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

  OwnStore store;
  Profile profile{store.place()};
  std::unique_ptr<MainWidget> window;
  OutputWidget* pane = nullptr;
  InputWidget* bar = nullptr;
  QList<QAction*> actions;
};
