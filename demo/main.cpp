#include <QCommandLineParser>
#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <cstdio>

#include "demo/DemoServer.h"

using namespace kelmora;
using namespace kelmora::demo;

namespace {

constexpr int failure = 1;
constexpr int wrongUse = 2;

int refuse(const QString& reason) {
  std::fprintf(stderr, "kelmora-demo: %s\nTry 'kelmora-demo --help'.\n", qPrintable(reason));
  return wrongUse;
}

/// The client beside this program, or else the one that the shell would find.
QString clientProgram() {
  const QString name = QStringLiteral("kelmora");
  const QString beside =
      QStandardPaths::findExecutable(name, {QCoreApplication::applicationDirPath()});
  return beside.isEmpty() ? QStandardPaths::findExecutable(name) : beside;
}

void startClient(QProcess& client) {
  client.setProcessChannelMode(QProcess::ForwardedChannels);
  QObject::connect(&client, &QProcess::finished, &client,
                   [](int exitCode, QProcess::ExitStatus end) {
                     QCoreApplication::exit(end == QProcess::NormalExit ? exitCode : failure);
                   });
  QObject::connect(&client, &QProcess::errorOccurred, &client, [](QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart)
      return;  // it has run, and its end is told by the other signal
    std::fputs("kelmora-demo: cannot start the client: is the package kelmora installed?\n",
               stderr);
    QCoreApplication::exit(failure);
  });
  // From the event loop, which alone can be left by exit().
  QMetaObject::invokeMethod(
      &client, [&client] { client.start(clientProgram(), QStringList()); }, Qt::QueuedConnection);
}

enum class Company { Nobody, Client };

int serve(quint16 port, Company company) {
  DemoServer server;
  QProcess client;
  const bool served = server.listen(port);
  // In company of the client, a world that is there already serves as well.
  if (!served && (company == Company::Nobody || !server.isPortTaken())) {
    std::fprintf(stderr, "kelmora-demo: cannot listen on 127.0.0.1 port %u: %s\n", unsigned{port},
                 qPrintable(server.errorString()));
    return failure;
  }
  if (served)
    std::printf("Listening on 127.0.0.1 port %u\n", unsigned{server.port()});
  else
    std::printf("Port %u is taken: leaving the play to what listens there\n", unsigned{port});
  std::fflush(stdout);
  if (company == Company::Client)
    startClient(client);
  return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("kelmora-demo"));
  QCoreApplication::setApplicationVersion(QStringLiteral(KELMORA_VERSION));

  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("A small game world for the Kelmora client, on this computer only."));
  const QCommandLineOption helpOption(QStringList{QStringLiteral("h"), QStringLiteral("help")},
                                      QStringLiteral("Show this text and end."));
  const QCommandLineOption versionOption(
      QStringList{QStringLiteral("v"), QStringLiteral("version")},
      QStringLiteral("Show the version and end."));
  const QCommandLineOption portOption(QStringLiteral("port"),
                                      QStringLiteral("Port to listen on; 0 picks a free one."),
                                      QStringLiteral("N"), QStringLiteral("5000"));
  const QCommandLineOption playOption(QStringLiteral("play"),
                                      QStringLiteral("Open the client too, and end with it."));
  parser.addOptions({helpOption, versionOption, playOption, portOption});
  if (!parser.parse(QCoreApplication::arguments()))
    return refuse(parser.errorText());
  if (parser.isSet(helpOption))
    parser.showHelp();
  if (parser.isSet(versionOption))
    parser.showVersion();

  bool isPort = false;
  const quint16 port = parser.value(portOption).toUShort(&isPort);
  if (!isPort)
    return refuse(QStringLiteral("a port is a number from 0 to 65535"));
  if (!parser.positionalArguments().isEmpty())
    return refuse(QStringLiteral("'%1' is no option").arg(parser.positionalArguments().first()));
  return serve(port, parser.isSet(playOption) ? Company::Client : Company::Nobody);
}
