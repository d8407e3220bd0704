#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <memory>

#include "support/EndConnection.h"

/// A game that never pauses: numbered lines with colours, tells, prompts, and
/// links of which no two are the same.
class SoakServer : public QObject {
 public:
  SoakServer() {
    connect(&server_, &QTcpServer::newConnection, this, [this] {
      peer_.reset(server_.nextPendingConnection());
      firstLine_ = lines_ + 1;
      connect(peer_.get(), &QTcpSocket::readyRead, this,
              [this] { received_ += peer_->readAll().count("\r\n"); });
    });
    server_.listen(QHostAddress(QHostAddress::LocalHost));
  }

  [[nodiscard]] quint16 port() const { return server_.serverPort(); }
  [[nodiscard]] bool isConnected() const {
    return peer_ && peer_->state() == QAbstractSocket::ConnectedState;
  }
  /// Lines that the player has sent since the start.
  [[nodiscard]] qint64 received() const { return received_; }
  /// How the line that was sent so many lines ago can be found in the pane;
  /// empty where it went to an earlier connection.
  [[nodiscard]] QString markOf(qint64 linesAgo) const {
    const qint64 line = lines_ - linesAgo;
    return line < firstLine_ ? QString() : QStringLiteral("[%1]").arg(line);
  }

  /// Nothing where nobody is connected.
  void sendLines(int count) {
    if (!isConnected())
      return;
    QByteArray bytes;
    for (; count > 0; --count)
      bytes += nextLine();
    peer_->write(bytes);
    peer_->flush();
  }
  /// Ends the connection inside an escape sequence.
  void end(End how) {
    if (!isConnected())
      return;
    peer_->write("\x1b[1;3");
    endConnection(*peer_, how);
  }

 private:
  QByteArray nextLine() {
    const QByteArray number = QByteArray::number(++lines_);
    const QByteArray mark = '[' + number + "] ";
    const QByteArray colour = QByteArray::number(30 + lines_ % 8);
    const QByteArray points = QByteArray::number(lines_ % 200);
    switch (lines_ % 10) {
      case 0:
        return mark + "\r\nhp: [ " + points + " / 200 ], sp: [ " + points + " / 300 ], ep: [ 5 / " +
               points + " ]\r\n";
      case 1:
        return "\x1b[1;" + colour + "m" + mark + "\x1b[38;5;" + points +
               "mA dragon lands beside you.\x1b[0m\r\n";
      case 2:
      case 5:
        return mark + "News at http://news.kelmora.example/item?" + number + " for all.\r\n";
      case 3:
        return mark + "\r\nRobin tells you: wait-" + number + " please\r\n";
      case 4:
        return mark + "www.kelmora.example/" + number + "\t<b>bold</b> & <i>plain</i>\r\n";
      case 6:
        return "\xff\xfb\x01\x1b[4" + colour.mid(1) + "m" + mark +
               "\xe2\x94\x80\xe2\x94\x80 caf\xc3\xa9 \x1b[m\r\n";
      case 7:
        return mark + (lines_ % 300 == 7 ? "\x07" : "") + "<a href='http://a.example/" + number +
               "'>look here</a><img src='file:///etc/passwd'>\r\n";
      default:
        return "\x1b[" + colour + "m" + mark +
               "The wind blows   from the \x1b[1mnorth\x1b[22m.\r\n";
    }
  }

  QTcpServer server_;
  std::unique_ptr<QTcpSocket> peer_;
  qint64 lines_ = 0;
  qint64 firstLine_ = 1;
  qint64 received_ = 0;
};
