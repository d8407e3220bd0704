#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ClientProcess.h"

/// The game's end of one connection.
class PlayedServer {
 public:
  PlayedServer();
  ~PlayedServer();
  PlayedServer(const PlayedServer&) = delete;
  PlayedServer& operator=(const PlayedServer&) = delete;

  [[nodiscard]] int port() const { return port_; }

  void accept();
  /// Accepts, greets, and waits until the client is done with what it does first.
  void welcome(const ClientProcess& client);
  /// How much was taken before the deadline.
  std::size_t send(std::string_view text, Moment deadline) const;
  /// How much of what was sent the client has not taken yet: megabytes may wait
  /// in the system on either side.
  [[nodiscard]] std::size_t waiting() const;

  /// Takes in what the client sends next, if it does in time, and notes when.
  bool listen(Moment deadline);
  /// When this line came, if it has been taken in. What stands before it is
  /// passed over: lines of older floods and rounds.
  [[nodiscard]] std::optional<Moment> takeLine(std::string_view line);
  /// When the client has sent this line; nothing if it does not in time.
  [[nodiscard]] std::optional<Moment> awaitLine(std::string_view line, Moment deadline);

 private:
  [[nodiscard]] std::size_t unread() const;

  int listener_;
  int port_ = 0;
  int peer_ = -1;
  std::string received_;
  Moment arrived_;
};
