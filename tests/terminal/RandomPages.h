#pragma once

#include <random>

#include "TwoLayouts.h"

/// What a game may send and a player may do with it, by chance but the same for
/// the same seed.
class RandomPage {
 public:
  explicit RandomPage(unsigned seed) : engine_(seed) {}

  /// 0 to count - 1.
  int pick(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }
  QSize size() { return {60 + pick(500), 40 + pick(400)}; }
  QFont font();

  /// Does one thing to both, and tells what it was.
  QString change(TwoLayouts& two);

 private:
  QString of(const std::vector<const char*>& all);
  QString word();
  QString words();
  /// A paragraph's worth or some, of lines.
  QString lines();
  QColor colour();
  /// Tags that a server may use, closed again as they should be.
  QString markup(int depth);
  QString tagged(const QString& tag, const QString& inner);
  QString list(const QString& tag, int depth);
  QString element(int depth);
  QString add(TwoLayouts& two, int kind);
  QString resize(TwoLayouts& two);
  QString select(TwoLayouts& two);
  QString drop(TwoLayouts& two);
  /// A pane divides long paragraphs; the rest nobody does yet.
  QString edit(TwoLayouts& two);
  QString scroll(TwoLayouts& two);
  QString rare(TwoLayouts& two);

  std::mt19937 engine_;
};
