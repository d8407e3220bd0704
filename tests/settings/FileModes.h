#pragma once

#include <QFile>
#include <QString>
#include <sys/stat.h>

/// The permission bits of a file or folder, -1 where there is nothing.
inline int modeOf(const QString& path) {
  struct stat info {};
  return ::stat(QFile::encodeName(path).constData(), &info) == 0
             ? static_cast<int>(info.st_mode & 07777)
             : -1;
}

/// As long as it lives, this process creates files with all the permissions that
/// it asks for.
class NoUmask {
 public:
  NoUmask() : before_(::umask(0)) {}
  ~NoUmask() { ::umask(before_); }
  Q_DISABLE_COPY_MOVE(NoUmask)

 private:
  mode_t before_;
};
