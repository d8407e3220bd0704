#pragma once

#include <QString>
#include <array>
#include <optional>
#include <span>

namespace kelmora::demo {

/// The tables of the world: its places and the paths between them, what lies
/// there and who lives there. All texts are UTF-8.
enum class PlaceId {
  Square,
  Heron,
  Loft,
  Cellar,
  Lane,
  Shop,
  Gate,
  WoodsEdge,
  OldOak,
  Crown,
  Hollow,
  Harbour,
  Beach,
  Causeway,
  Lighthouse,
  LampRoom
};
inline constexpr int kPlaceCount = 16;
inline constexpr PlaceId kStart = PlaceId::Square;
inline constexpr PlaceId kInn = PlaceId::Heron;

enum class Direction { North, South, East, West, Up, Down };
inline constexpr std::array<Direction, 6> kDirections{Direction::North, Direction::South,
                                                      Direction::East,  Direction::West,
                                                      Direction::Up,    Direction::Down};

struct Place {
  PlaceId id;
  /// As it stands on the map and above the description.
  const char* name;
  const char* text;
};

/// Something one can look at but not carry.
struct Scenery {
  PlaceId where;
  const char* word;
  const char* text;
};

struct Item {
  /// With its indefinite article, as every name below.
  const char* name;
  const char* text;
  PlaceId home;
};

struct Creature {
  const char* name;
  const char* text;
  PlaceId home;
  int hits;
  int leastBlow;
  int hardestBlow;
  /// What it does when it strikes, and when it is beaten and comes back.
  const char* strikes;
  const char* beaten;
  const char* returns;
};

[[nodiscard]] const Place& place(PlaceId id);
[[nodiscard]] std::span<const Scenery> scenery();
[[nodiscard]] std::span<const Item> items();
[[nodiscard]] std::span<const Creature> creatures();
/// Whether a player's lower-case `words` mean the thing `name`: "soldier",
/// "straw soldier" and "the straw soldier" all mean "a straw soldier".
[[nodiscard]] bool isCalled(const char* name, const QString& words);

/// The place that lies `way` of `from`; every path can be walked both ways.
[[nodiscard]] std::optional<PlaceId> neighbour(PlaceId from, Direction way);

[[nodiscard]] const char* directionName(Direction way);
/// "n", "north" and so on, in lower case.
[[nodiscard]] std::optional<Direction> directionOf(const QString& word);

/// The whole map, lines ended with "\r\n", `here` marked with stars.
[[nodiscard]] QString map(PlaceId here);

}  // namespace kelmora::demo
