// The client as bench_play drives it: flood_client ours|literal PORT. It is
// started as the player starts it, connects to the server on that port of this
// computer, and tells on its standard output, in nanoseconds of the monotonic
// clock:
//
//   painted WHEN        the pane has been painted for the first time
//   settled WHEN        the trigger of the flood's last line has set the
//                       variable "flooded", and all text is painted
//   watching WHEN       it has begun to watch
//   watched STALL MEDIAN 99TH LONGEST COUNT    milliseconds; after "settled"
//
// From its standard input it takes these lines; "quit" or anything else ends it:
//
//   watch               see WindowWatch; "report" makes it tell "watched" again
//   echoless            lines that are sent are not shown from here on
//   resize TIMES BY     so many resizes in a row, each by so many pixels
//   font BY             the pane's font larger by so many points
//   save                the session, to a file in the working directory
//   state               makes it tell "state WIDTH RESIZES FORMATS PARAGRAPHS
//                       CHARACTERS": of the window, and what the document holds
//
// The triggers are those of the file in the working directory.

#include <QAbstractEventDispatcher>
#include <QPixmap>
#include <QSocketNotifier>
#include <QSplashScreen>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <cstdio>
#include <functional>
#include <string_view>
#include <unistd.h>

#include "LiteralWindow.h"
#include "WindowWatch.h"
#include "app/ApplicationFonts.h"
#include "app/MainWidget.h"
#include "app/Profile.h"
#include "terminal/session/SessionCapture.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::app;
using namespace kelmora::script;
using namespace kelmora::terminal;

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
  QTextBrowser& pane;
  QWidget& inputBar;
  std::function<void()> connectToServer;
  std::function<bool()> flooded;
  std::function<bool()> settled;
  std::function<void()> save;
  std::function<void()> endEcho;
};

void tell(const char* what, Moment when) {
  std::printf("%s %lld\n", what, static_cast<long long>(when.time_since_epoch().count()));
  std::fflush(stdout);
}

/// Speaks with bench_play about a window.
class Speaker : public QObject {
 public:
  explicit Speaker(Subject subject)
      : subject_(std::move(subject)), watch_(*subject_.pane.viewport(), subject_.inputBar) {
    connect(&orders_, &QSocketNotifier::activated, this, [this] { obey(); });
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] { look(); });
    end_.setSingleShot(true);
    connect(&end_, &QTimer::timeout, this, [this] { tellEnd(); });
    subject_.window.installEventFilter(this);
  }

  [[nodiscard]] WindowWatch& watch() { return watch_; }

 protected:
  bool eventFilter(QObject* /*window*/, QEvent* event) override {
    resizes_ += event->type() == QEvent::Resize ? 1 : 0;
    return false;
  }

 private:
  void obey() {
    char letter = 0;
    if (::read(STDIN_FILENO, &letter, 1) <= 0)
      QCoreApplication::quit();
    else if (letter != '\n')
      order_ += letter;
    else
      obey(QByteArray::fromStdString(std::exchange(order_, {})).split(' '));
  }

  void obey(const QByteArrayList& words) {
    const QByteArray& order = words.front();
    if (order == "watch") {
      watch_.start();
      tell("watching", WindowWatch::Clock::now());
    } else if (order == "report")
      tellWatched();
    else if (order == "echoless")
      subject_.endEcho();
    else if (order == "resize")
      resizeWindow(words.value(1).toInt(), words.value(2).toInt());
    else if (order == "font")
      enlargeFont(words.value(1).toInt());
    else if (order == "save")
      subject_.save();
    else if (order == "state")
      tellState();
    else
      QCoreApplication::quit();
  }

  /// As a window system does it whose events come faster than the window sees
  /// to them: each is seen to and painted, and the next one is there before
  /// anything is read from the server.
  void resizeWindow(int times, int by) {
    for (int number = 0; number < times; ++number) {
      subject_.window.resize(subject_.window.width() + by, subject_.window.height());
      QCoreApplication::sendPostedEvents();
      subject_.window.repaint();
    }
  }

  /// As the dialog of the settings does it.
  void enlargeFont(int by) {
    QFont font = subject_.pane.font();
    font.setPointSize(font.pointSize() + by);
    subject_.pane.setFont(font);
  }

  void tellState() {
    // What waits for the pane goes on waiting.
    const QTextDocument& document = *subject_.pane.QTextEdit::document();
    std::printf("state %d %d %lld %d %d\n", subject_.window.width(), resizes_,
                static_cast<long long>(document.allFormats().size()), document.blockCount(),
                document.characterCount());
    std::fflush(stdout);
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
    tellWatched();
  }

  void tellWatched() {
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
  int resizes_ = 0;
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

void save(const QTextDocument& document) {
  if (!captureSession(document, "#000000", QStringLiteral("session.html")))
    qFatal("the session cannot be saved");
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
                  .pane = window.pane(),
                  .inputBar = window.inputBar(),
                  .connectToServer = [&] { window.connectToServer(port); },
                  .flooded = [&] { return isFlooded(window.variables()); },
                  .settled = [] { return true; },
                  .save = [&] { save(*window.pane().document()); },
                  .endEcho = [] {}},
                 splash);
  }
  const QTemporaryDir folder;
  Profile profile({.iniFile = folder.filePath(QStringLiteral("store.ini"))});
  MainWidget window(profile);
  profile.settings.hostName = QStringLiteral("127.0.0.1");
  profile.settings.port = port;
  auto& pane = *window.findChild<OutputWidget*>();
  return speak(application,
               {.window = window,
                .pane = pane,
                .inputBar = *window.findChild<InputWidget*>(),
                .connectToServer = [&] { window.connectToServer(); },
                .flooded = [&] { return isFlooded(profile.variables); },
                .settled = [&] { return isSettled(pane); },
                .save = [&] { save(*pane.document()); },
                .endEcho = [&] { profile.settings.displayLocalEcho = false; }},
               splash);
}
