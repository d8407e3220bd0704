#pragma once

#include <QByteArray>
#include <sys/inotify.h>
#include <unistd.h>

/// Notices every opening of the files it watches.
class OpenWatch {
 public:
  ~OpenWatch() { ::close(events_); }
  OpenWatch() = default;
  Q_DISABLE_COPY_MOVE(OpenWatch)

  [[nodiscard]] bool watch(const char* path) {
    return ::inotify_add_watch(events_, path, IN_OPEN | IN_ACCESS) >= 0;
  }
  /// Since the last time that this was asked.
  [[nodiscard]] bool wasOpened() {
    QByteArray buffer(4096, '\0');
    bool opened = false;
    while (::read(events_, buffer.data(), static_cast<std::size_t>(buffer.size())) > 0)
      opened = true;
    return opened;
  }

 private:
  int events_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};
