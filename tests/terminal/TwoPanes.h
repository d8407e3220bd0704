#pragma once

#include <QWidget>

#include "IdleHost.h"
#include "PaneContent.h"
#include "support/LiteralPane.h"
#include "terminal/core/OutputPipeline.h"
#include "terminal/core/SafeMarkup.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

/// Both panes, each shown the same.
class TwoPanes : public PipelineHost {
 public:
  void beep() override {}
  void showServerText(ServerText text) override {
    literal.insertServerHtml(safeMarkup(text.decoded()));
    quick.showServerText(std::move(text));
  }
  void parseVitals(const char* /*line*/) override {}
  void checkTriggers(const QByteArray& /*line*/) override {}

  void clear() {
    quick.document()->clear();
    literal.document()->clear();
  }
  [[nodiscard]] QString difference() {
    return PaneContent::of(*quick.document()).differenceTo(PaneContent::of(*literal.document()));
  }

 private:
  IdleHost host_;
  QWidget window_;

 public:
  OutputWidget quick{*new InputWidget(host_, &window_), &window_};
  LiteralPane literal{OutputWidget::longParagraph, OutputWidget::longestParagraph};
};
