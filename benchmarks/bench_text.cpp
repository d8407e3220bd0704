// What a byte of the game's text costs on its way to text and runs and to plain
// lines, with nobody behind who does anything with them.
//
// bench_text [MEGABYTES] [BYTES-A-READ]: the best of some rounds, in nanoseconds
// a byte.

#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "GameText.h"
#include "terminal/core/OutputPipeline.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

constexpr int rounds = 15;

class IdleHost : public PipelineHost {
 public:
  void beep() override {}
  void showServerText(ServerText /*text*/) override { ++reads; }
  void parseVitals(const char* /*line*/) override {}
  void checkTriggers(const QByteArray& /*line*/) override { ++lines; }
  qint64 reads = 0;
  qint64 lines = 0;
};

std::vector<QByteArray> readsOf(std::size_t size, qsizetype readSize) {
  std::string text;
  GameText(1).fill(text, size);
  const QByteArray all = QByteArray::fromStdString(text);
  std::vector<QByteArray> reads;
  for (qsizetype start = 0; start < all.size(); start += readSize)
    reads.push_back(all.mid(start, readSize));
  return reads;
}

}  // namespace

int main(int argc, char** argv) {
  const int megabytes = std::max(argc > 1 ? std::atoi(argv[1]) : 20, 1);
  const int readSize = std::max(argc > 2 ? std::atoi(argv[2]) : 65536, 1);
  const auto reads = readsOf(static_cast<std::size_t>(megabytes) * 1'000'000, readSize);
  OutputPipeline pipeline;
  AnsiTranslator::ColourTexts colours;
  colours.fill("#bdbdbd");
  colours[1] = "#660000";
  pipeline.translator().buildColourSpans(colours, colours);
  IdleHost host;
  qint64 bytes = 0;
  for (const QByteArray& read : reads)
    bytes += read.size();
  double best = 1e9;
  for (int round = 0; round < rounds; ++round) {
    QElapsedTimer timer;
    timer.start();
    for (const QByteArray& read : reads)
      pipeline.readSocketData(read, {}, host);
    best = std::min(best, static_cast<double>(timer.nsecsElapsed()) / static_cast<double>(bytes));
  }
  std::printf("%.3f ns a byte, %lld bytes in %lld reads, %lld lines a round\n", best,
              static_cast<long long>(bytes), static_cast<long long>(host.reads / rounds),
              static_cast<long long>(host.lines / rounds));
  return 0;
}
