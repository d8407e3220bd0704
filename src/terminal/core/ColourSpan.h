#pragma once

#include <QByteArray>

#include "terminal/core/StyledText.h"

namespace kelmora::terminal {

/// A colour span: its start tag, and the colours that it sets.
struct ColourSpan {
  QByteArray html = {};
  /// The colours, or none where it sets none.
  quint32 text = TextLook::none;
  quint32 background = TextLook::none;
  /// Whether these colours say the same as the tag. They may not, because a colour
  /// of the settings may be any text.
  bool isPlain = true;

  /// The look of text in this span, inside text of another look.
  [[nodiscard]] TextLook inside(const TextLook& look) const {
    constexpr quint32 none = TextLook::none;
    const bool isFirst = look.text == none && look.background == none;
    return {.text = text != none ? text : look.text,
            .background = background != none ? background : look.background,
            .backgroundCameFirst = isFirst ? text == none : look.backgroundCameFirst};
  }
};

/// Receives the spans of a read in their order.
class SpanSink {
 public:
  virtual void openSpan(const ColourSpan& span) = 0;
  /// Adds the text of a palette colour, with which a read may begin in place of a
  /// span.
  virtual void addBareColour(QByteArrayView colour) = 0;

 protected:
  ~SpanSink() = default;
};

}  // namespace kelmora::terminal
