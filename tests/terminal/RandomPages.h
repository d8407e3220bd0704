#pragma once

#include <random>

#include "TwoLayouts.h"

/// Random contents that a game may send and random actions of a player. The same seed
/// gives the same ones.
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
  /// Lines for about a paragraph or several.
  QString lines();
  QColor colour();
  /// Tags that a server may use, with their end tags.
  QString markup(int depth);
  QString tagged(const QString& tag, const QString& inner);
  QString list(const QString& tag, int depth);
  QString element(int depth);
  QString add(TwoLayouts& two, int kind);
  QString resize(TwoLayouts& two);
  QString select(TwoLayouts& two);
  QString drop(TwoLayouts& two);
  /// Edits in the middle. Of these a pane only divides long paragraphs so far.
  QString edit(TwoLayouts& two);
  QString scroll(TwoLayouts& two);
  QString rare(TwoLayouts& two);

  std::mt19937 engine_;
};
