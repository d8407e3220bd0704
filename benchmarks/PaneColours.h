#pragma once

#include <QTextBrowser>
#include <algorithm>

#include "settings/ClientSettings.h"
#include "terminal/core/AnsiTranslator.h"

using namespace kelmora;
using namespace kelmora::settings;
using namespace kelmora::terminal;

// How the client's window dresses its pane, for panes that stand alone.

inline void setColours(AnsiTranslator& translator, const ClientSettings& settings) {
  const auto textsOf = [](const ColourTexts& colours) {
    AnsiTranslator::ColourTexts texts;
    std::transform(colours.begin(), colours.end(), texts.begin(),
                   [](const ColourText& colour) { return colour.text(); });
    return texts;
  };
  translator.buildColourSpans(textsOf(settings.normalColour), textsOf(settings.boldColour));
}

inline void setPaneLook(QTextBrowser& pane, const ClientSettings& settings) {
  pane.setFont(settings.outFont);
  QPalette palette = pane.palette();
  palette.setBrush(QPalette::Active, QPalette::Base, Qt::black);
  palette.setBrush(QPalette::Inactive, QPalette::Base, Qt::black);
  pane.setPalette(palette);
}
