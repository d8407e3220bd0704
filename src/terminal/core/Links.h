#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>

namespace kelmora::terminal {

/// Whether a text may have web addresses in it: whether it holds what every one
/// has.
[[nodiscard]] bool mayHaveLinks(QByteArrayView plain);

/// Where in a plain text the link is that its only web address becomes.
struct OnlyLink {
  qsizetype start;
  qsizetype end;
  /// What it leads to, and shows.
  QString target;
  /// What it leaves of the blank that it ends with, a NUL where there is none.
  char16_t behind;
};

/// Nothing where there is none, or none that is easily told: with a scheme, and
/// no other near it.
[[nodiscard]] std::optional<OnlyLink> onlyLink(QByteArrayView plain);

/// Wraps web addresses in a read's HTML in links. Blanks are still "&#32;" at
/// this stage, so a link's body runs on until the ";" of one.
void linkify(QString& html);

/// Replaces the placeholders "<space>", "<tab>", "<lt>" and "<gt>" by what they
/// stand for, and makes every second of adjoining blanks a hard one.
void resolvePlaceholders(QString& html);

}  // namespace kelmora::terminal
