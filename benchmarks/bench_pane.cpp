// What a line costs in the pane, and how that depends on the length at which a
// paragraph is continued in a new one: the plain way with several lengths, and
// the client's own pane beside it. One case per process, so that the memory
// shown is its own.
//
// bench_pane CASE LINES [LINES-A-READ], where CASE is "ours" or the length for
// the plain way. It prints, a few times on the way, as comma-separated values:
// the case, lines so far, microseconds a line until inserted and until settled,
// milliseconds a paint, paragraphs, megabytes more than an empty pane's.

#include <QApplication>
#include <QElapsedTimer>
#include <QTextBlock>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <vector>

#include "GameText.h"
#include "PaneColours.h"
#include "ReadHtml.h"
#include "app/ApplicationFonts.h"
#include "support/LiteralPane.h"
#include "terminal/core/OutputPipeline.h"
#include "terminal/view/InputHost.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::app;
using namespace kelmora::settings;
using namespace kelmora::terminal;

namespace {

constexpr int reports = 4;
constexpr int paints = 15;
constexpr QSize paneSize(780, 660);  // what the window's default size leaves it

class IdleInput : public InputHost {
 public:
  void submitInput() override {}
  void historyOlder() override {}
  void historyNewer() override {}
  bool dispatchMacro(int) override { return false; }
  bool claimsShortcut(QKeyCombination) const override { return false; }
};

/// Keeps what one read became.
class TextKeeper : public PipelineHost {
 public:
  void beep() override {}
  void showServerText(ServerText read) override { text = std::move(read); }
  void parseVitals(const char*) override {}
  void checkTriggers(const QByteArray&) override {}
  ServerText text;
};

/// Makes reads of the game's text as a pane gets them.
class Reads {
 public:
  explicit Reads(int linesPerRead) : linesPerRead_(linesPerRead) {
    setColours(pipeline_.translator(), ClientSettings());
    setColours(html_.translator(), ClientSettings());
  }

  [[nodiscard]] ServerText nextFor(const OutputWidget& /*pane*/) {
    pipeline_.readSocketData(next(), options, keeper_);
    return std::move(keeper_.text);
  }
  [[nodiscard]] QString nextFor(const LiteralPane& /*pane*/) { return html_.of(next(), options); }

 private:
  static constexpr PipelineOptions options{.parseHtml = false};

  [[nodiscard]] QByteArray next() {
    std::string bytes;
    for (int line = 0; line < linesPerRead_; ++line)
      text_.appendLine(bytes);
    return QByteArray::fromStdString(bytes);
  }

  int linesPerRead_;
  GameText text_{1};
  OutputPipeline pipeline_;
  ReadHtml html_;
  TextKeeper keeper_;
};

void show(OutputWidget& pane, ServerText text) {
  pane.showServerText(std::move(text));
}

void show(LiteralPane& pane, const QString& html) {
  pane.insertServerHtml(html);
}

double residentMegabytes() {
  std::ifstream status("/proc/self/statm");
  double pages = 0;
  status >> pages >> pages;
  return pages * 4096 / 1e6;
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<qsizetype>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

/// One whole paint of what is in sight, in milliseconds.
double paintTime(QTextBrowser& pane) {
  std::vector<double> times;
  for (int round = 0; round < paints; ++round) {
    QElapsedTimer timer;
    timer.start();
    pane.viewport()->repaint();
    times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
  }
  return median(times);
}

/// Waits for a pane that shows some of its text later.
template <typename Pane>
void settle(Pane& pane) {
  if constexpr (requires { pane.settled(); }) {
    while (!pane.settled())
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  QApplication::processEvents();
}

template <typename Pane>
void run(const char* name, Pane& pane, int lines, int linesPerRead) {
  setPaneLook(pane, ClientSettings());
  pane.resize(paneSize);
  pane.show();
  QApplication::processEvents();

  Reads reads(linesPerRead);
  const double atStart = residentMegabytes();
  for (int report = 1; report <= reports; ++report) {
    const int count = lines / reports / linesPerRead;
    std::vector<decltype(reads.nextFor(pane))> waiting(static_cast<std::size_t>(count));
    for (auto& text : waiting)
      text = reads.nextFor(pane);
    QElapsedTimer timer;
    timer.start();
    for (auto& text : waiting)
      show(pane, std::exchange(text, {}));
    const qint64 inserting = timer.nsecsElapsed();
    settle(pane);
    const qint64 settled = timer.nsecsElapsed();
    const double perLine = 1e3 * count * linesPerRead;
    std::printf("%s,%d,%.1f,%.1f,%.2f,%d,%.1f\n", name, report * count * linesPerRead,
                static_cast<double>(inserting) / perLine, static_cast<double>(settled) / perLine,
                paintTime(pane), pane.document()->blockCount(), residentMegabytes() - atStart);
    std::fflush(stdout);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  installApplicationFonts();
  if (argc < 3) {
    std::fprintf(stderr, "usage: bench_pane ours|LENGTH LINES [LINES-A-READ]\n");
    return 2;
  }
  const int linesPerRead = std::max(argc > 3 ? std::atoi(argv[3]) : 20, 1);
  const int lines = std::max(std::atoi(argv[2]), reports * linesPerRead);
  if (std::string_view(argv[1]) == "ours") {
    IdleInput host;
    InputWidget bar(host, nullptr);
    OutputWidget pane(bar, nullptr);
    run("ours", pane, lines, linesPerRead);
  } else {
    const qsizetype length = std::atoi(argv[1]);
    LiteralPane pane(length, 4 * length);
    run(argv[1], pane, lines, linesPerRead);
  }
  return 0;
}
