#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "ClientProcess.h"

// What the parts of bench_play share.

inline constexpr std::uint32_t seed = 1;
inline constexpr double patience = 20;  // seconds for what should take none
inline constexpr std::size_t megabyte = 1000000;

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

[[nodiscard]] inline Moment after(double time) {
  return Clock::now() +
         std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(time));
}

[[nodiscard]] inline Moment momentOf(const std::string& nanoseconds) {
  return Moment(Clock::duration(std::stoll(nanoseconds)));
}

inline void beginToWatch(ClientProcess& client) {
  client.write("watch");
  if (!client.waitFor("watching", patience))
    throw std::runtime_error("the client does not watch itself");
}

/// The figures of the client's line "watched ...", under their names.
inline void addWatched(Result& result, const std::vector<std::string>& words,
                       const std::string& behind = {}) {
  const char* names[] = {"stall", "keyMedian", "key99", "keyLongest", "keys"};
  if (words.size() < 1 + std::size(names))
    throw std::runtime_error("the client has not watched itself");
  for (std::size_t index = 0; index < std::size(names); ++index)
    result.add(names[index] + behind, std::stod(words.at(index + 1)));
}
