// Runs a piece of a test in a child process: under other rights, on other disks, or
// to be killed.
#pragma once

#include <QDir>
#include <QFile>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

#ifdef Q_OS_LINUX
#include <sched.h>
#include <sys/mount.h>
#endif

inline constexpr int asWished = 0;
inline constexpr int notAsWished = 1;
inline constexpr int cannotTry = 77;

/// Runs in a child that shares nothing with this process but the files.
inline pid_t startChild(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0)
    _exit(body());
  return child;
}

/// What the body returned; -1 when a signal ended it.
inline int inChild(const std::function<int()>& body) {
  int status = 0;
  const pid_t child = startChild(body);
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
    return -1;
  return WEXITSTATUS(status);
}

/// Permissions bind an ordinary user, not the administrator. False when this
/// cannot be one, or the way to the working directory is closed to it.
inline bool becomeOrdinaryUser() {
  constexpr unsigned nobody = 65534;
  if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
    return false;
  return access(QFile::encodeName(QDir::currentPath()).constData(), X_OK) == 0;
}

/// Whether the action succeeds for an ordinary user: one of the three results.
inline int asOrdinaryUser(const std::function<bool()>& action) {
  return inChild([&] {
    if (!becomeOrdinaryUser())
      return cannotTry;
    return action() ? asWished : notAsWished;
  });
}

#ifdef Q_OS_LINUX
/// Mounts made from now on are this process's own.
inline bool leaveCommonMounts() {
  return unshare(CLONE_NEWNS) == 0 &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}
#endif
