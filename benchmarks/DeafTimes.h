#pragma once

#include <deque>
#include <functional>
#include <utility>

#include "ClientProcess.h"
#include "GameText.h"
#include "Play.h"
#include "PlayedServer.h"

/// A server's questions, one every millisecond, and how long they wait for
/// their answer.
class Questions {
 public:
  explicit Questions(PlayedServer& server) : server_(server) {}

  /// Asks for so long, and longer until every line of the text has been sent,
  /// so many of them with each question. Returns when all is answered.
  void ask(double time, GameText* text = nullptr, int lines = 0, int linesEach = 1);
  /// The longest wait so far, in seconds, which is forgotten then.
  [[nodiscard]] double takeLongest() { return std::exchange(longest_, 0); }

 private:
  void listenUntil(Moment moment);

  PlayedServer& server_;
  std::deque<Moment> asked_;
  double longest_ = 0;
};

/// What holds up the window while its pane is full: for how long a line from
/// the server finds no answer, and what each of it costs the processor. Each
/// thing is done twice, first in quiet, for its cost, then among questions.
class DeafTimes {
 public:
  /// The client is quiet, its pane full.
  DeafTimes(ClientProcess& client, PlayedServer& server, Result& result)
      : client_(client), server_(server), result_(result), questions_(server) {}

  void measure();

 private:
  struct State {
    int width = 0;
    int resizes = 0;
    int formats = 0;
    int paragraphs = 0;
    int characters = 0;
  };

  void measureOrder(const std::string& name, const std::string& deed, const std::string& undone,
                    int resizes);
  void measureLinks();
  void askAmongLinks();
  void measureQuietMoment();
  void leaveUnusedLinks();
  /// Processor seconds of that, until the client is quiet again.
  double cost(const std::function<void()>& deed);
  [[nodiscard]] State state();
  /// Throws where what would be measured is no full pane.
  [[nodiscard]] State fullState();
  [[nodiscard]] double spent() const;

  ClientProcess& client_;
  PlayedServer& server_;
  Result& result_;
  Questions questions_;
  GameText links_{seed, 1};  ///< a link of its own in every line
  GameText plain_{seed + 1, 0};
};
