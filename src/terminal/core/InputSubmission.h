#pragma once

#include <QStringList>

#include "terminal/core/InputHistory.h"

namespace kelmora::terminal {

/// The options that decide what Enter does with a line.
struct InputOptions {
  /// Local echo as it was when the window was built. It decides whether lines are
  /// recorded in the history; changing the option during play does not.
  bool echoEnabled = true;
  bool displayLocalEcho = true;
  bool flushInput = false;
  bool splitInput = true;
  QString splitString = {};
};

/// What to do with a line when Enter has been pressed.
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

/// Ends browsing, records the line in the history, and decides what to do with it.
[[nodiscard]] InputSubmission submitInput(const QString& line, const InputOptions& options,
                                          InputHistory& history);

}  // namespace kelmora::terminal
