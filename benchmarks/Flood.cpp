#include "Flood.h"

#include <algorithm>

using namespace std::chrono_literals;

bool Flood::run() {
  server_.welcome(client_);
  if (options_.memoryEvery == 0)
    prepare();
  // Where the flood came first, it would be over before anybody looks.
  if (options_.watch)
    beginToWatch(client_);
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
    return false;
  }
  result_.add("answer", seconds(*answered - begin_));
  settle();
  // What a client still does when all is shown is of the flood, too.
  client_.waitUntilIdle(options_.limit);
  for (const auto& [name, spent] : client_.cpuSeconds()) {
    const auto earlier = before.find(name);
    result_.add("cpu " + name, spent - (earlier == before.end() ? 0 : earlier->second));
  }
  result_.add("peak", client_.residentPeak());
  result_.add("resident", client_.resident());
  return true;
}

/// Made before the clock runs, where it fits in memory.
void Flood::prepare() {
  text_.reserve((options_.megabytes + 1) * megabyte);
  game_.fill(text_, options_.megabytes * megabyte);
}

std::size_t Flood::send() {
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

void Flood::settle() {
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
  if (options_.screen == ClientProcess::Screen::Terminal)
    return;
  const auto watched = client_.waitFor("watched", patience);
  if (options_.watch)
    addWatched(result_, watched.value_or(std::vector<std::string>{}));
}
