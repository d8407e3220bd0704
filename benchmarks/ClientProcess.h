#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

using Clock = std::chrono::steady_clock;
using Moment = Clock::time_point;

[[nodiscard]] double seconds(Clock::duration duration);

/// A game client as a child process, with what it costs. Its output is taken
/// from it as fast as it comes, by a thread of its own, so that no client waits
/// for its screen.
class ClientProcess {
 public:
  /// A terminal program gets a pseudo-terminal of the client window's size,
  /// any other program pipes.
  enum class Screen { Terminal, Pipes };

  ClientProcess(const std::vector<std::string>& command, Screen screen);
  /// Kills the process and all that it has started.
  ~ClientProcess();
  ClientProcess(const ClientProcess&) = delete;
  ClientProcess& operator=(const ClientProcess&) = delete;

  [[nodiscard]] Moment started() const { return started_; }
  void write(const std::string& line);
  /// The words of the first line of output that begins with this one, which is
  /// taken out; nothing when none came in time.
  [[nodiscard]] std::optional<std::vector<std::string>> waitFor(const std::string& word,
                                                                double patience);
  /// When output last arrived.
  [[nodiscard]] Moment lastOutput() const { return Moment(Clock::duration(lastOutput_.load())); }

  /// User and system seconds by program name, of the process and its children.
  [[nodiscard]] std::map<std::string, double> cpuSeconds() const;
  /// Of the process alone, in megabytes.
  [[nodiscard]] double residentPeak() const;
  [[nodiscard]] double resident() const;
  /// Waits until the processes have done next to nothing for a moment, and
  /// returns when they stopped working.
  Moment waitUntilIdle(double patience) const;

 private:
  void drain();
  [[nodiscard]] std::vector<pid_t> family() const;
  [[nodiscard]] double statusMegabytes(const std::string& field) const;

  Moment started_;
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  bool keepsLines_ = false;
  std::atomic<Clock::rep> lastOutput_;
  std::mutex mutex_;
  std::string partialLine_;
  std::deque<std::string> lines_;
  std::thread drainer_;
};
