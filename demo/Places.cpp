#include "demo/Places.h"

#include "demo/DemoText.h"

namespace kelmora::demo {

namespace {

using demo::Direction;
using demo::PlaceId;

constexpr std::array<Place, kPlaceCount> kPlaces{{
    {PlaceId::Square, "Lantern Square",
     "Eleven lanterns ring this little square, and every evening the town holds a "
     "short, loud debate about who lost the twelfth. A fountain mutters to itself in "
     "the middle. Bob sits on its rim, greeting everyone as if he had been expecting "
     "exactly them. A signpost points in every direction, including two that do not "
     "exist."},
    {PlaceId::Heron, "Drowsy Heron",
     "The inn smells of onion soup and drying socks, and is proud of only one of the "
     "two. Behind the counter stands a guest book with a column for complaints, in "
     "which somebody has written: \"The bed was so good that I missed my ship.\" A "
     "fine place to `rest`."},
    {PlaceId::Loft, "The Loft",
     "A row of beds under a slanting roof. Travellers who lose a fight are tucked in "
     "up here or downstairs, whichever needs fewer stairs. Through the round window "
     "you can see the lighthouse wink, as if it knew something."},
    {PlaceId::Cellar, "The Cellar",
     "Barrels, cobwebs, and a great many turnips whose owner has never come forward. "
     "Something has laid out a tiny table for one, with a napkin."},
    {PlaceId::Lane, "Chandler's Lane",
     "The lane was built by candle makers and is therefore crooked, for they worked "
     "at night. Wax has run down the doorsteps over three hundred winters, and the "
     "cats have learned to skate."},
    {PlaceId::Shop, "Odds and Endings",
     "The shop sells the last pages of books, the left halves of pairs and the ends "
     "of rainbows (by the yard). The owner is out. A card on the till says: \"Back "
     "in five minutes\", and has gone quite brown."},
    {PlaceId::Gate, "North Gate",
     "The gate has stood open since the key was put away somewhere safe. A straw "
     "soldier is posted here for travellers to practise on. He takes it well: a "
     "notice round his neck says \"PLEASE HIT\"."},
    {PlaceId::WoodsEdge, "Wood's Edge",
     "Here the road gives up and becomes a path, and the path has its doubts. The "
     "trees whisper. If you listen closely, they are only gossiping about the other "
     "trees."},
    {PlaceId::OldOak, "The Old Oak",
     "The oak is older than the town and does not let it forget. A rope ladder hangs "
     "from the lowest branch, with a small brass plate: \"Climb if you must. Wipe "
     "your feet.\""},
    {PlaceId::Crown, "Oak Crown",
     "You stand among the topmost leaves, above the wood, above the smoke of the "
     "chimneys, nearly above suspicion. Far to the south the sea has been ironed "
     "flat, and the lighthouse holds down its corner."},
    {PlaceId::Hollow, "Fern Hollow",
     "A green bowl of ferns, soft as a held breath. Somebody has set up a deck chair "
     "here, and a parasol, and a large sign in a hasty hand: \"NOT GUARDING ANYTHING\"."},
    {PlaceId::Harbour, "The Harbour",
     "Seven boats nod at their ropes like aunts at a concert. The harbour master has "
     "written up the tides on a slate, and beneath them: \"Subject to change. Have "
     "spoken to the moon.\""},
    {PlaceId::Beach, "Shingle Beach",
     "Every stone on this beach has been rounded by hand, or so the sea would like "
     "you to think. It breathes in, it breathes out, and each time it rearranges "
     "what it has just tidied."},
    {PlaceId::Causeway, "The Causeway",
     "A road of wet stones runs out to the lighthouse rock. Twice a day the sea "
     "borrows it. A rail has been put up for safety, and a second rail to keep "
     "people from leaning on the first."},
    {PlaceId::Lighthouse, "The Lighthouse",
     "Round, white and a little damp, like the inside of an egg that means well. "
     "Pegs on the wall hold nine identical coats. A spiral stair winds up into the "
     "light. The late keeper keeps it still; being late has never stopped him."},
    {PlaceId::LampRoom, "Lamp Room",
     "The great lamp turns without a sound, and the whole dark sea turns with it. "
     "Ships far out blink back a thank-you. On the sill stands a jam jar with a "
     "candle stub in it, in case the great lamp ever needs cheering up."},
}};

struct Path {
  PlaceId from;
  Direction way;
  PlaceId to;
};

constexpr std::array<Path, 15> kPaths{{
    {PlaceId::Square, Direction::North, PlaceId::Gate},
    {PlaceId::Square, Direction::South, PlaceId::Harbour},
    {PlaceId::Square, Direction::West, PlaceId::Heron},
    {PlaceId::Square, Direction::East, PlaceId::Lane},
    {PlaceId::Heron, Direction::Up, PlaceId::Loft},
    {PlaceId::Heron, Direction::Down, PlaceId::Cellar},
    {PlaceId::Lane, Direction::East, PlaceId::Shop},
    {PlaceId::Gate, Direction::North, PlaceId::WoodsEdge},
    {PlaceId::WoodsEdge, Direction::West, PlaceId::OldOak},
    {PlaceId::WoodsEdge, Direction::East, PlaceId::Hollow},
    {PlaceId::OldOak, Direction::Up, PlaceId::Crown},
    {PlaceId::Harbour, Direction::East, PlaceId::Beach},
    {PlaceId::Beach, Direction::South, PlaceId::Causeway},
    {PlaceId::Causeway, Direction::East, PlaceId::Lighthouse},
    {PlaceId::Lighthouse, Direction::Up, PlaceId::LampRoom},
}};

// The two columns left of the drawing keep it straight where a display eats
// the first blank of a line.
constexpr const char* kMap =
    "    [Oak Crown]\r\n"
    "         :\r\n"
    "   [The Old Oak]----[Wood's Edge]----[Fern Hollow]\r\n"
    "                          |\r\n"
    "    [The Loft]       [North Gate]\r\n"
    "         :                |\r\n"
    "  [Drowsy Heron]--[Lantern Square]--[Chandler's Lane]--[Odds and Endings]\r\n"
    "         :                |\r\n"
    "   [The Cellar]     [The Harbour]----[Shingle Beach]      [Lamp Room]\r\n"
    "                                            |                  :\r\n"
    "                                     [The Causeway]-----[The Lighthouse]\r\n";

constexpr std::array<const char*, 6> kDirectionNames{"north", "south", "east",
                                                     "west",  "up",    "down"};

constexpr Direction opposite(Direction way) {
  switch (way) {
    case Direction::North:
      return Direction::South;
    case Direction::South:
      return Direction::North;
    case Direction::East:
      return Direction::West;
    case Direction::West:
      return Direction::East;
    case Direction::Up:
      return Direction::Down;
    case Direction::Down:
      break;
  }
  return Direction::Up;
}

}  // namespace

const Place& place(PlaceId id) {
  return kPlaces.at(static_cast<std::size_t>(id));
}

std::optional<PlaceId> neighbour(PlaceId from, Direction way) {
  for (const Path& path : kPaths) {
    if (path.from == from && path.way == way)
      return path.to;
    if (path.to == from && opposite(path.way) == way)
      return path.from;
  }
  return std::nullopt;
}

const char* directionName(Direction way) {
  return kDirectionNames.at(static_cast<std::size_t>(way));
}

std::optional<Direction> directionOf(const QString& word) {
  for (const Direction way : kDirections) {
    const QString name = QString::fromLatin1(directionName(way));
    if (word == name || word == name.first(1))
      return way;
  }
  return std::nullopt;
}

QString map(PlaceId here) {
  const QString name = QString::fromUtf8(place(here).name);
  QString drawing = QString::fromUtf8(kMap);
  drawing.replace(u'[' + name + u']', paint(Ink::Yellow, u'*' + name + u'*'));
  return drawing + QStringLiteral("\r\n") +
         paragraph(QStringLiteral("  ") +
                   prose("*stars* mark where you are; a colon is a ladder or a stair"));
}

}  // namespace kelmora::demo
