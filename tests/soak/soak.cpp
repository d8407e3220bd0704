// Hours of play in a real window against a server on the loopback: whatever
// keeps growing after the first quarter ends the program with a failure.
//
//   soak [--seconds N] [--tick MILLISECONDS]

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <array>
#include <atomic>

#include "Measures.h"
#include "SoakPlayer.h"
#include "support/ScratchMain.h"

namespace {

constexpr int defaultSeconds = 3900;
constexpr int realTick = 50;
constexpr qint64 reportPeriod = 60;

std::atomic<int> warnings = 0;

/// What the toolkit says of a machine without screen or sound; nothing else in
/// this play is a reason for it to complain.
constexpr std::array harmless{"does not support propagateSizeHints", "PulseAudio",
                              "No audio device", "XDG_RUNTIME_DIR"};

void countWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  if (type == QtDebugMsg || type == QtInfoMsg ||
      std::any_of(harmless.begin(), harmless.end(),
                  [&](const char* words) { return text.contains(QLatin1String(words)); }))
    return;
  if (++warnings <= 50)
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

/// A session of hours has as many paragraphs as the pane keeps; it starts so.
void fillPane(PlayWindow& play) {
  for (int i = 0; i < OutputWidget::limits.paragraphs; ++i)
    play.window->runActions({QStringLiteral("/echo an older line of the session, 808080")});
}

}  // namespace

int main(int argc, char** argv) {
  const ScratchFolder scratch;
  if (!scratch.isValid())
    return 1;
  const QApplication app(argc, argv);
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  qInstallMessageHandler(countWarning);
  QCommandLineParser arguments;
  arguments.addOptions(
      {{"seconds", "How long to play.", "N", QString::number(defaultSeconds)},
       {"tick", "Milliseconds between two lines.", "N", QString::number(realTick)}});
  arguments.process(app);
  const qint64 seconds = arguments.value("seconds").toInt();
  const int tick = std::max(1, arguments.value("tick").toInt());

  SoakServer server;
  SoakPlayer::writeAutomation();
  PlayWindow play(server.port(), {{"parseHtml", 1}});
  fillPane(play);
  SoakPlayer player(play, server);
  History history;
  QElapsedTimer clock;
  clock.start();
  qint64 nextReport = 0;

  QTimer lines;
  QObject::connect(&lines, &QTimer::timeout, &server, [&] { server.sendLines(1); });
  QTimer steps;
  qint64 step = 0;
  QObject::connect(&steps, &QTimer::timeout, &player, [&] {
    player.tick();
    if (++step % SoakPlayer::dialogPeriod == SoakPlayer::dialogPeriod - 1 && SoakPlayer::isCalm()) {
      history.take(play);
      if (clock.elapsed() >= nextReport * 1000) {
        history.printLast(clock.elapsed() / 1000);
        nextReport += std::min(reportPeriod, std::max<qint64>(1, seconds / 8));
      }
    }
    if (clock.elapsed() >= seconds * 1000)
      QApplication::quit();
  });
  History::printHead();
  lines.start(tick);
  steps.start(tick);
  QApplication::exec();

  const bool steady = history.judge();
  std::printf("lines from the player: %lld, failures: %d, warnings: %d\n",
              static_cast<long long>(server.received()), player.failures(), warnings.load());
  return steady && player.failures() == 0 && warnings == 0 ? 0 : 1;
}
