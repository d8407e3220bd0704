#pragma once

class QObject;
class QString;

namespace kelmora::script {

/// What running a script needs of the window. A call may start further scripts
/// before it returns; they run to completion inside it.
class ScriptHost {
 public:
  virtual ~ScriptHost() = default;

  /// Sends one line, given without its line end, to the game server, then
  /// echoes it in the pane if local echo is on.
  virtual void sendLine(const QString& line) = 0;

  /// One line in the pane's error style, which brings its own "## ".
  virtual void printError(const QString& text) = 0;
  /// One line in the pane's information style, which brings its own "++ ".
  virtual void printInfo(const QString& text) = 0;
  /// One plain line in a colour written as "#" and hex digits. The name is the
  /// player's own and may be no colour at all.
  virtual void printText(const QString& text, const QString& colourName) = 0;

  /// The parent of waiting timers; it outlives the action queue.
  [[nodiscard]] virtual QObject& timerParent() = 0;
};

}  // namespace kelmora::script
