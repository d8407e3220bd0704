#include "demo/PlayerSession.h"

#include <algorithm>
#include <chrono>

#include "demo/Shows.h"

namespace kelmora::demo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 kReadBuffer = 16'384;
constexpr qint64 kReadChunk = 4096;
// One player's stream of lines must not keep the others waiting.
constexpr int kLinesPerTurn = 16;
constexpr int kFloodLinesPerWrite = 100;
constexpr qint64 kFloodWater = 65'536;
// A player who asks but does not read is not asked further questions.
constexpr qint64 kInputWater = 262'144;
constexpr auto kFarewell = 3s;

}  // namespace

PlayerSession::PlayerSession(QTcpSocket* socket, qint64 maxUnsentBytes, QObject* parent)
    : QObject(parent), socket_(socket), maxUnsentBytes_(maxUnsentBytes) {
  socket_->setParent(this);
  socket_->setReadBufferSize(kReadBuffer);
  socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  later_.setSingleShot(true);
  later_.setInterval(0);
  connect(&later_, &QTimer::timeout, this, &PlayerSession::goOn);
  closing_.setSingleShot(true);
  connect(&closing_, &QTimer::timeout, this, &PlayerSession::end);
  connect(socket_, &QTcpSocket::readyRead, this, &PlayerSession::takeInput);
  connect(socket_, &QTcpSocket::bytesWritten, this, [this] {
    pumpFlood();
    later_.start();
  });
  connect(socket_, &QTcpSocket::disconnected, this, &PlayerSession::end);
}

PlayerSession::~PlayerSession() {
  // The socket goes with this object and must not report to half of it.
  socket_->disconnect(this);
}

void PlayerSession::send(const QByteArray& response) {
  if (over_ || closing_.isActive())
    return;
  socket_->write(response);
  if (socket_->bytesToWrite() > maxUnsentBytes_)
    end();
}

void PlayerSession::startFlood(int lines) {
  flood_ = Flood{0, lines};
  later_.start();
}

std::optional<int> PlayerSession::stopFlood() {
  if (!flood_)
    return std::nullopt;
  const int sent = flood_->sent;
  flood_.reset();
  return sent;
}

void PlayerSession::close() {
  if (over_)
    return;
  flood_.reset();
  closing_.start(kFarewell);
  socket_->disconnectFromHost();
}

void PlayerSession::takeInput() {
  int lines = 0;
  while (!over_ && !closing_.isActive() && socket_->bytesToWrite() < kInputWater) {
    if (chunkPosition_ == chunk_.size()) {
      chunk_ = socket_->read(kReadChunk);
      chunkPosition_ = 0;
      if (chunk_.isEmpty())
        return;
    }
    const auto line = assembler_.take(chunk_.at(chunkPosition_++));
    if (!line)
      continue;
    Q_EMIT lineReceived(line->bytes, line->cut);
    if (++lines == kLinesPerTurn) {
      later_.start();
      return;
    }
  }
}

void PlayerSession::goOn() {
  if (over_) {
    Q_EMIT ended();
    return;
  }
  pumpFlood();
  takeInput();
}

void PlayerSession::pumpFlood() {
  while (!over_ && flood_ && socket_->bytesToWrite() < kFloodWater) {
    const int upTo = std::min(flood_->sent + kFloodLinesPerWrite, flood_->total);
    QString lines;
    for (int n = flood_->sent + 1; n <= upTo; ++n)
      lines += floodLine(n, flood_->total);
    flood_->sent = upTo;
    const bool finished = upTo == flood_->total;
    if (finished)
      flood_.reset();
    send(lines.toUtf8());
    if (finished)
      Q_EMIT floodFinished(upTo);
  }
}

// Told later: whoever listens may be in the middle of a call to this object.
void PlayerSession::end() {
  if (over_)
    return;
  over_ = true;
  flood_.reset();
  closing_.stop();
  later_.start();
}

}  // namespace kelmora::demo
