#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>

namespace kelmora::terminal {

/// Whether a text may contain web addresses. A quick check: false is certain.
[[nodiscard]] bool mayHaveLinks(QByteArrayView plain);

/// The link that the only web address in a text becomes.
struct OnlyLink {
  // Where the address begins and ends in the text, in bytes.
  qsizetype start;
  qsizetype end;
  /// What the link leads to and what it shows.
  QString target;
  /// What is shown behind it: of a blank that the link has taken part of, what is
  /// left of its "&#32;". NUL for nothing.
  char16_t behind;
};

/// Finds the link without writing any HTML. It returns nothing if there is none and
/// in all but simple cases: for an address without a scheme, for several of them.
[[nodiscard]] std::optional<OnlyLink> onlyLink(QByteArrayView plain);

/// Turns web addresses in a read's HTML into links. Blanks are still written "&#32;"
/// at this stage, so an address ends only at the ";" of the next one.
void linkify(QString& html);

/// Replaces the placeholders "<space>", "<tab>", "<lt>" and "<gt>" by what they
/// stand for, and every second blank of a row by one that HTML does not collapse.
void resolvePlaceholders(QString& html);

}  // namespace kelmora::terminal
