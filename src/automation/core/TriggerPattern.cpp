#include "automation/core/TriggerPattern.h"

#include <limits>
#include <string_view>

#include "scan/Integer.h"

namespace kelmora::automation {

namespace {

constexpr QLatin1StringView wildcard("{*}");

/// Bytes of a captured word that are kept. The scan itself takes words whole:
/// what is left of one would be taken for the next.
constexpr qsizetype longestWord = 1023;
constexpr qsizetype noLimit = std::numeric_limits<qsizetype>::max();

/// Keeps the two longest of the byte runs it is shown, the first of equals.
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

/// What stands before a wildcard is read byte by byte, but a blank stands for
/// any run of blanks, and blanks may stand before a per cent sign.
void addRunsBeforeWildcard(const QByteArray& literal, LongestRuns& runs) {
  for (const char byte : literal) {
    if (scan::isSpace(byte) || byte == '%')
      runs.end();
    if (!scan::isSpace(byte))
      runs.add(byte);
  }
  runs.end();
}

/// The tail is compared as text, in which only ASCII is the same as bytes.
void addRunsOfTail(const QByteArray& tail, LongestRuns& runs) {
  for (const char byte : tail) {
    if (static_cast<unsigned char>(byte) < 0x80)
      runs.add(byte);
    else
      runs.end();
  }
  runs.end();
}

/// The standard library's search, since the toolkit's looks at every byte.
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
  if (count >= 1 && count <= maximumWildcards) {
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

  // A quirk kept on purpose: the tail is looked for as bytes, so that a "%s"
  // of the player's own, behind the last wildcard, is taken for one.
  tail_ = format.sliced(format.lastIndexOf("%s") + 2);
  // A quirk kept on purpose: no line passes a tail with a per cent sign in it.
  if (tail_.contains('%'))
    return;
  // A NUL character ends the format, maybe before a wildcard.
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
  // Templates of one kind share their longest run, so it tells them from other
  // lines only; a second look is far cheaper than a scan.
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
  // The word is looked for from the line's end, wherever the scan took it from.
  // Looking first at the one place where it would do bounds that search.
  return place >= 0 && text.endsWith(tail) &&
         QStringView(text).sliced(place).startsWith(lastWord) &&
         text.lastIndexOf(lastWord) == place;
}

}  // namespace kelmora::automation
