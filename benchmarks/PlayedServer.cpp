#include "PlayedServer.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "Play.h"

using namespace std::chrono_literals;

PlayedServer::PlayedServer() : listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener_, plain, length) != 0 || ::listen(listener_, 1) != 0 ||
      ::getsockname(listener_, plain, &length) != 0)
    throw std::runtime_error("no port to listen on");
  port_ = ntohs(address.sin_port);
}

PlayedServer::~PlayedServer() {
  ::close(peer_);
  ::close(listener_);
}

void PlayedServer::accept() {
  pollfd waiting{.fd = listener_, .events = POLLIN, .revents = 0};
  if (::poll(&waiting, 1, static_cast<int>(patience * 1000)) != 1)
    throw std::runtime_error("the client does not connect");
  peer_ = ::accept(listener_, nullptr, nullptr);
  const int on = 1;
  ::setsockopt(peer_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

void PlayedServer::welcome(const ClientProcess& client) {
  accept();
  send("Welcome to the game.\r\n", after(patience));
  client.waitUntilIdle(patience);
}

std::size_t PlayedServer::send(std::string_view text, Moment deadline) const {
  std::size_t sent = 0;
  while (sent < text.size() && Clock::now() < deadline) {
    pollfd waiting{.fd = peer_, .events = POLLOUT, .revents = 0};
    if (::poll(&waiting, 1, 100) < 1)
      continue;
    const ssize_t count =
        ::send(peer_, text.data() + sent, text.size() - sent, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0 && errno != EAGAIN)
      throw std::runtime_error("the client has gone");
    sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  return sent;
}

std::size_t PlayedServer::waiting() const {
  int unsent = 0;
  ::ioctl(peer_, SIOCOUTQ, &unsent);
  return static_cast<std::size_t>(unsent) + unread();
}

bool PlayedServer::listen(Moment deadline) {
  const auto left = std::max<Clock::duration>(deadline - Clock::now(), 0ns);
  const auto whole = std::chrono::duration_cast<std::chrono::seconds>(left);
  const timespec patient{.tv_sec = whole.count(), .tv_nsec = (left - whole).count()};
  pollfd waiting{.fd = peer_, .events = POLLIN, .revents = 0};
  if (::ppoll(&waiting, 1, &patient, nullptr) < 1)
    return false;
  char buffer[4096];
  const ssize_t count = ::recv(peer_, buffer, sizeof buffer, 0);
  if (count <= 0)
    throw std::runtime_error("the client has gone");
  arrived_ = Clock::now();
  // What the client sends next does not wait for the word that this came.
  const int on = 1;
  ::setsockopt(peer_, IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
  received_.append(buffer, static_cast<std::size_t>(count));
  return true;
}

std::optional<Moment> PlayedServer::takeLine(std::string_view line) {
  const std::string whole = std::string(line) + "\r\n";
  const auto at = received_.find(whole);
  if (at == std::string::npos)
    return std::nullopt;
  received_.erase(0, at + whole.size());
  return arrived_;
}

std::optional<Moment> PlayedServer::awaitLine(std::string_view line, Moment deadline) {
  for (;;) {
    if (const auto arrived = takeLine(line))
      return arrived;
    if (!listen(deadline))
      return std::nullopt;
  }
}

/// The system's table of connections tells it: the client's end is the one
/// whose other end is this server's port.
std::size_t PlayedServer::unread() const {
  std::ifstream connections("/proc/net/tcp");
  for (std::string line; std::getline(connections, line);) {
    unsigned remotePort = 0;
    std::size_t size = 0;
    if (std::sscanf(line.c_str(), "%*d: %*8x:%*4x %*8x:%4x %*2x %*8x:%8zx", &remotePort, &size) ==
            2 &&
        remotePort == static_cast<unsigned>(port_))
      return size;
  }
  return 0;
}
