#pragma once

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include "demo/LineAssembler.h"

namespace kelmora::demo {

/// One player's connection: bytes in, whole lines out to whoever listens, and
/// responses back. What waits in either direction is bounded.
class PlayerSession : public QObject {
  Q_OBJECT

 public:
  /// Takes over `socket`, which must be connected.
  PlayerSession(QTcpSocket* socket, qint64 maxUnsentBytes, QObject* parent = nullptr);
  ~PlayerSession() override;

  /// Sends one response in one piece. A player who lets more than the allowed
  /// bytes pile up is dropped.
  void send(const QByteArray& response);
  /// Sends `lines` numbered lines, no faster than they are read.
  void startFlood(int lines);
  /// The number of lines the flood had sent, or nothing where none ran.
  std::optional<int> stopFlood();
  /// Closes as soon as everything is sent, or after a few seconds anyway.
  void close();

 Q_SIGNALS:
  void lineReceived(const QByteArray& line, LineCut cut);
  void floodFinished(int lines);
  /// The connection is over. Never emitted from inside a call of this class.
  void ended();

 private:
  struct Flood {
    int sent;
    int total;
  };

  void takeInput();
  void goOn();
  void pumpFlood();
  void end();

  QTcpSocket* socket_;
  /// Fires as soon as the event loop is back: for what must not happen inside
  /// the call that brings it about, and for the rest of a long input.
  QTimer later_;
  QTimer closing_;
  LineAssembler assembler_;
  QByteArray chunk_;
  qsizetype chunkPosition_ = 0;
  qint64 maxUnsentBytes_;
  std::optional<Flood> flood_;
  bool over_ = false;
};

}  // namespace kelmora::demo
