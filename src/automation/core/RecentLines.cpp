#include "automation/core/RecentLines.h"

#include <QStringView>
#include <algorithm>
#include <optional>
#include <utility>

#include "automation/core/LinePattern.h"

namespace kelmora::automation {

namespace {

/// Where a line is in a text, in characters.
struct Extent {
  qsizetype start;
  qsizetype end;

  [[nodiscard]] bool covers(qsizetype place) const { return start <= place && place <= end; }
  [[nodiscard]] qsizetype size() const { return end - start; }
};

/// Whether the pane may show a text in another way than letter by letter.
bool mayBeShownOtherwise(QStringView text) {
  return text.contains(u'&') || text.contains(u"ww.") || text.contains(u"://");
}

/// Without tags, and without the beginning of one at its end: a tag may be divided by
/// the end of a line.
QString withoutTags(QString text) {
  qsizetype start = text.indexOf(u'<');
  while (start >= 0) {
    const qsizetype end = text.indexOf(u'>', start);
    text.remove(start, (end < 0 ? text.size() : end + 1) - start);
    start = text.indexOf(u'<', start);
  }
  return text;
}

/// The place of a text in what is shown, preferably where it covers a certain place.
/// The search from the end stays quick for any text.
std::optional<Extent> placeOf(QStringView text, QStringView shown, qsizetype place) {
  qsizetype start = shown.lastIndexOf(text, place);
  if (start < 0)
    start = shown.lastIndexOf(text);
  return start < 0 ? std::nullopt : std::optional(Extent{start, start + text.size()});
}

/// The place of a text of which some words may be shown in another way: from its
/// first word that is not to its last. Very long words are left out, as the search
/// for some of them takes very long.
std::optional<Extent> placeOfWords(QStringView text, QStringView shown) {
  constexpr qsizetype longestWord = 200;
  std::optional<Extent> extent;
  for (const QStringView word : text.tokenize(u' ', Qt::SkipEmptyParts)) {
    if (mayBeShownOtherwise(word) || word.size() > longestWord)
      continue;
    const qsizetype start = shown.indexOf(word, extent ? extent->end : 0);
    if (start < 0)
      return std::nullopt;
    extent = Extent{extent ? extent->start : start, start + word.size()};
  }
  return extent;
}

std::optional<Extent> find(const QByteArray& line, QStringView shown, qsizetype place) {
  const QString text = QString::fromUtf8(line).replace(tabOfLine, QStringLiteral(" ")).simplified();
  if (text.isEmpty())
    return std::nullopt;
  std::optional<Extent> extent = placeOf(text, shown, place);
  if (!extent && mayBeShownOtherwise(text))
    extent = placeOfWords(text, shown);
  if (extent || !text.contains(u'<'))
    return extent;
  const QString bare = withoutTags(text).simplified();
  if (bare.isEmpty())
    return std::nullopt;
  extent = placeOf(bare, shown, place);
  return extent || !mayBeShownOtherwise(bare) ? extent : placeOfWords(bare, shown);
}

}  // namespace

void RecentLines::add(const QByteArray& line) {
  if (line.isEmpty())
    return;
  QByteArray kept = line;
  if (kept.size() > longestLine) {
    kept = kept.first(longestLine);
    // Preferably not within a character, which would not be found in what is shown.
    if (const qsizetype blank = kept.lastIndexOf(' '); blank > 0)
      kept.truncate(blank);
  }
  bytes_ += kept.size();
  lines_.push_back(std::move(kept));
  while (bytes_ > mostBytes || lines_.size() > std::size_t{mostLines}) {
    bytes_ -= lines_.front().size();
    lines_.pop_front();
  }
}

QByteArray RecentLines::shownAt(const QString& shown, qsizetype place) const {
  const qsizetype excess = std::max<qsizetype>(shown.size() - longestShown, 0);
  const qsizetype start = std::clamp<qsizetype>(place - longestShown / 2, 0, excess);
  const QString near = shown.sliced(start, shown.size() - excess);
  // Rows of blanks count as one: where the colour changes, the pane shows fewer than
  // came.
  const QString text = near.simplified();
  const qsizetype at = near.first(place - start).simplified().size();
  QByteArray best;
  std::pair<bool, qsizetype> bestRank(false, 0);
  // Clang 14 cannot compile the reversed view of GCC's library that is asked for.
  // NOLINTNEXTLINE(modernize-loop-convert)
  for (auto line = lines_.rbegin(); line != lines_.rend(); ++line) {
    const auto extent = find(*line, text, at);
    if (!extent)
      continue;
    const std::pair rank(extent->covers(at), extent->size());
    if (rank > bestRank) {
      bestRank = rank;
      best = *line;
    }
  }
  return best;
}

}  // namespace kelmora::automation
