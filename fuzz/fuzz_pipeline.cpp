#include "FuzzTarget.h"
#include "terminal/MarkupFault.h"
#include "terminal/PipelineSupport.h"
#include "terminal/markup/SafeMarkup.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

constexpr char endOfRead = '\x1E';
/// A colour span with two colours of seven characters, and room to spare.
constexpr qsizetype longestSpan = 64;
/// An address becomes a link to itself, a tab four blanks in six letters each.
constexpr qsizetype mostHtmlForAByte = 64;
/// A short span may bring back all declarations of those around it.
constexpr qsizetype mostMarkupForACharacter = 16;

/// What a letter before each read switches on.
enum Flag : unsigned { Colour = 1, Beeps = 2, Html = 4, Links = 8, NewColours = 16, NoBold = 32 };

bool has(char letter, Flag flag) {
  return (static_cast<unsigned char>(letter) & flag) != 0;
}

AnsiTranslator::ColourTexts colours(int seed) {
  AnsiTranslator::ColourTexts texts;
  // Some equal in text but not in place.
  for (std::size_t k = 0; k < texts.size(); ++k)
    texts[k] = '#' + QByteArray::number((static_cast<int>(k) * seed % 3 + 1) * 111'111);
  return texts;
}

void requireSafe(const QString& html) {
  const QString safe = safeMarkup(html).html();
  fuzz::require(safe == safeMarkup(safe).html(), "safe markup stays as it is");
  fuzz::require(faultOf(safe).isEmpty(), "safe markup holds allowed tags alone");
  fuzz::require(safe.size() <= mostMarkupForACharacter * (html.size() + longestSpan),
                "safe markup is in proportion to the text");
}

/// The pipeline and its rules told plainly, side by side.
class Comparison {
 public:
  Comparison() { rebuild(); }

  void read(char letter, const QByteArray& data) {
    if (has(letter, NewColours))
      rebuild();
    if (has(letter, NoBold)) {
      quick_.translator().clearBold();
      literal_.clearBold();
    }
    const PipelineOptions options{.displayAnsiColor = has(letter, Colour),
                                  .playBeeps = has(letter, Beeps),
                                  .parseHtml = has(letter, Html),
                                  .displayURLs = has(letter, Links)};
    host_.events.clear();
    quick_.readSocketData(data, options, host_);
    fuzz::require(host_.events == expectedOf(literal_, data, options),
                  "a read is what the rules say");
    requireSameState();
    const QString& html = literal_.lastHtml;
    fuzz::require(html.size() <= mostHtmlForAByte * (data.size() + 2),
                  "the HTML of a read is in proportion to it");
    requireSafe(html);
  }

 private:
  void rebuild() {
    ++seed_;
    quick_.translator().buildColourSpans(colours(seed_), colours(seed_ + 1));
    literal_.buildColourSpans(colours(seed_), colours(seed_ + 1));
  }

  void requireSameState() const {
    const AnsiTranslator& translator = quick_.translator();
    fuzz::require(quick_.insideTag() == literal_.insideTag, "the same tag is open");
    fuzz::require(translator.escapePending() == literal_.escapePending,
                  "the same sequence is pending");
    fuzz::require(translator.boldActive() == literal_.boldActive, "bold is on alike");
    fuzz::require(translator.currentSpan() == literal_.currentSpan, "the same span is current");
    fuzz::require(translator.currentSpan().size() <= longestSpan, "the current span is short");
  }

  OutputPipeline quick_;
  LiteralPipeline literal_;
  RecordingHost host_;
  int seed_ = 0;
};

}  // namespace

/// The input is a letter for the options and then bytes from the server; 0x1E
/// ends a read, and the next begins with its letter.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Comparison comparison;
  for (const QByteArray& read : fuzz::bytesOf(data, size).split(endOfRead))
    comparison.read(read.isEmpty() ? '\0' : read.front(), read.mid(1));
  return 0;
}
