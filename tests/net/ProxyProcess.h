#pragma once

#include <QDeadlineTimer>
#include <QFile>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <chrono>
#include <csignal>
#include <functional>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

/// A real proxy server on this computer, which runs as long as this object lives.
class ProxyProcess {
 public:
  /// The program and the arguments that make a proxy listen on the port.
  using Command = std::function<QStringList(quint16 port)>;

  ProxyProcess() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }
  ~ProxyProcess() { stop(); }
  Q_DISABLE_COPY_MOVE(ProxyProcess)

  /// The path of the program, or nothing if it is not installed.
  static QString find(const QString& program) {
    const QString found = QStandardPaths::findExecutable(program);
    return !found.isEmpty() ? found
                            : QStandardPaths::findExecutable(
                                  program, {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")});
  }

  /// Returns when it takes connections, or false when it does not start; then
  /// output() has what it printed.
  [[nodiscard]] bool start(const Command& command) {
    // Somebody else may take the free port before the proxy does.
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

  /// Ends the proxy and all processes that it has started.
  void stop() {
    const auto group = static_cast<pid_t>(process_.processId());
    if (group == 0)
      return;
    ::kill(-group, SIGTERM);
    process_.waitForFinished(endMs);
    ::kill(-group, SIGKILL);
    process_.waitForFinished(endMs);
    // When it ends, its own children become children of this process, which has
    // to wait for them.
    const QDeadlineTimer deadline{std::chrono::milliseconds(endMs)};
    while (!deadline.hasExpired() && ::waitpid(-group, nullptr, WNOHANG) >= 0)
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }

  [[nodiscard]] quint16 port() const { return port_; }
  [[nodiscard]] QByteArray output() const { return output_; }

 private:
  static constexpr int endMs = 3000;  ///< how long processes may take to end

  static quint16 freePort() {
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : quint16{0};
  }

  bool answers() {
    const QDeadlineTimer deadline(std::chrono::seconds(10));
    while (!deadline.hasExpired() && process_.state() == QProcess::Running) {
      QTcpSocket probe;
      probe.setProxy(QNetworkProxy::NoProxy);
      probe.connectToHost(QHostAddress(QHostAddress::LocalHost), port_);
      constexpr int answerMs = 200;
      if (probe.waitForConnected(answerMs))
        return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      constexpr int lookMs = 1;
      process_.waitForFinished(lookMs);
    }
    return false;
  }

  QProcess process_;
  QByteArray output_;
  quint16 port_ = 0;
};
