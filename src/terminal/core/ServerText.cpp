#include "terminal/core/ServerText.h"

#include "terminal/core/Links.h"

QString ServerText::decoded() const {
  QString text = QString::fromUtf8(html);
  if (links == Links::Shown)
    linkify(text);
  resolvePlaceholders(text);
  return text;
}
