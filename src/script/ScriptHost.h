#pragma once

class QObject;
class QString;

namespace kelmora::script {

/// What scripts need from the window. A call may start further scripts, which
/// then run to their end before it returns.
class ScriptHost {
 public:
  virtual ~ScriptHost() = default;

  /// Sends one line, given without its line end, to the game server, then
  /// echoes it in the pane if local echo is on.
  virtual void sendLine(const QString& line) = 0;

  /// Shows one line in the pane's error style, which puts "## " before it.
  virtual void printError(const QString& text) = 0;
  /// Shows one line in the pane's information style, which puts "++ " before it.
  virtual void printInfo(const QString& text) = 0;
  /// Shows one line in a colour, written as "#" and hex digits. The player has
  /// typed it, so it may be no colour at all.
  virtual void printText(const QString& text, const QString& colourName) = 0;

  /// The parent of the timers of pauses. It must outlive the interpreter.
  [[nodiscard]] virtual QObject& timerParent() = 0;
};

}  // namespace kelmora::script
