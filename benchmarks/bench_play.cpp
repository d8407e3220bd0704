// Plays a game server for one client, which it starts, and prints as one line
// of JSON what that took. "{port}" in the client's command stands for the
// server's port on this computer.
//
//   bench_play start ... -- COMMAND       until the client has drawn its window
//   bench_play flood ... -- COMMAND       much text, then a line to be answered
//   bench_play rounds ... -- COMMAND      lines to be answered, one at a time
//
//   --terminal             the client is a terminal program: give it one
//   --megabytes N          length of the flood
//   --link-every N         every line of that number has a link of its own
//   --memory-every N       note the memory each time so many megabytes are taken
//   --watch                look at the client's event loop and press keys
//   --limit SECONDS        stop a flood that takes longer
//   --count N, --gap MS    how many rounds, and how long to wait between them

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <signal.h>
#include <stdexcept>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "ClientProcess.h"
#include "GameText.h"

namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t seed = 1;
constexpr double patience = 20;  // seconds for what should take none
constexpr std::size_t megabyte = 1000000;

struct Options {
  std::string part;
  ClientProcess::Screen screen = ClientProcess::Screen::Pipes;
  std::size_t megabytes = 1;
  std::uint32_t linkEvery = 0;
  std::size_t memoryEvery = 0;
  bool watch = false;
  double limit = 60;
  int count = 1000;
  int gap = 0;
  std::vector<std::string> command = {};
};

/// The game's end of one connection.
class Server {
 public:
  Server() : listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
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
  ~Server() {
    ::close(peer_);
    ::close(listener_);
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  [[nodiscard]] int port() const { return port_; }

  void accept() {
    pollfd waiting{.fd = listener_, .events = POLLIN, .revents = 0};
    if (::poll(&waiting, 1, static_cast<int>(patience * 1000)) != 1)
      throw std::runtime_error("the client does not connect");
    peer_ = ::accept(listener_, nullptr, nullptr);
    const int on = 1;
    ::setsockopt(peer_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  }

  /// How much was taken before the deadline.
  std::size_t send(std::string_view text, Moment deadline) const {
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

  /// How much of what was sent the client has not taken yet: megabytes may wait
  /// in the system on either side.
  [[nodiscard]] std::size_t waiting() const {
    int unsent = 0;
    ::ioctl(peer_, SIOCOUTQ, &unsent);
    return static_cast<std::size_t>(unsent) + unread();
  }

  /// When the client has sent this line; nothing if it does not in time. Lines
  /// of older floods and rounds are passed over.
  std::optional<Moment> awaitLine(std::string_view line, Moment deadline) {
    const std::string whole = std::string(line) + "\r\n";
    for (;;) {
      if (const auto at = received_.find(whole); at != std::string::npos) {
        received_.erase(0, at + whole.size());
        return arrived_;
      }
      pollfd waiting{.fd = peer_, .events = POLLIN, .revents = 0};
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
      if (left <= 0ms || ::poll(&waiting, 1, static_cast<int>(left.count())) < 1)
        return std::nullopt;
      char buffer[4096];
      const ssize_t count = ::recv(peer_, buffer, sizeof buffer, 0);
      if (count <= 0)
        throw std::runtime_error("the client has gone");
      arrived_ = Clock::now();
      received_.append(buffer, static_cast<std::size_t>(count));
    }
  }

 private:
  /// The system's table of connections tells it: the client's end is the one
  /// whose other end is this server's port.
  [[nodiscard]] std::size_t unread() const {
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

  int listener_;
  int port_ = 0;
  int peer_ = -1;
  std::string received_;
  Moment arrived_;
};

/// One line of JSON.
class Result {
 public:
  void add(const std::string& name, double value) {
    char number[40];
    std::snprintf(number, sizeof number, "%.6f", value);
    text_ += (text_.empty() ? "\"" : ", \"") + name + "\": " + number;
  }
  void print() const { std::printf("{%s}\n", text_.c_str()); }

 private:
  std::string text_;
};

Moment momentOf(const std::string& nanoseconds) {
  return Moment(Clock::duration(std::stoll(nanoseconds)));
}

Moment after(double time) {
  return Clock::now() +
         std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(time));
}

/// The client connected, and done with what it does first.
void welcome(Server& server, const ClientProcess& client) {
  server.accept();
  server.send("Welcome to the game.\r\n", after(patience));
  client.waitUntilIdle(patience);
}

void start(const Options& options, Server& server, Result& result) {
  ClientProcess client(options.command, options.screen);
  const auto words = client.waitFor("painted", patience);
  if (!words)
    throw std::runtime_error("the client paints nothing");
  result.add("painted", seconds(momentOf(words->at(1)) - client.started()));
  server.accept();
}

class Flood {
 public:
  Flood(const Options& options, Server& server, Result& result)
      : options_(options),
        server_(server),
        result_(result),
        client_(options.command, options.screen) {}

  void run() {
    welcome(server_, client_);
    if (options_.memoryEvery == 0)
      prepare();
    if (options_.watch)
      client_.write("watch");
    const auto before = client_.cpuSeconds();
    begin_ = Clock::now();
    deadline_ = after(options_.limit);
    const std::size_t sent = send();
    // Said more than once: a client may take a line for two where a read ends
    // inside it.
    if (sent >= options_.megabytes * megabyte)
      server_.send("The flood is over.\r\nThe flood is over.\r\nThe flood is over.\r\n", deadline_);
    const auto answered = server_.awaitLine("answer", deadline_);
    if (!answered) {
      result_.add("stoppedSeconds", seconds(Clock::now() - begin_));
      result_.add("stoppedMegabytes",
                  static_cast<double>(sent - std::min(sent, server_.waiting())) / megabyte);
      return;
    }
    result_.add("answer", seconds(*answered - begin_));
    settle();
    for (const auto& [name, spent] : client_.cpuSeconds()) {
      const auto earlier = before.find(name);
      result_.add("cpu " + name, spent - (earlier == before.end() ? 0 : earlier->second));
    }
    result_.add("peak", client_.residentPeak());
  }

 private:
  /// Made before the clock runs, where it fits in memory.
  void prepare() {
    text_.reserve((options_.megabytes + 1) * megabyte);
    game_.fill(text_, options_.megabytes * megabyte);
  }

  std::size_t send() {
    if (options_.memoryEvery == 0)
      return server_.send(text_, deadline_);
    std::size_t sent = 0;
    for (std::size_t number = 1; number <= options_.megabytes; ++number) {
      text_.clear();
      game_.fill(text_, megabyte);
      const std::size_t count = server_.send(text_, deadline_);
      sent += count;
      if (count < text_.size())
        break;
      // The memory is to be that after so much was taken, not sent.
      while (server_.waiting() > 4 * megabyte && Clock::now() < deadline_)
        std::this_thread::sleep_for(1ms);
      if (number % options_.memoryEvery == 0)
        result_.add("peak " + std::to_string(number), client_.residentPeak());
    }
    return sent;
  }

  void settle() {
    Moment settled;
    if (options_.screen == ClientProcess::Screen::Terminal) {
      settled = client_.waitUntilIdle(options_.limit);
    } else {
      const auto words = client_.waitFor("settled", options_.limit);
      if (!words)
        throw std::runtime_error("the pane does not settle");
      settled = momentOf(words->at(1));
    }
    result_.add("settled", seconds(settled - begin_));
    if (!options_.watch)
      return;
    const auto watched = client_.waitFor("watched", patience);
    if (!watched || watched->size() < 6)
      throw std::runtime_error("the client has not watched itself");
    const char* names[] = {"stall", "keyMedian", "key99", "keyLongest", "keys"};
    for (std::size_t index = 0; index < std::size(names); ++index)
      result_.add(names[index], std::stod(watched->at(index + 1)));
  }

  const Options& options_;
  Server& server_;
  Result& result_;
  ClientProcess client_;
  GameText game_{seed, options_.linkEvery};
  std::string text_;
  Moment begin_;
  Moment deadline_;
};

void rounds(const Options& options, Server& server, Result& result) {
  constexpr int warmUp = 50;
  ClientProcess client(options.command, options.screen);
  welcome(server, client);
  std::vector<double> times;
  for (int number = -warmUp; number < options.count; ++number) {
    const Moment begin = Clock::now();
    server.send("The guard asks you: who goes there?\r\n", after(patience));
    const auto answered = server.awaitLine("friend", after(patience));
    if (!answered)
      throw std::runtime_error("no answer to a round");
    if (number >= 0)
      times.push_back(seconds(*answered - begin));
    std::this_thread::sleep_for(std::chrono::milliseconds(options.gap));
  }
  std::sort(times.begin(), times.end());
  result.add("median", times[times.size() / 2]);
  result.add("99th", times[times.size() * 99 / 100]);
  result.add("longest", times.back());
}

Options optionsOf(int argc, char** argv) {
  Options options{.part = argc > 1 ? argv[1] : ""};
  int index = 2;
  const auto number = [&] { return index + 1 < argc ? std::atoi(argv[++index]) : 0; };
  for (; index < argc; ++index) {
    const std::string_view word = argv[index];
    if (word == "--")
      break;
    if (word == "--terminal")
      options.screen = ClientProcess::Screen::Terminal;
    else if (word == "--watch")
      options.watch = true;
    else if (word == "--megabytes")
      options.megabytes = static_cast<std::size_t>(number());
    else if (word == "--link-every")
      options.linkEvery = static_cast<std::uint32_t>(number());
    else if (word == "--memory-every")
      options.memoryEvery = static_cast<std::size_t>(number());
    else if (word == "--limit")
      options.limit = number();
    else if (word == "--count")
      options.count = number();
    else if (word == "--gap")
      options.gap = number();
    else
      throw std::runtime_error("no such option: " + std::string(word));
  }
  for (++index; index < argc; ++index)
    options.command.emplace_back(argv[index]);
  return options;
}

void replacePort(std::vector<std::string>& command, int port) {
  constexpr std::string_view place = "{port}";
  for (std::string& word : command)
    if (const auto at = word.find(place); at != std::string::npos)
      word.replace(at, place.size(), std::to_string(port));
}

}  // namespace

int main(int argc, char** argv) {
  try {
    ::signal(SIGPIPE, SIG_IGN);
    Server server;
    Options options = optionsOf(argc, argv);
    replacePort(options.command, server.port());
    Result result;
    if (options.command.empty())
      throw std::runtime_error("which client?");
    if (options.part == "start")
      start(options, server, result);
    else if (options.part == "flood")
      Flood(options, server, result).run();
    else if (options.part == "rounds")
      rounds(options, server, result);
    else
      throw std::runtime_error("usage: bench_play start|flood|rounds [OPTIONS] -- COMMAND");
    result.print();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_play: %s\n", error.what());
    return 1;
  }
  return 0;
}
