#pragma once

#include <QByteArray>
#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <atomic>
#include <functional>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

#include "support/EndConnection.h"

/// A server on the loopback in a thread of its own, so that it can do to a
/// connection what it likes while the client is at work. It plays its part for
/// one connection after the other.
class RawServer {
 public:
  /// In the server's thread; the connection is closed behind it.
  using Part = std::function<void(int connection)>;

  /// What the system takes for it without its reading is kept small.
  explicit RawServer(Part part) : part_(std::move(part)) {
    const int small = 4096;
    ::setsockopt(listener_, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_, generic, length) == 0 && ::listen(listener_, 8) == 0 &&
        ::getsockname(listener_, generic, &length) == 0)
      port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { run(); });
  }
  ~RawServer() {
    stopped_ = true;
    ::shutdown(listener_, SHUT_RDWR);
    const int connection = connection_;
    if (connection >= 0)
      ::shutdown(connection, SHUT_RDWR);
    thread_.join();
    ::close(listener_);
  }
  Q_DISABLE_COPY_MOVE(RawServer)

  [[nodiscard]] quint16 port() const { return port_; }
  /// Connections whose part has been played to its end.
  [[nodiscard]] int played() const { return played_; }

  /// False when the connection ends before all is sent.
  static bool send(int connection, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
      const ssize_t sent =
          ::send(connection, bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
      if (sent <= 0)
        return false;
      bytes = bytes.sliced(sent);
    }
    return true;
  }
  /// False when the connection ends before so many bytes have come.
  static bool receive(int connection, qsizetype count) {
    std::array<char, 65536> bytes{};
    while (count > 0) {
      const auto most = std::min(static_cast<std::size_t>(count), bytes.size());
      const ssize_t received = ::recv(connection, bytes.data(), most, 0);
      if (received <= 0)
        return false;
      count -= received;
    }
    return true;
  }
  static void receiveAll(int connection) {
    while (receive(connection, 65536)) {
    }
  }
  /// Takes bytes until these have come.
  static bool receiveUntil(int connection, const QByteArray& end) {
    QByteArray seen;
    for (char byte = 0; !seen.endsWith(end);) {
      if (::recv(connection, &byte, 1, 0) != 1)
        return false;
      seen = seen.right(end.size() - 1) + byte;
    }
    return true;
  }
  static void end(int connection, End how) {
    if (how == End::Reset) {
      const linger atOnce{1, 0};
      ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    } else if (how == End::HalfClose) {
      ::shutdown(connection, SHUT_WR);
      receiveAll(connection);
    }
  }

 private:
  void run() {
    while (!stopped_) {
      const int connection = ::accept(listener_, nullptr, nullptr);
      if (connection < 0)
        continue;
      const int one = 1;
      ::setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
      // None of the parts waits forever for a client that does not come.
      const timeval patience{10, 0};
      ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
      connection_ = connection;
      part_(connection);
      connection_ = -1;
      ::close(connection);
      ++played_;
    }
  }

  Part part_;
  int listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
  quint16 port_ = 0;
  std::atomic<bool> stopped_ = false;
  std::atomic<int> connection_ = -1;
  std::atomic<int> played_ = 0;
  std::thread thread_;
};
