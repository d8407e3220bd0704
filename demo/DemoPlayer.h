#pragma once

#include <QString>
#include <optional>
#include <set>

#include "demo/Places.h"

namespace kelmora::demo {

enum class PlayerId : quint64 {};

/// One pair of the prompt.
struct Points {
  int now;
  int most;

  void spend(int amount) { now = now > amount ? now - amount : 0; }
  void regain(int amount) { now = most - now > amount ? now + amount : most; }
  [[nodiscard]] bool isFull() const { return now >= most; }
};

/// One player, from the first connection to the last line.
struct DemoPlayer {
  enum class Stage { AskedForName, Playing, Leaving };

  explicit DemoPlayer(PlayerId playerId) : id(playerId) {}

  PlayerId id;
  Stage stage = Stage::AskedForName;
  QString name;
  PlaceId place = kStart;
  Points hits{120, 120};
  Points spells{40, 40};
  Points endurance{80, 80};
  /// Index of the creature being fought.
  std::optional<std::size_t> foe;
  bool resting = false;
  /// A flood is on its way to the player.
  bool flooding = false;
  /// Told, and not yet delivered.
  QString outgoing;
  /// The prompt ends the next delivery.
  bool promptDue = false;

  std::set<PlaceId> seen;
  int bested = 0;
  int coins = 0;
  /// The chapter shown last; 0 before the first.
  int chapter = 0;
};

}  // namespace kelmora::demo
