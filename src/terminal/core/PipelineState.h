#pragma once

#include "terminal/core/AnsiTranslator.h"

namespace kelmora::terminal {

struct PipelineOptions {
  bool displayAnsiColor = true;
  bool playBeeps = true;
  bool parseHtml = true;
  bool displayURLs = true;
};

/// All that lasts from one read to the next. Copies are cheap.
struct PipelineState {
  AnsiTranslator translator;
  /// Whether a "<" waits for its ">"; changes only while HTML is parsed.
  bool insideTag = false;
};

}  // namespace kelmora::terminal
