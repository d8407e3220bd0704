#include "terminal/core/AnsiTranslator.h"

#include <algorithm>
#include <cctype>

#include "terminal/core/CodeNumber.h"
#include "terminal/core/Palette.h"

namespace {

constexpr QByteArrayView foregroundStart = "<span style=\"color:";
constexpr QByteArrayView backgroundStart = "<span style=\"background-color:";
constexpr QByteArrayView spanEnd = "\">";

QByteArray span(QByteArrayView start, QByteArrayView colour) {
  return start.toByteArray().append(colour).append(spanEnd);
}

bool isPlain(const QByteArray& colour) {
  constexpr qsizetype length = 7;
  const auto isDigit = [](char byte) {
    return std::isxdigit(static_cast<unsigned char>(byte)) != 0;
  };
  return colour.size() == length && colour.front() == '#' &&
         std::all_of(colour.begin() + 1, colour.end(), isDigit);
}

/// The digits of all parameters of one sequence so far. They pile up on
/// purpose: "1;31" is code 1 and then code 131.
class Parameter {
 public:
  void append(char byte) {
    number_.append(byte);
    if (length_ < head_.size())
      head_[length_++] = byte;
  }
  /// The low byte of the value is what counts: 294 acts as 38.
  [[nodiscard]] quint8 code() const { return static_cast<quint8>(number_.value()); }
  /// Asked only until it is one: nothing is appended to a marker.
  [[nodiscard]] bool isMarker(char colourCode) const {
    return head_ == std::array<char, 4>{colourCode, '8', '5', ';'};
  }

 private:
  CodeNumber number_;
  /// The first bytes, to know the introduction of a palette index by.
  std::array<char, 4> head_{};
  std::size_t length_ = 0;
};

}  // namespace

AnsiTranslator::AnsiTranslator() : spans_(std::make_shared<const Spans>()) {}

void AnsiTranslator::buildColourSpans(const ColourTexts& normalColour,
                                      const ColourTexts& boldColour) {
  Spans spans;
  for (std::size_t k = 0; k < normalColour.size(); ++k) {
    spans.normal[k] = span(foregroundStart, normalColour[k]);
    spans.bold[k] = span(foregroundStart, boldColour[k]);
    spans.background[k] = span(backgroundStart, normalColour[k]);
    spans.plain = spans.plain && isPlain(normalColour[k]) && isPlain(boldColour[k]);
  }
  spans.reset =
      "<span style=\"color:" + normalColour[white] + ";background-color:" + normalColour[0] + "\">";
  spans_ = std::make_shared<const Spans>(std::move(spans));
  currentSpan_ = spans_->reset;
  currentForeground_ = quint8{white};
}

const QByteArray& AnsiTranslator::normalSpan(int colour) const {
  return spans_->normal[static_cast<std::size_t>(qBound(0, colour, white))];
}

template <typename Html>
void AnsiTranslator::translateEscape(qsizetype& index, QByteArrayView data, Html& html,
                                     Colours colours) {
  escapePending_ = true;
  const auto atEnd = [&] { return index + 1 >= data.size(); };
  if (atEnd())
    return;
  // Quirk: any byte may introduce a sequence, and an "m" there is all of it.
  if (data[++index] == 'm') {
    escapePending_ = false;
    return;
  }
  // Both are lost when the data ends here: a resumed sequence starts empty.
  Parameter parameter;
  CodeNumber paletteIndex;
  auto extended = Extended::No;
  for (char byte = '\0'; byte != 'm';) {
    if (atEnd())
      return;
    byte = data[++index];
    if (extended == Extended::No) {
      if (byte != ';' && byte != 'm')
        parameter.append(byte);
      else if (colours == Colours::Shown)
        extended = applyCode(parameter.code(), html);
    } else if (!parameter.isMarker(extended == Extended::Foreground ? '3' : '4')) {
      parameter.append(byte);
    } else if (byte != 'm') {
      paletteIndex.append(byte);
    } else {
      applyPalette(extended, paletteIndex.value(), html);
    }
  }
  escapePending_ = false;
}

template <typename Html>
AnsiTranslator::Extended AnsiTranslator::applyCode(quint8 code, Html& html) {
  if (code == 0) {
    // Quirk: the foreground is still the one from before, should bold follow.
    boldActive_ = false;
    currentSpan_ = spans_->reset;
    html += currentSpan_;
  } else if (code == 1) {
    // Quirk: the next read does not reopen this span.
    boldActive_ = true;
    if (currentForeground_)
      html += spans_->bold[*currentForeground_];
  } else if (code >= 30 && code <= 37) {
    currentForeground_ = static_cast<quint8>(code - 30);
    currentSpan_ = (boldActive_ ? spans_->bold : spans_->normal)[*currentForeground_];
    html += currentSpan_;
  } else if (code >= 40 && code <= 47) {
    currentSpan_ = spans_->background[code - 40U];
    html += currentSpan_;
  } else if (code == 38) {
    return Extended::Foreground;
  } else if (code == 48) {
    return Extended::Background;
  }
  return Extended::No;
}

template <typename Html>
void AnsiTranslator::applyPalette(Extended extended, int index, Html& html) {
  // A negative index is far above the palette once unsigned.
  const auto colour = paletteColour(static_cast<quint32>(index));
  if (!colour)
    return;
  html += span(extended == Extended::Background ? backgroundStart : foregroundStart, *colour);
  if (extended == Extended::Background)
    return;
  // Quirk: the next read begins with the bare colour text, shown as it is.
  currentForeground_.reset();
  currentSpan_ = *colour;
}

template void AnsiTranslator::translateEscape(qsizetype&, QByteArrayView, ByteBuffer&, Colours);
template void AnsiTranslator::translateEscape(qsizetype&, QByteArrayView, OpenSpans&, Colours);
