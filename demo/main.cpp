#include <QCommandLineParser>
#include <QCoreApplication>
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

int serve(QCoreApplication& app, quint16 port) {
  DemoServer server;
  if (!server.listen(port)) {
    std::fprintf(stderr, "kelmora-demo: cannot listen on 127.0.0.1 port %u: %s\n", unsigned{port},
                 qPrintable(server.errorString()));
    return failure;
  }
  std::printf("Listening on 127.0.0.1 port %u\n", unsigned{server.port()});
  std::fflush(stdout);
  return app.exec();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
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
  parser.addOptions({helpOption, versionOption, portOption});
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
  return serve(app, port);
}
