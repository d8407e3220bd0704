#pragma once

class QIODevice;
class QString;
class QTextStream;

/// What running a script needs of the window.
class ScriptHost {
 public:
  virtual ~ScriptHost() = default;

  /// The device that lines for the game server are written to.
  [[nodiscard]] virtual QIODevice& gameDevice() = 0;

  /// Writes one line (without its line end) to the server through a stream on
  /// that device, then echoes it where local echo is on.
  virtual void sendLine(QTextStream& stream, const QString& line) = 0;
};
