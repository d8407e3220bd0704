#include "terminal/core/AnsiTranslator.h"

#include <QByteArrayList>
#include <algorithm>
#include <cctype>

#include "terminal/core/CodeNumber.h"
#include "terminal/core/Palette.h"

namespace kelmora::terminal {

namespace {

using Colour = std::optional<QByteArrayView>;

bool isPlain(QByteArrayView colour) {
  constexpr qsizetype length = 7;
  const auto isDigit = [](char byte) {
    return std::isxdigit(static_cast<unsigned char>(byte)) != 0;
  };
  return colour.size() == length && colour.front() == '#' &&
         std::all_of(colour.begin() + 1, colour.end(), isDigit);
}

/// A span of one colour or of both.
ColourSpan spanOf(Colour text, Colour background) {
  ColourSpan span;
  QByteArrayList style;
  const auto set = [&](const char* name, Colour colour, quint32& value) {
    if (!colour)
      return;
    style << name + colour->toByteArray();
    span.isPlain = span.isPlain && isPlain(*colour);
    if (span.isPlain)
      value = colour->sliced(1).toByteArray().toUInt(nullptr, 16);
  };
  set("color:", text, span.text);
  set("background-color:", background, span.background);
  span.html = "<span style=\"" + style.join(';') + "\">";
  return span;
}

/// For each index of the palette the span of the text colour and of the background.
const std::array<std::array<ColourSpan, 2>, 256>& paletteSpans() {
  static const auto spans = [] {
    std::array<std::array<ColourSpan, 2>, 256> made;
    for (quint32 index = 0; index < made.size(); ++index)
      if (const auto colour = paletteColour(index))
        made[index] = {spanOf(colour, {}), spanOf({}, colour)};
    return made;
  }();
  return spans;
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
  /// Whether all bytes so far are "38;5;" or "48;5;", written without the 1st ";".
  /// Nothing must be appended once it is.
  [[nodiscard]] bool isMarker(char colourCode) const {
    return head_ == std::array<char, 4>{colourCode, '8', '5', ';'};
  }

 private:
  CodeNumber number_;
  /// The first bytes, by which isMarker() recognises what precedes a palette index.
  std::array<char, 4> head_{};
  std::size_t length_ = 0;
};

}  // namespace

AnsiTranslator::AnsiTranslator() : spans_(std::make_shared<const Spans>()) {}

void AnsiTranslator::buildColourSpans(const ColourTexts& normalColour,
                                      const ColourTexts& boldColour) {
  Spans spans;
  for (std::size_t k = 0; k < normalColour.size(); ++k) {
    spans.normalSpan[k] = spanOf(normalColour[k], {});
    spans.boldSpan[k] = spanOf(boldColour[k], {});
    spans.backgroundSpan[k] = spanOf({}, normalColour[k]);
  }
  spans.resetSpan = spanOf(normalColour[white], normalColour[0]);
  spans_ = std::make_shared<const Spans>(std::move(spans));
  currentSpan_ = &spans_->resetSpan;
  bareColour_ = {};
  currentForeground_ = quint8{white};
}

const QByteArray& AnsiTranslator::normalSpan(int colour) const {
  return spans_->normalSpan[static_cast<std::size_t>(qBound(0, colour, white))].html;
}

QByteArrayView AnsiTranslator::currentSpan() const {
  return currentSpan_ ? QByteArrayView(currentSpan_->html) : bareColour_;
}

void AnsiTranslator::reopen(SpanSink& sink) const {
  if (currentSpan_)
    sink.openSpan(*currentSpan_);
  else
    sink.addBareColour(bareColour_);
}

void AnsiTranslator::translateEscape(qsizetype& index, QByteArrayView data, SpanSink& sink,
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
        extended = applyCode(parameter.code(), sink);
    } else if (!parameter.isMarker(extended == Extended::Foreground ? '3' : '4')) {
      parameter.append(byte);
    } else if (byte != 'm') {
      paletteIndex.append(byte);
    } else {
      applyPalette(extended, paletteIndex.value(), sink);
    }
  }
  escapePending_ = false;
}

AnsiTranslator::Extended AnsiTranslator::applyCode(quint8 code, SpanSink& sink) {
  const auto makeCurrent = [&](const ColourSpan& span) {
    currentSpan_ = &span;
    sink.openSpan(span);
  };
  if (code == 0) {
    // Quirk: the foreground is still the one from before, should bold follow.
    boldActive_ = false;
    makeCurrent(spans_->resetSpan);
  } else if (code == 1) {
    // Quirk: the next read does not reopen this span.
    boldActive_ = true;
    if (currentForeground_)
      sink.openSpan(spans_->boldSpan[*currentForeground_]);
  } else if (code >= 30 && code <= 37) {
    currentForeground_ = static_cast<quint8>(code - 30);
    makeCurrent((boldActive_ ? spans_->boldSpan : spans_->normalSpan)[*currentForeground_]);
  } else if (code >= 40 && code <= 47) {
    makeCurrent(spans_->backgroundSpan[code - 40U]);
  } else if (code == 38) {
    return Extended::Foreground;
  } else if (code == 48) {
    return Extended::Background;
  }
  return Extended::No;
}

void AnsiTranslator::applyPalette(Extended extended, int index, SpanSink& sink) {
  // A negative index is far above the palette once unsigned.
  const auto place = static_cast<quint32>(index);
  if (place >= paletteSpans().size())
    return;
  const bool isForeground = extended == Extended::Foreground;
  sink.openSpan(paletteSpans()[place][isForeground ? 0 : 1]);
  if (!isForeground)
    return;
  // Quirk: the next read begins with the bare colour text, shown as it is.
  currentForeground_.reset();
  currentSpan_ = nullptr;
  bareColour_ = *paletteColour(place);
}

}  // namespace kelmora::terminal
