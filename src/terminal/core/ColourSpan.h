#pragma once

#include <QByteArray>

#include "terminal/core/StyledText.h"

namespace kelmora::terminal {

/// A span of colour that opens: how it is written, and what it makes of a look.
struct ColourSpan {
  QByteArray html = {};
  /// Where it sets one.
  quint32 text = TextLook::none;
  quint32 background = TextLook::none;
  /// Whether that is all there is to say: a stored colour may be any text.
  bool isPlain = true;

  [[nodiscard]] TextLook inside(const TextLook& look) const {
    constexpr quint32 none = TextLook::none;
    const bool isFirst = look.text == none && look.background == none;
    return {.text = text != none ? text : look.text,
            .background = background != none ? background : look.background,
            .backgroundCameFirst = isFirst ? text == none : look.backgroundCameFirst};
  }
};

/// Where the spans of a read go, in their order.
class SpanSink {
 public:
  virtual void openSpan(const ColourSpan& span) = 0;
  /// What a read begins with in place of a span.
  virtual void addBareColour(QByteArrayView colour) = 0;

 protected:
  ~SpanSink() = default;
};

}  // namespace kelmora::terminal
