#include "automation/core/TriggerPattern.h"

#include <limits>
#include <string_view>

#include "scan/Integer.h"

namespace kelmora::automation {

namespace {

constexpr QLatin1StringView wildcard("{*}");
constexpr qsizetype mostWildcards = 10;

/// So many bytes of a captured word are kept. The scan itself has no limit: what is
/// left of a word that was cut there would be taken for the next word.
constexpr qsizetype longestWord = 1023;
constexpr qsizetype noLimit = std::numeric_limits<qsizetype>::max();

/// Collects runs of bytes and keeps the two longest of them. Of runs that are equally
/// long the earlier is kept.
class LongestRuns {
 public:
  void add(char byte) { run_ += byte; }
  void end() {
    if (run_.size() > second_.size())
      second_ = run_;
    if (second_.size() > longest_.size())
      std::swap(longest_, second_);
    run_.clear();
  }
  [[nodiscard]] const QByteArray& longest() const { return longest_; }
  [[nodiscard]] const QByteArray& second() const { return second_; }

 private:
  QByteArray run_;
  QByteArray longest_;
  QByteArray second_;
};

/// The text before a wildcard must stand in the line byte for byte, with two
/// exceptions that end a run: a blank of the pattern may be any number of blanks in
/// the line, and blanks may stand in front of a per cent sign.
void addRunsBeforeWildcard(const QByteArray& literal, LongestRuns& runs) {
  for (const char byte : literal) {
    if (scan::isSpace(byte) || byte == '%')
      runs.end();
    if (!scan::isSpace(byte))
      runs.add(byte);
  }
  runs.end();
}

/// The tail is compared as text. So only its ASCII characters are sure to be the
/// same bytes in the line.
void addRunsOfTail(const QByteArray& tail, LongestRuns& runs) {
  for (const char byte : tail) {
    if (static_cast<unsigned char>(byte) < 0x80)
      runs.add(byte);
    else
      runs.end();
  }
  runs.end();
}

/// Uses the standard library's search, which is much faster than the toolkit's.
bool occurs(const QByteArray& run, const QByteArray& line) {
  const auto view = [](const QByteArray& bytes) {
    return std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  };
  return view(line).find(view(run)) != std::string_view::npos;
}

}  // namespace

const QString& TriggerLine::text() const {
  if (!text_)
    text_ = QString::fromUtf8(bytes_);
  return *text_;
}

TriggerPattern::TriggerPattern(const QString& pattern) {
  const qsizetype count = pattern.count(wildcard);
  if (count >= 1 && count <= mostWildcards) {
    wildcards_ = count;
    compileTemplate(pattern);
  } else {
    required_ = pattern.toLatin1();
  }
}

void TriggerPattern::compileTemplate(const QString& pattern) {
  QString converted = pattern;
  converted.replace(QLatin1Char('%'), QLatin1StringView("%%"));
  converted.replace(wildcard, QLatin1StringView("%s"));
  const QByteArray format = converted.toLatin1();

  // A quirk kept on purpose: the last "%s" is looked for in the finished format. So a
  // "%s" that the player wrote behind the last wildcard counts as that wildcard.
  tail_ = format.sliced(format.lastIndexOf("%s") + 2);
  // A quirk kept on purpose: no line matches a tail with a per cent sign in it.
  if (tail_.contains('%'))
    return;
  // A NUL character ends the format. A wildcard behind it can take no word, and so
  // the template cannot match.
  format_ = scan::Format::compile(format, noLimit);
  if (format_ && format_->fieldCount() != wildcards_)
    format_.reset();

  LongestRuns runs;
  const QStringList literals = pattern.split(wildcard);
  for (qsizetype place = 0; place < wildcards_; ++place)
    addRunsBeforeWildcard(literals.at(place).toLatin1(), runs);
  addRunsOfTail(tail_, runs);
  required_ = runs.longest();
  alsoRequired_ = runs.second();
}

std::optional<QStringList> TriggerPattern::matches(const TriggerLine& line) const {
  if (!isTemplate())
    return occurs(required_, line.bytes()) ? std::optional(QStringList()) : std::nullopt;
  // Many templates that differ in a word or two have the same longest run, and all of
  // them get here when a line holds it. Looking for the second longest run rules most
  // of them out at far less cost than a scan.
  if (!format_ || !occurs(alsoRequired_, line.bytes()))
    return std::nullopt;
  const scan::Result fields = format_->scan(line.bytes());
  if (!fields.complete())
    return std::nullopt;
  if (!tailFits(line, fields.text(wildcards_ - 1)))
    return std::nullopt;
  QStringList words;
  for (qsizetype field = 0; field < wildcards_; ++field)
    words += QString::fromUtf8(fields.text(field).left(longestWord));
  return words;
}

bool TriggerPattern::tailFits(const TriggerLine& line, const QByteArray& lastBytes) const {
  if (tail_.isEmpty())
    return true;
  const QString lastWord = QString::fromUtf8(lastBytes);
  const QLatin1StringView tail(tail_);
  const QString& text = line.text();
  const qsizetype place = text.size() - tail.size() - lastWord.size();
  // The rule is to look for the last place of the word in the line, wherever the
  // scan took it from; behind that place there must be the tail and nothing else. So
  // only one place will do, and it is looked at first: that is cheap, and most lines
  // fail there.
  return place >= 0 && text.endsWith(tail) &&
         QStringView(text).sliced(place).startsWith(lastWord) &&
         text.lastIndexOf(lastWord) == place;
}

}  // namespace kelmora::automation
