#include "terminal/core/AnsiTranslator.h"

#include "terminal/core/CodeNumber.h"
#include "terminal/core/Palette.h"

namespace {

QByteArray foregroundSpan(QByteArrayView colour) {
  return QByteArray("<span style=\"color:").append(colour).append("\">");
}

QByteArray backgroundSpan(QByteArrayView colour) {
  return QByteArray("<span style=\"background-color:").append(colour).append("\">");
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

void AnsiTranslator::buildColourSpans(const ColourTexts& normalColour,
                                      const ColourTexts& boldColour) {
  for (std::size_t k = 0; k < normalColour.size(); ++k) {
    normalSpans_[k] = foregroundSpan(normalColour[k]);
    boldSpans_[k] = foregroundSpan(boldColour[k]);
    backgroundSpans_[k] = backgroundSpan(normalColour[k]);
  }
  resetSpan_ =
      "<span style=\"color:" + normalColour[white] + ";background-color:" + normalColour[0] + "\">";
  currentSpan_ = resetSpan_;
  currentForeground_ = quint8{white};
}

const QByteArray& AnsiTranslator::normalSpan(int colour) const {
  return normalSpans_[static_cast<std::size_t>(qBound(0, colour, white))];
}

void AnsiTranslator::translateEscape(qsizetype& index, QByteArrayView data, ByteBuffer& html,
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

AnsiTranslator::Extended AnsiTranslator::applyCode(quint8 code, ByteBuffer& html) {
  if (code == 0)
    applyReset(html);
  else if (code == 1)
    applyBold(html);
  else if (code >= 30 && code <= 37)
    applyForeground(static_cast<quint8>(code - 30), html);
  else if (code >= 40 && code <= 47)
    applyBackground(static_cast<quint8>(code - 40), html);
  else if (code == 38)
    return Extended::Foreground;
  else if (code == 48)
    return Extended::Background;
  return Extended::No;
}

void AnsiTranslator::applyReset(ByteBuffer& html) {
  // Quirk: the foreground is still the one from before, should bold follow.
  html += resetSpan_;
  boldActive_ = false;
  currentSpan_ = resetSpan_;
}

void AnsiTranslator::applyBold(ByteBuffer& html) {
  // Quirk: the next read does not reopen this span.
  boldActive_ = true;
  if (currentForeground_)
    html += boldSpans_[*currentForeground_];
}

void AnsiTranslator::applyForeground(quint8 colour, ByteBuffer& html) {
  currentForeground_ = colour;
  currentSpan_ = (boldActive_ ? boldSpans_ : normalSpans_)[colour];
  html += currentSpan_;
}

void AnsiTranslator::applyBackground(quint8 colour, ByteBuffer& html) {
  currentSpan_ = backgroundSpans_[colour];
  html += currentSpan_;
}

void AnsiTranslator::applyPalette(Extended extended, int index, ByteBuffer& html) {
  // A negative index is far above the palette once unsigned.
  const auto colour = paletteColour(static_cast<quint32>(index));
  if (!colour)
    return;
  if (extended == Extended::Background) {
    html += backgroundSpan(*colour);
    return;
  }
  html += foregroundSpan(*colour);
  // Quirk: the next read begins with the bare colour text, shown as it is.
  currentForeground_.reset();
  currentSpan_ = colour->toByteArray();
}
