#pragma once

#include <QBuffer>
#include <QHash>
#include <QTextStream>
#include <functional>

#include "script/ActionQueue.h"
#include "script/AliasLookup.h"
#include "script/Interpreter.h"
#include "script/ScriptHost.h"
#include "script/VariableTable.h"

using namespace kelmora;
using namespace kelmora::script;

/// Keeps everything a script does to the outside in one list, in order.
class RecordingHost : public ScriptHost {
 public:
  RecordingHost() { device_.open(QIODevice::ReadWrite); }

  [[nodiscard]] QIODevice& gameDevice() override { return device_; }
  [[nodiscard]] QObject& timerParent() override { return parent_; }
  void sendLine(QTextStream& stream, const QString& line) override {
    ++sentCount;
    devices << stream.device();
    unicodeDetection << stream.autoDetectUnicode();
    note(QStringLiteral("> "), line);
    if (onSend)
      onSend(line);
  }
  void printError(const QString& text) override { note(QStringLiteral("## "), text); }
  void printInfo(const QString& text) override { note(QStringLiteral("++ "), text); }
  void printText(const QString& text, const QString& colourName) override {
    note(u'[' + colourName + QStringLiteral("] "), text);
  }

  /// The noted lines that begin so.
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
  /// Off for scripts that send millions of lines: errors are kept all the same.
  bool keepsLines = true;
  std::function<void(const QString&)> onSend;
  QSet<QIODevice*> devices;
  QSet<bool> unicodeDetection;

 private:
  void note(const QString& style, const QString& text) {
    if (keepsLines || style.startsWith(u'#'))
      log << style + text;
  }

  QBuffer device_;
  QObject parent_;
};

/// Aliases of a test.
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
  ActionQueue& queue = interpreter.actionQueue();

  void run(const QStringList& actions) { queue.runActions(actions); }
  /// What the list does to the outside, from here on.
  QStringList logOf(const QStringList& actions) {
    host.log.clear();
    run(actions);
    return host.log;
  }
  /// One line as it comes from an input bar that splits nothing.
  int type(const QString& line, QString* timerId = nullptr) {
    QTextStream stream(&host.gameDevice());
    QString id;
    const int delay = interpreter.interpretAction(line, stream, timerId ? *timerId : id);
    return delay;
  }
};
