// A fresh home and working directory for a whole test program.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// Moves the process into a fresh folder that vanishes with this object: home,
/// XDG folders and working directory, so that a test reads and writes no
/// settings but its own. Construct it before the application object.
class ScratchFolder {
 public:
  ScratchFolder() {
    const QByteArray home = QFile::encodeName(folder_.path());
    qputenv("HOME", home);
    for (const char* name :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
      qputenv(name, home + "/" + QByteArray(name).toLower());
    // The sound system keeps its own files there.
    qputenv("XDG_RUNTIME_DIR", home + "/run");
    QDir().mkdir(folder_.filePath(QStringLiteral("run")));
    QFile::setPermissions(folder_.filePath(QStringLiteral("run")),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qunsetenv("XDG_CONFIG_DIRS");
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "no_proxy"})
      qunsetenv(name);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
      qputenv("QT_QPA_PLATFORM", "offscreen");
    QDir::setCurrent(folder_.path());
  }
  ~ScratchFolder() { QDir::setCurrent(QStringLiteral("/")); }
  Q_DISABLE_COPY_MOVE(ScratchFolder)

  [[nodiscard]] bool isValid() const { return folder_.isValid(); }

 private:
  QTemporaryDir folder_;
};
