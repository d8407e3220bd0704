#pragma once

#include <QString>

class QTextStream;
class ScriptHost;

/// Understands one action: a line for the game server, or (with a doubled
/// slash) a line for it that begins with a slash.
class Interpreter {
 public:
  explicit Interpreter(ScriptHost& host) : host_(host) {}

  /// Runs one action. Returns the pause it asks for in milliseconds (zero or
  /// less: none) and, with a pause, writes its id to `timerId`.
  int interpretAction(QString action, QTextStream& stream, QString& timerId);

 private:
  ScriptHost& host_;
};
