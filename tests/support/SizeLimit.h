// A disk that is full for this process.
#pragma once

#include <QtGlobal>
#include <csignal>
#include <sys/resource.h>

/// As long as it lives, no file of this process can grow beyond so many bytes:
/// a full disk that every user can have.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    set(bytes);
  }
  ~SizeLimit() { set(RLIM_INFINITY); }
  Q_DISABLE_COPY_MOVE(SizeLimit)

 private:
  static void set(rlim_t bytes) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes < limit.rlim_max ? bytes : limit.rlim_max;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
};
