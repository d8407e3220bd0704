#pragma once

#include "ClientProcess.h"
#include "GameText.h"
#include "Play.h"
#include "PlayedServer.h"

/// Much text at once, then a line to be answered, and what that took.
class Flood {
 public:
  Flood(const Options& options, PlayedServer& server, Result& result)
      : options_(options),
        server_(server),
        result_(result),
        client_(options.command, options.screen) {}

  /// False when it was stopped.
  bool run();
  /// With the flood's text in its pane, and quiet.
  [[nodiscard]] ClientProcess& client() { return client_; }

 private:
  void prepare();
  std::size_t send();
  void settle();

  const Options& options_;
  PlayedServer& server_;
  Result& result_;
  ClientProcess client_;
  GameText game_{seed, options_.linkEvery};
  std::string text_;
  Moment begin_;
  Moment deadline_;
};
