#pragma once

#include <QStringList>

#include "terminal/core/InputHistory.h"

namespace kelmora::terminal {

/// The options that decide what Enter does with a line.
struct InputOptions {
  /// Local echo as it was when the window was built. History follows this
  /// one, so an option changed during play never changes what is recorded.
  bool echoEnabled = true;
  bool displayLocalEcho = true;
  bool flushInput = false;
  bool splitInput = true;
  QString splitString = {};
};

/// What is to be done with a line once Enter was pressed.
struct InputSubmission {
  enum class Route {
    ActionList,  ///< to the action queue, piece by piece
    WholeLine,   ///< straight to the interpreter
  };
  enum class Afterwards { EmptyBar, SelectAll };

  Route route = Route::ActionList;
  QStringList actions;  ///< never empty: an empty line is one empty action
  Afterwards afterwards = Afterwards::EmptyBar;
};

/// Records the line in the history (ending any browsing) and decides its way.
[[nodiscard]] InputSubmission submitInput(const QString& line, const InputOptions& options,
                                          InputHistory& history);

}  // namespace kelmora::terminal
