// The client as bench_play drives it: flood_client ours|literal PORT. It is
// started as the player starts it, connects to the server on that port of this
// computer, and tells on its standard output, in nanoseconds of the monotonic
// clock:
//
//   painted WHEN        the pane has been painted for the first time
//   settled WHEN        the trigger of the flood's last line has set the
//                       variable "flooded", and all text is painted
//   watched STALL MEDIAN 99TH LONGEST COUNT    milliseconds; after "settled"
//
// From its standard input it takes "watch" (see WindowWatch) and "quit". The
// triggers are those of the file in the working directory.

#include <QAbstractEventDispatcher>
#include <QPixmap>
#include <QSocketNotifier>
#include <QSplashScreen>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>
#include <string_view>
#include <unistd.h>

#include "LiteralWindow.h"
#include "WindowWatch.h"
#include "app/ApplicationFonts.h"
#include "app/MainWidget.h"
#include "terminal/view/OutputWidget.h"

namespace {

using namespace std::chrono_literals;
using Moment = WindowWatch::Moment;

/// Text that comes to the pane after this long is not the flood's any more.
constexpr auto quiet = 150ms;

// A pane that takes everything in at once has nothing to wait for.
template <typename Pane>
bool isSettled(const Pane& pane) {
  if constexpr (requires { pane.settled(); })
    return pane.settled();
  else
    return true;
}

/// What is asked of either window.
struct Subject {
  QWidget& window;
  QWidget& canvas;
  QWidget& inputBar;
  std::function<void()> connectToServer;
  std::function<bool()> flooded;
  std::function<bool()> settled;
};

void tell(const char* what, Moment when) {
  std::printf("%s %lld\n", what, static_cast<long long>(when.time_since_epoch().count()));
  std::fflush(stdout);
}

/// Speaks with bench_play about a window.
class Speaker : public QObject {
 public:
  explicit Speaker(Subject subject)
      : subject_(std::move(subject)), watch_(subject_.canvas, subject_.inputBar) {
    connect(&orders_, &QSocketNotifier::activated, this, [this] { obey(); });
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] { look(); });
    end_.setSingleShot(true);
    connect(&end_, &QTimer::timeout, this, [this] { tellEnd(); });
  }

  [[nodiscard]] WindowWatch& watch() { return watch_; }

 private:
  void obey() {
    char letter = 0;
    if (::read(STDIN_FILENO, &letter, 1) <= 0)
      QCoreApplication::quit();
    else if (letter != '\n')
      order_ += letter;
    else if (std::exchange(order_, {}) == "watch")
      watch_.start();
    else
      QCoreApplication::quit();
  }

  void look() {
    if (!painted_ && watch_.panePainted()) {
      painted_ = true;
      tell("painted", *watch_.panePainted());
      subject_.connectToServer();
    }
    if (!settled_ && subject_.flooded() && subject_.settled()) {
      settled_ = WindowWatch::Clock::now();
      end_.start(quiet);
    }
  }

  void tellEnd() {
    tell("settled", std::max(*settled_, *watch_.panePainted()));
    const auto figures = watch_.finish();
    std::printf("watched %.3f %.3f %.3f %.3f %zu\n", figures.longestStall, figures.keyMedian,
                figures.key99, figures.keyLongest, figures.keys);
    std::fflush(stdout);
  }

  Subject subject_;
  WindowWatch watch_;
  QSocketNotifier orders_{STDIN_FILENO, QSocketNotifier::Read};
  std::string order_;
  bool painted_ = false;
  std::optional<Moment> settled_;
  QTimer end_;
};

int speak(WatchedApplication& application, const Subject& subject, QSplashScreen& splash) {
  Speaker speaker(subject);
  application.setWatch(&speaker.watch());
  subject.window.show();
  splash.finish(&subject.window);
  const int result = QApplication::exec();
  application.setWatch(nullptr);
  return result;
}

bool isFlooded(VariableTable& variables) {
  return variables.contains(QStringLiteral("flooded"));
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  WatchedApplication application(argc, argv);
  if (argc != 3) {
    std::fprintf(stderr, "usage: flood_client ours|literal PORT\n");
    return 2;
  }
  const auto port = QByteArray(argv[2]).toUShort();

  QSplashScreen splash(QPixmap(QStringLiteral(":/icons/splash.png")));
  splash.show();
  splash.showMessage(QStringLiteral("Kelmora Client v3.9b"), Qt::AlignLeft, Qt::black);
  installApplicationFonts();
  QApplication::processEvents();

  if (std::string_view(argv[1]) == "literal") {
    LiteralWindow window;
    return speak(application,
                 {.window = window,
                  .canvas = *window.pane().viewport(),
                  .inputBar = window.inputBar(),
                  .connectToServer = [&] { window.connectToServer(port); },
                  .flooded = [&] { return isFlooded(window.variables()); },
                  .settled = [] { return true; }},
                 splash);
  }
  const QTemporaryDir folder;
  MainWidget window({.iniFile = folder.filePath(QStringLiteral("store.ini"))});
  window.settings().hostName = QStringLiteral("127.0.0.1");
  window.settings().port = port;
  auto& pane = *window.findChild<OutputWidget*>();
  return speak(application,
               {.window = window,
                .canvas = *pane.viewport(),
                .inputBar = *window.findChild<InputWidget*>(),
                .connectToServer = [&] { window.connectToServer(); },
                .flooded = [&] { return isFlooded(window.variables()); },
                .settled = [&] { return isSettled(pane); }},
               splash);
}
