#pragma once

#include "terminal/core/HtmlSink.h"
#include "terminal/markup/SafeMarkup.h"

using namespace kelmora;
using namespace kelmora::terminal;

/// Makes HTML of each read, for panes that know nothing else.
class ReadHtml {
 public:
  [[nodiscard]] AnsiTranslator& translator() { return state_.translator; }
  [[nodiscard]] QString of(const QByteArray& data, const PipelineOptions& options) {
    HtmlSink sink(data.size(), options.parseHtml ? HtmlSink::Tags::Parsed : HtmlSink::Tags::Shown);
    walkBytes(data, options, state_, sink);
    return safeMarkup(std::move(sink).html(options.displayURLs)).html();
  }

 private:
  PipelineState state_;
};
