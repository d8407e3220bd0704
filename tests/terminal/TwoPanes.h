#pragma once

#include <QWidget>

#include "IdleHost.h"
#include "PaneContent.h"
#include "PipelineSupport.h"
#include "support/LiteralPane.h"
#include "support/Settled.h"
#include "terminal/core/OutputPipeline.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// Shows the same reads in two panes: in the real one what the pipeline makes of them,
/// and in a literal one the HTML of the literal pipeline. That HTML is inserted as it
/// is if all its tags are the client's own; otherwise it is filtered first.
class TwoPanes : private PipelineHost {
 public:
  TwoPanes() { begin(); }

  /// Empties both panes and begins a new stream.
  void begin(const AnsiTranslator::ColourTexts& normal = normalColours,
             const AnsiTranslator::ColourTexts& bold = boldColours) {
    settled(quick).document()->clear();
    literal.document()->clear();
    pipeline_ = {};
    literalPipeline_ = {};
    buildColourSpans(normal, bold);
  }
  void buildColourSpans(const AnsiTranslator::ColourTexts& normal,
                        const AnsiTranslator::ColourTexts& bold) {
    pipeline_.translator().buildColourSpans(normal, bold);
    literalPipeline_.buildColourSpans(normal, bold);
    arePlain_ = normal == normalColours && bold == boldColours;
  }
  void read(const QByteArray& data, const PipelineOptions& options) {
    const QString html = literalPipeline_.htmlOf(data, options);
    const bool isOurs = arePlain_ && !literalPipeline_.hadTags;
    literal.insertServerHtml(isOurs ? html : safeMarkup(html).html());
    pipeline_.readSocketData(data, options, *this);
  }
  [[nodiscard]] QString difference() {
    return PaneContent::of(*settled(quick).document())
        .differenceTo(PaneContent::of(*literal.document()));
  }

 private:
  void beep() override {}
  void showServerText(ServerText text) override { quick.showServerText(std::move(text)); }
  void parseVitals(const char* /*line*/) override {}
  void checkTriggers(const QByteArray& /*line*/) override {}

  OutputPipeline pipeline_;
  LiteralPipeline literalPipeline_;
  bool arePlain_ = true;
  IdleHost host_;
  QWidget window_;

 public:
  OutputWidget quick{*new InputWidget(host_, &window_), &window_};
  LiteralPane literal{OutputWidget::limits.lengths.longParagraph,
                      OutputWidget::limits.lengths.longestParagraph};
};
