#pragma once

#include <QtGlobal>

class QByteArray;
class QString;

namespace kelmora::net {

/// The toolbar actions that the connection enables and disables.
enum class ConnectionAction { Connect, Disconnect, ProxySettings };

/// What the link to the game needs of the window.
class LinkHost {
 public:
  LinkHost() = default;
  Q_DISABLE_COPY_MOVE(LinkHost)

  /// Takes what one read of the socket gave: all that was there, and nothing if
  /// nothing was.
  virtual void takeServerBytes(const QByteArray& bytes) = 0;

  /// How many characters a status line may have. A host name that makes it
  /// longer is cut.
  [[nodiscard]] virtual qsizetype statusLineRoom() const = 0;
  /// Appends the HTML to the pane, as a paragraph of its own in the colour of
  /// status lines, and leaves the pane's text cursor at the end.
  virtual void appendStatusLine(const QString& html) = 0;
  /// Moves the pane's text cursor to the end.
  virtual void moveCursorToEnd() = 0;
  virtual void setActionEnabled(ConnectionAction action, bool enabled) = 0;
  virtual void focusInputBar() = 0;

 protected:
  ~LinkHost() = default;
};

}  // namespace kelmora::net
