#pragma once

#include <QTextDocument>
#include <deque>

#include "terminal/core/TextFinder.h"

namespace kelmora::terminal {

/// Where in a document words are found, while text is added at its end and paragraphs
/// are dropped at its beginning. It is looked through a paragraph at a time, from the
/// end to the beginning, and again only where it has changed.
class PaneHits {
 public:
  /// In the document's characters.
  struct Place {
    int start;
    int length;
    [[nodiscard]] int end() const { return start + length; }
  };
  using Places = std::deque<Place>;

  /// Of more, the newest are kept.
  static constexpr std::size_t most = 10'000;

  /// The document outlives this, or until watch().
  explicit PaneHits(const QTextDocument& document) { watch(document); }

  /// Goes on with another document that has the same text.
  void watch(const QTextDocument& document) { document_ = &document; }
  /// Looks for other words from now on.
  void look(TextFinder finder);
  /// To be called when the document's content has changed there; lengths are in
  /// characters.
  void takeChange(int from, int removed, int added);
  /// Looks through the next paragraph. Returns false if there is none.
  bool advance() { return lookDown() || lookUp(); }

  /// In their order in the document.
  [[nodiscard]] const Places& places() const { return places_; }
  /// The first hit that begins there or later.
  [[nodiscard]] Places::const_iterator firstFrom(int position) const;

 private:
  bool lookDown();
  bool lookUp();

  const QTextDocument* document_;
  TextFinder finder_;
  Places places_;
  // Between these two places all hits are known.
  int lookedFrom_ = 0;
  int lookedTo_ = 0;
};

}  // namespace kelmora::terminal
