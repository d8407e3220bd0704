#include <QApplication>

#include "FuzzTarget.h"
#include "Surroundings.h"
#include "support/Settled.h"
#include "terminal/PaneHtml.h"
#include "terminal/TwoPanes.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

constexpr char endOfPart = '\x1E';

/// What a letter before each part switches on. A message is no read, but of
/// the kind that its first byte says.
enum Flag : unsigned {
  Colour = 1,
  Settled = 2,
  Html = 4,
  Links = 8,
  OddColours = 16,
  Message = 32
};

bool has(char letter, Flag flag) {
  return (static_cast<unsigned char>(letter) & flag) != 0;
}

const AnsiTranslator::ColourTexts oddColours{"black",       "red", "#060",    "#666600",
                                             "rgb(0,0,99)", "",    "#12345g", "#bdbdbd\"><b>"};

template <typename Pane>
void show(Pane& pane, char kind, const QString& text) {
  switch (static_cast<unsigned char>(kind) % 5) {
    case 0:
      return appendStatusLine(pane, QStringLiteral("<i>") + text);
    case 1:
      return pane.echoSentText(text + QStringLiteral("\r\n"));
    case 2:
      return pane.printText(text, QColor(text.left(7)));
    case 3:
      return pane.printError(text);
    default:
      return pane.printInfo(text);
  }
}

void take(TwoPanes& panes, char letter, const QByteArray& data) {
  if (has(letter, OddColours))
    panes.buildColourSpans(oddColours, boldColours);
  if (has(letter, Message)) {
    const QString text = QString::fromUtf8(data.mid(1));
    const char kind = data.isEmpty() ? '\0' : data.front();
    show(panes.quick, kind, text);
    show(panes.literal, kind, text);
  } else {
    const PipelineOptions options{.displayAnsiColor = has(letter, Colour),
                                  .playBeeps = false,
                                  .parseHtml = has(letter, Html),
                                  .displayURLs = has(letter, Links)};
    panes.read(data, options);
  }
  if (has(letter, Settled))
    panes.quick.settle();
}

}  // namespace

/// The input is in parts, each a letter and then bytes from the server or a
/// message of the client's own; 0x1E ends a part.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Surroundings<QApplication>::provide();
  static TwoPanes panes;
  panes.begin();
  for (const QByteArray& part : fuzz::bytesOf(data, size).split(endOfPart))
    take(panes, part.isEmpty() ? '\0' : part.front(), part.mid(1));
  // Where paragraphs are dropped it is not the same ones in both.
  if (panes.literal.document()->blockCount() >= OutputWidget::limits.paragraphs)
    return 0;
  const QString difference = panes.difference();
  if (!difference.isEmpty())
    std::fprintf(stderr, "%s\n", qPrintable(difference));
  fuzz::require(difference.isEmpty(), "the pane shows what the plain way would");
  return 0;
}
