#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <array>

/// What the colour spans of a read come to so far, in place of their HTML. Only
/// for spans whose colours are "#" and six digits: any other text leaves it as
/// it is.
class OpenSpans {
 public:
  OpenSpans& operator+=(QByteArrayView span);
  /// The spans that look like all of them together, in the order in which the
  /// kinds came: to the toolkit that makes a difference.
  [[nodiscard]] QByteArray html() const;

 private:
  static constexpr qsizetype colourLength = 7;
  struct Colour {
    std::array<char, colourLength> text{};
    bool isSet = false;

    void set(QByteArrayView colour);
    [[nodiscard]] QByteArrayView view() const { return {text.data(), colourLength}; }
  };

  Colour text_;
  Colour background_;
  bool backgroundCameFirst_ = false;
};
