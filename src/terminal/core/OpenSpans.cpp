#include "terminal/core/OpenSpans.h"

#include <algorithm>

namespace {

// The three texts that the translator writes, told apart by their lengths.
constexpr QByteArrayView textStart = "<span style=\"color:";
constexpr QByteArrayView backgroundStart = "<span style=\"background-color:";
constexpr QByteArrayView between = ";background-color:";
constexpr QByteArrayView end = "\">";

}  // namespace

void OpenSpans::Colour::set(QByteArrayView colour) {
  std::copy_n(colour.begin(), colourLength, text.begin());
  isSet = true;
}

OpenSpans& OpenSpans::operator+=(QByteArrayView span) {
  constexpr qsizetype textSize = textStart.size() + colourLength + end.size();
  constexpr qsizetype backgroundSize = backgroundStart.size() + colourLength + end.size();
  constexpr qsizetype bothSize = textSize + between.size() + colourLength;
  const bool isBackground = span.size() == backgroundSize;
  if (isBackground && !text_.isSet && !background_.isSet)
    backgroundCameFirst_ = true;
  if (span.size() == textSize || span.size() == bothSize)
    text_.set(span.sliced(textStart.size()));
  if (isBackground || span.size() == bothSize)
    background_.set(span.last(colourLength + end.size()));
  return *this;
}

QByteArray OpenSpans::html() const {
  const auto span = [](QByteArrayView start, const Colour& colour) {
    return colour.isSet ? start.toByteArray().append(colour.view()).append(end) : QByteArray();
  };
  const QByteArray text = span(textStart, text_);
  const QByteArray background = span(backgroundStart, background_);
  return backgroundCameFirst_ ? background + text : text + background;
}
