// Plays a game server for one client, which it starts, and prints as one line
// of JSON what that took. "{port}" in the client's command stands for the
// server's port on this computer.
//
//   bench_play start ... -- COMMAND       until the client has drawn its window
//   bench_play flood ... -- COMMAND       much text, then a line to be answered
//   bench_play rounds ... -- COMMAND      lines to be answered, one at a time
//   bench_play deaf ... -- COMMAND        a flood, and then what holds up the
//                                         window while its pane is full
//   bench_play text ...                   prints the flood instead
//
//   --terminal             the client is a terminal program: give it one
//   --megabytes N          length of the flood
//   --link-every N         every line of that number has a link of its own
//   --memory-every N       note the memory each time so many megabytes are taken
//   --watch                look at the client's event loop and press keys
//   --limit SECONDS        stop a flood that takes longer
//   --count N, --gap MS    how many rounds, and how long to wait between them

#include <algorithm>
#include <cstdlib>
#include <signal.h>
#include <string_view>

#include "DeafTimes.h"
#include "Flood.h"
#include "GameText.h"
#include "Play.h"
#include "PlayedServer.h"

namespace {

void start(const Options& options, PlayedServer& server, Result& result) {
  ClientProcess client(options.command, options.screen);
  const auto words = client.waitFor("painted", patience);
  if (!words)
    throw std::runtime_error("the client paints nothing");
  result.add("painted", seconds(momentOf(words->at(1)) - client.started()));
  server.accept();
}

void rounds(const Options& options, PlayedServer& server, Result& result) {
  constexpr int warmUp = 50;
  ClientProcess client(options.command, options.screen);
  server.welcome(client);
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

void deaf(const Options& options, PlayedServer& server, Result& result) {
  Flood flood(options, server, result);
  if (!flood.run())
    throw std::runtime_error("the pane is not full in time");
  DeafTimes(flood.client(), server, result).measure();
}

void printText(const Options& options) {
  std::string text;
  GameText(seed, options.linkEvery).fill(text, options.megabytes * megabyte);
  std::fwrite(text.data(), 1, text.size(), stdout);
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
    PlayedServer server;
    Options options = optionsOf(argc, argv);
    replacePort(options.command, server.port());
    if (options.part == "text") {
      printText(options);
      return 0;
    }
    Result result;
    if (options.command.empty())
      throw std::runtime_error("which client?");
    if (options.part == "start")
      start(options, server, result);
    else if (options.part == "flood")
      Flood(options, server, result).run();
    else if (options.part == "rounds")
      rounds(options, server, result);
    else if (options.part == "deaf")
      deaf(options, server, result);
    else
      throw std::runtime_error("usage: bench_play start|flood|rounds|deaf [OPTIONS] -- COMMAND");
    result.print();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench_play: %s\n", error.what());
    return 1;
  }
  return 0;
}
