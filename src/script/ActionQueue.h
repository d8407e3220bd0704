#pragma once

#include <QStringList>

class Interpreter;
class ScriptHost;

/// Runs lists of actions in order.
class ActionQueue {
 public:
  ActionQueue(ScriptHost& host, Interpreter& interpreter)
      : host_(host), interpreter_(interpreter) {}

  void runActions(const QStringList& actions);

 private:
  ScriptHost& host_;
  Interpreter& interpreter_;
};
