#pragma once

#include <QHash>
#include <functional>

#include "script/AliasLookup.h"
#include "script/Interpreter.h"
#include "script/PendingTimers.h"
#include "script/ScriptHost.h"
#include "script/VariableTable.h"

using namespace kelmora;
using namespace kelmora::script;

/// Notes everything that scripts send and print, in order.
class RecordingHost : public ScriptHost {
 public:
  [[nodiscard]] QObject& timerParent() override { return parent_; }
  void sendLine(const QString& line) override {
    ++sentCount;
    note(QStringLiteral("> "), line);
    if (onSend)
      onSend(line);
  }
  void printError(const QString& text) override { note(QStringLiteral("## "), text); }
  void printInfo(const QString& text) override { note(QStringLiteral("++ "), text); }
  void printText(const QString& text, const QString& colourName) override {
    note(u'[' + colourName + QStringLiteral("] "), text);
  }

  /// The noted lines with this beginning.
  [[nodiscard]] QStringList noted(const QString& prefix) const {
    QStringList lines;
    for (const QString& line : log)
      if (line.startsWith(prefix))
        lines << line;
    return lines;
  }
  [[nodiscard]] QStringList errors() const { return noted(QStringLiteral("## ")); }

  QStringList log;
  qsizetype sentCount = 0;
  /// Switched off for scripts that send millions of lines. Errors are always noted.
  bool keepsLines = true;
  std::function<void(const QString&)> onSend;

 private:
  void note(const QString& style, const QString& text) {
    if (keepsLines || style.startsWith(u'#'))
      log << style + text;
  }

  QObject parent_;
};

/// The aliases that a test has set.
class AliasMap : public AliasLookup, public QHash<QString, QStringList> {
 public:
  [[nodiscard]] const QStringList* commandsOf(const QString& name) const override {
    const auto entry = constFind(name);
    return entry == constEnd() ? nullptr : &*entry;
  }
};

/// A whole script room with a recording host around it.
struct ScriptFixture {
  explicit ScriptFixture(qint64 steps = RunBudget::stepLimit)
      : interpreter(host, variables, aliases, steps) {}

  RecordingHost host;
  VariableTable variables;
  AliasMap aliases;
  Interpreter interpreter;
  PendingTimers& timers = interpreter.pendingTimers();

  void run(const QStringList& actions) { interpreter.runActions(actions); }
  /// Runs the list and returns what it has sent and printed.
  QStringList logOf(const QStringList& actions) {
    host.log.clear();
    run(actions);
    return host.log;
  }
  /// One line as it comes from the input bar while splitting is off.
  Pause type(const QString& line) { return interpreter.interpretAction(line); }
};
