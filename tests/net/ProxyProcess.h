#pragma once

#include <QDeadlineTimer>
#include <QFile>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <csignal>
#include <functional>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

/// A real proxy server on the loopback, alive as long as this object.
class ProxyProcess {
 public:
  /// Program and arguments of a proxy that is to listen on the port.
  using Command = std::function<QStringList(quint16 port)>;

  ProxyProcess() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }
  ~ProxyProcess() { stop(); }
  Q_DISABLE_COPY_MOVE(ProxyProcess)

  /// The program's path, empty where it is not installed.
  static QString find(const QString& program) {
    const QString found = QStandardPaths::findExecutable(program);
    return !found.isEmpty() ? found
                            : QStandardPaths::findExecutable(
                                  program, {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")});
  }

  /// True once it answers; what it said is in output() if it does not.
  [[nodiscard]] bool start(const Command& command) {
    // Between being found free and being taken, a port can go to somebody else.
    for (int attempt = 0; attempt < 3; ++attempt) {
      port_ = freePort();
      QStringList words = command(port_);
      const QString program = words.takeFirst();
      process_.setProcessChannelMode(QProcess::MergedChannels);
      process_.setChildProcessModifier([] {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
      });
      process_.start(program, words);
      if (process_.waitForStarted() && answers())
        return true;
      output_ += process_.readAll();
      stop();
    }
    return false;
  }

  /// Ends the proxy with all processes it has begun.
  void stop() {
    const auto group = static_cast<pid_t>(process_.processId());
    if (group == 0)
      return;
    ::kill(-group, SIGTERM);
    process_.waitForFinished(3000);
    ::kill(-group, SIGKILL);
    process_.waitForFinished(3000);
    // Its children become ours when it ends; none is left behind.
    const QDeadlineTimer deadline(3000);
    while (!deadline.hasExpired() && ::waitpid(-group, nullptr, WNOHANG) >= 0)
      QThread::msleep(2);
  }

  [[nodiscard]] quint16 port() const { return port_; }
  [[nodiscard]] QByteArray output() const { return output_; }

 private:
  static quint16 freePort() {
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : quint16{0};
  }

  bool answers() {
    const QDeadlineTimer deadline(10000);
    while (!deadline.hasExpired() && process_.state() == QProcess::Running) {
      QTcpSocket probe;
      probe.setProxy(QNetworkProxy::NoProxy);
      probe.connectToHost(QHostAddress(QHostAddress::LocalHost), port_);
      if (probe.waitForConnected(200))
        return true;
      QThread::msleep(20);
      process_.waitForFinished(1);
    }
    return false;
  }

  QProcess process_;
  QByteArray output_;
  quint16 port_ = 0;
};
