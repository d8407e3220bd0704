#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>

#include "demo/DemoServer.h"

using namespace kelmora;
using namespace kelmora::demo;

namespace {

constexpr int kFailure = 1;

int serve(QCoreApplication& app, quint16 port) {
  DemoServer server;
  if (!server.listen(port)) {
    std::fprintf(stderr, "kelmora-demo: cannot listen on 127.0.0.1 port %u: %s\n", unsigned{port},
                 qPrintable(server.errorString()));
    return kFailure;
  }
  std::printf("Listening on 127.0.0.1 port %u\n", unsigned{server.port()});
  std::fflush(stdout);
  return app.exec();
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("kelmora-demo"));

  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("A small game world for the Kelmora client, on this computer only."));
  parser.addHelpOption();
  const QCommandLineOption portOption(QStringLiteral("port"),
                                      QStringLiteral("Port to listen on; 0 picks a free one."),
                                      QStringLiteral("N"), QStringLiteral("5000"));
  parser.addOption(portOption);
  parser.process(app);

  bool isPort = false;
  const quint16 port = parser.value(portOption).toUShort(&isPort);
  if (!isPort || !parser.positionalArguments().isEmpty()) {
    std::fprintf(stderr, "kelmora-demo: a port is a number from 0 to 65535\n\n%s",
                 qPrintable(parser.helpText()));
    return kFailure;
  }
  return serve(app, port);
}
