#include "DeafTimes.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr std::string_view question = "The guard asks you: who goes there?\r\n";
constexpr auto questionPace = 1ms;
constexpr int fullPane = 2500000;  // characters
constexpr int manyLinks = 15000;
/// More than a pane keeps of unused formats in a quiet moment, less than it
/// keeps at all.
constexpr int fewerLinks = 6000;
constexpr int linesBehind = 40000;  ///< enough to push all links out of the pane
constexpr int linesEach = 100;      ///< with a question, of a text that comes at once

std::string text(GameText& source, int lines) {
  std::string text;
  for (int line = 0; line < lines; ++line)
    source.appendLine(text);
  return text;
}

}  // namespace

void Questions::ask(double time, GameText* company, int lines, int linesEach) {
  const Moment end = after(time);
  for (Moment due = Clock::now(); due < end || lines > 0; due += questionPace) {
    const int count = std::min(lines, linesEach);
    const std::string told = count > 0 ? text(*company, count) : std::string();
    lines -= count;
    asked_.push_back(Clock::now());
    server_.send(told + std::string(question), after(patience));
    listenUntil(due + questionPace);
    // After a wait in send() not all that is due is asked at once.
    due = std::max(due, Clock::now() - questionPace);
  }
  const Moment deadline = after(patience);
  while (!asked_.empty() && Clock::now() < deadline)
    listenUntil(Clock::now() + questionPace);
  if (!asked_.empty())
    throw std::runtime_error("a question has found no answer");
}

void Questions::listenUntil(Moment moment) {
  do {
    server_.listen(moment);
    while (!asked_.empty()) {
      const auto arrived = server_.takeLine("friend");
      if (!arrived)
        break;
      longest_ = std::max(longest_, seconds(*arrived - asked_.front()));
      asked_.pop_front();
    }
  } while (Clock::now() < moment);
}

void DeafTimes::measure() {
  // Each echo would be a paragraph of its own, and soon push out all others.
  client_.write("echoless");
  const State full = fullState();
  result_.add("paragraphs", full.paragraphs);
  result_.add("characters", full.characters);
  questions_.ask(2);
  (void)questions_.takeLongest();  // the first ones find everything asleep
  questions_.ask(2);
  result_.add("deaf nothing", questions_.takeLongest());
  measureOrder("resize", "resize 1 -7", "resize 1 7", 1);
  measureOrder("drag", "resize 10 -7", "resize 1 70", 10);
  measureOrder("font", "font 1", "font -1", 0);
  measureOrder("save", "save", "", 0);
  measureLinks();
  measureQuietMoment();
  result_.add("resident after", client_.resident());
}

void DeafTimes::measureOrder(const std::string& name, const std::string& deed,
                             const std::string& undone, int resizes) {
  const State before = fullState();
  const Moment begin = Clock::now();
  result_.add("work " + name, cost([&] { client_.write(deed); }));
  const double lasting = seconds(Clock::now() - begin);
  const State behind = state();
  if (behind.resizes - before.resizes != resizes || (behind.width < before.width) != (resizes > 0))
    throw std::runtime_error("the window is not resized as it was told");
  if (!undone.empty())
    (void)cost([&] { client_.write(undone); });
  questions_.ask(0.3);
  (void)questions_.takeLongest();
  client_.write(deed);
  questions_.ask(lasting + 1);
  result_.add("deaf " + name, questions_.takeLongest());
  if (!undone.empty())
    (void)cost([&] { client_.write(undone); });
}

void DeafTimes::measureLinks() {
  const std::string first = text(links_, manyLinks);
  result_.add("work links", cost([&] { server_.send(first, after(patience)); }));
  result_.add("formats links", fullState().formats);
  askAmongLinks();
  result_.add("deaf links", questions_.takeLongest());
  // From here on each new one pushes another out.
  for (int time = 0; time < 2; ++time)
    askAmongLinks();
  result_.add("deaf more links", questions_.takeLongest());
  result_.add("formats more links", fullState().formats);
}

void DeafTimes::askAmongLinks() {
  constexpr double untilShown = 7;  // a pane that is asked all the time is slow
  questions_.ask(untilShown, &links_, manyLinks, linesEach);
}

/// What a pane puts off until nothing comes any more: its cost, and how long the
/// event loop stands still for it, since a question would be no quiet.
void DeafTimes::measureQuietMoment() {
  constexpr auto quiet = 6s;
  leaveUnusedLinks();
  result_.add("formats before quiet", state().formats);
  const double before = spent();
  std::this_thread::sleep_for(quiet);
  result_.add("work quiet", spent() - before);
  result_.add("formats behind quiet", state().formats);
  leaveUnusedLinks();
  beginToWatch(client_);
  std::this_thread::sleep_for(quiet);
  client_.write("report");
  addWatched(result_, client_.waitFor("watched", patience).value_or(std::vector<std::string>{}),
             " quiet");
}

void DeafTimes::leaveUnusedLinks() {
  const auto show = [this](const std::string& lines) {
    server_.send(lines, after(patience));
    client_.waitUntilIdle(patience);
  };
  show(text(links_, fewerLinks));
  // In parts, so that all of it is shown.
  for (int part = 0; part < 4; ++part)
    show(text(plain_, linesBehind / 4));
}

double DeafTimes::cost(const std::function<void()>& deed) {
  const double before = spent();
  deed();
  client_.waitUntilIdle(patience);
  return spent() - before;
}

DeafTimes::State DeafTimes::state() {
  client_.write("state");
  const auto words = client_.waitFor("state", patience);
  if (!words || words->size() < 6)
    throw std::runtime_error("the client does not tell its state");
  return {.width = std::stoi(words->at(1)),
          .resizes = std::stoi(words->at(2)),
          .formats = std::stoi(words->at(3)),
          .paragraphs = std::stoi(words->at(4)),
          .characters = std::stoi(words->at(5))};
}

DeafTimes::State DeafTimes::fullState() {
  const State now = state();
  if (now.paragraphs < 700 || now.characters < fullPane)
    throw std::runtime_error("the pane is not full");
  return now;
}

double DeafTimes::spent() const {
  double sum = 0;
  for (const auto& [name, part] : client_.cpuSeconds())
    sum += part;
  return sum;
}
