#include "ClientProcess.h"

#include <filesystem>
#include <fstream>
#include <numeric>
#include <pty.h>
#include <signal.h>
#include <sstream>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr winsize screenSize{.ws_row = 45, .ws_col = 96, .ws_xpixel = 0, .ws_ypixel = 0};

[[noreturn]] void become(const std::vector<std::string>& command) {
  std::vector<char*> words;
  words.reserve(command.size() + 1);
  for (const std::string& word : command)
    words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  ::execvp(words.front(), words.data());
  ::_exit(127);
}

double cpuSecondsOf(pid_t pid) {
  clockid_t clock{};
  timespec spent{};
  if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &spent) != 0)
    return 0;
  return static_cast<double>(spent.tv_sec) + 1e-9 * static_cast<double>(spent.tv_nsec);
}

std::string firstWordOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line;
}

double total(const std::map<std::string, double>& parts) {
  return std::accumulate(parts.begin(), parts.end(), 0.0,
                         [](double sum, const auto& part) { return sum + part.second; });
}

}  // namespace

double seconds(Clock::duration duration) {
  return std::chrono::duration<double>(duration).count();
}

ClientProcess::ClientProcess(const std::vector<std::string>& command, Screen screen)
    : started_(Clock::now()),
      keepsLines_(screen == Screen::Pipes),
      lastOutput_(started_.time_since_epoch().count()) {
  if (screen == Screen::Terminal) {
    pid_ = ::forkpty(&output_, nullptr, nullptr, &screenSize);
    if (pid_ == 0)
      become(command);
    input_ = ::dup(output_);
  } else {
    int in[2];
    int out[2];
    if (::pipe(in) != 0 || ::pipe(out) != 0)
      throw std::runtime_error("no pipe");
    pid_ = ::fork();
    if (pid_ == 0) {
      ::dup2(in[0], STDIN_FILENO);
      ::dup2(out[1], STDOUT_FILENO);
      for (const int end : {in[0], in[1], out[0], out[1]})
        ::close(end);
      ::setpgid(0, 0);
      become(command);
    }
    ::close(in[0]);
    ::close(out[1]);
    input_ = in[1];
    output_ = out[0];
  }
  if (pid_ < 0)
    throw std::runtime_error("no process");
  drainer_ = std::thread([this] { drain(); });
}

ClientProcess::~ClientProcess() {
  for (const pid_t pid : family())
    ::kill(pid, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
  drainer_.join();
  ::close(input_);
  ::close(output_);
}

void ClientProcess::write(const std::string& line) {
  const std::string text = line + '\n';
  (void)!::write(input_, text.data(), text.size());
}

void ClientProcess::drain() {
  std::vector<char> buffer(std::size_t{64} * 1024);
  for (;;) {
    const ssize_t count = ::read(output_, buffer.data(), buffer.size());
    if (count <= 0)
      return;
    lastOutput_ = Clock::now().time_since_epoch().count();
    if (!keepsLines_)
      continue;
    const std::lock_guard lock(mutex_);
    partialLine_.append(buffer.data(), static_cast<std::size_t>(count));
    for (std::size_t end = 0; (end = partialLine_.find('\n')) != std::string::npos;) {
      lines_.push_back(partialLine_.substr(0, end));
      partialLine_.erase(0, end + 1);
    }
  }
}

std::optional<std::vector<std::string>> ClientProcess::waitFor(const std::string& word,
                                                               double patience) {
  const Moment begin = Clock::now();
  do {
    {
      const std::lock_guard lock(mutex_);
      for (auto line = lines_.begin(); line != lines_.end(); ++line) {
        std::istringstream stream(*line);
        std::vector<std::string> words;
        for (std::string each; stream >> each;)
          words.push_back(each);
        if (!words.empty() && words.front() == word) {
          lines_.erase(line);
          return words;
        }
      }
    }
    std::this_thread::sleep_for(1ms);
  } while (seconds(Clock::now() - begin) < patience);
  return std::nullopt;
}

std::vector<pid_t> ClientProcess::family() const {
  std::vector<pid_t> members{pid_};
  // Children are found behind their parents: process numbers of this machine
  // are not reused within one run.
  for (std::size_t index = 0; index < members.size(); ++index) {
    const std::string number = std::to_string(members[index]);
    std::string path = "/proc/";
    path.append(number).append("/task/").append(number).append("/children");
    std::ifstream children(path);
    for (pid_t child = 0; children >> child;)
      members.push_back(child);
  }
  return members;
}

std::map<std::string, double> ClientProcess::cpuSeconds() const {
  std::map<std::string, double> parts;
  for (const pid_t pid : family())
    parts[firstWordOf("/proc/" + std::to_string(pid) + "/comm")] += cpuSecondsOf(pid);
  return parts;
}

double ClientProcess::statusMegabytes(const std::string& field) const {
  std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(field + ":"))
      return std::stod(line.substr(field.size() + 1)) * 1024 / 1e6;
  return 0;
}

double ClientProcess::residentPeak() const {
  return statusMegabytes("VmHWM");
}

double ClientProcess::resident() const {
  return statusMegabytes("VmRSS");
}

Moment ClientProcess::waitUntilIdle(double patience) const {
  constexpr auto step = 20ms;
  constexpr auto calm = 250ms;
  constexpr double busy = 0.1;  // of a step; terminal clients wake up now and then
  const Moment begin = Clock::now();
  Moment lastWork = begin;
  Moment before = begin;
  double spent = total(cpuSeconds());
  while (Clock::now() - lastWork < calm && seconds(Clock::now() - begin) < patience) {
    std::this_thread::sleep_for(step);
    const Moment now = Clock::now();
    const double sum = total(cpuSeconds());
    if (sum - spent > busy * seconds(now - before))
      lastWork = now;
    spent = sum;
    before = now;
  }
  return std::max(lastWork, lastOutput());
}
