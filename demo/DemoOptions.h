#pragma once

#include <QtGlobal>
#include <chrono>
#include <optional>

namespace kelmora::demo {

enum class NpcChatter { Off, On };

/// What a world and its server may be told before they start.
struct DemoOptions {
  /// The world's heartbeat: a fight's round, a rest's breath.
  std::chrono::milliseconds roundInterval{1000};
  /// Whether Bob speaks up unasked.
  NpcChatter chatter = NpcChatter::On;
  /// Connections beyond this many, named or not, are turned away.
  int maxPlayers = 64;
  /// How many rounds a beaten creature stays away.
  int creatureReturnRounds = 45;
  /// A player with more unsent bytes than this is dropped.
  qint64 maxUnsentBytes = qint64{8} * 1024 * 1024;
  /// The dice; unset, every run of the world differs.
  std::optional<quint32> seed;
};

}  // namespace kelmora::demo
