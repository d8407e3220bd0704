#include <QStringList>

#include "demo/Places.h"

namespace kelmora::demo {

namespace {

using demo::PlaceId;

constexpr std::array<Scenery, 14> kScenery{{
    {PlaceId::Square, "fountain",
     "The water says something about the weather. It has been saying so for years."},
    {PlaceId::Square, "signpost",
     "North: gate and wood. South: harbour. West: inn. East: candles. Widdershins: "
     "closed for repairs. The rest is drawn on your `map`."},
    {PlaceId::Square, "bob",
     "Bob has a kind face, a patched coat and all the time in the world. Try typing `bob`."},
    {PlaceId::Heron, "book",
     "The newest entry reads: \"Will fight the orc again when I can sit.\""},
    {PlaceId::Loft, "window", "The lighthouse winks. You are almost sure it was at you."},
    {PlaceId::Cellar, "turnips", "They have the look of turnips that are waiting for a lawyer."},
    {PlaceId::Lane, "cats", "A tabby lands a perfect double turn and pretends it was nothing."},
    {PlaceId::Shop, "card", "On the back somebody has added: \"Five minutes of what?\""},
    {PlaceId::Gate, "notice", "Below PLEASE HIT it says, smaller: \"not the hat\"."},
    {PlaceId::OldOak, "plate",
     "It has been polished by exactly one thumb, for exactly one lifetime."},
    {PlaceId::Hollow, "sign", "Underneath, in even greater haste: \"AND CERTAINLY NOT ON DUTY\"."},
    {PlaceId::Harbour, "slate", "High water: yes. Low water: later."},
    {PlaceId::Lighthouse, "coats",
     "Nine coats, nine pegs, one keeper. He likes to be asked twice."},
    {PlaceId::LampRoom, "lamp",
     "Its light passes over you like a page being turned. You feel read, and well reviewed."},
}};

constexpr std::array<Item, 10> kItems{{
    {"a brass button", "It has an anchor on it, and a bit of thread that has let go.",
     PlaceId::Square},
    {"a heel of bread", "Hard enough to settle an argument.", PlaceId::Heron},
    {"a suspicious turnip", "It avoids your eye.", PlaceId::Cellar},
    {"a candle stub", "Two inches of evening, unused.", PlaceId::Lane},
    {"a jar of moonlight", "The label says: \"Keep out of the sun\".", PlaceId::Shop},
    {"an ambitious acorn", "It is already looking down on you a little.", PlaceId::OldOak},
    {"a heron's feather", "Grey, long and elegant, like good advice.", PlaceId::Crown},
    {"a fish of uncertain age", "It has seen things. You can smell them.", PlaceId::Harbour},
    {"a left boot", "Size nine. Somewhere, a gull is wearing the other.", PlaceId::Beach},
    {"a key put away safely", "A tag says: \"North Gate. Do NOT lose again.\"", PlaceId::LampRoom},
}};

constexpr std::array<Creature, 6> kCreatures{{
    {"a straw soldier", "Straw, twine and a firm sense of duty. His hat is new.", PlaceId::Gate, 24,
     0, 2, "rustles sternly at you", "comes apart into a heap, which salutes",
     "has been tied together again and takes up his post"},
    {"a self-important rat", "He wears a thimble as a hat and has plainly read one book, twice.",
     PlaceId::Cellar, 26, 1, 5, "nips your ankle and quotes somebody",
     "withdraws to write a stiff letter", "returns, having posted his letter"},
    {"a piratical gull", "One eye, one right boot, no shame.", PlaceId::Beach, 30, 2, 6,
     "dives at your hat", "flaps off, screaming about the law of the sea",
     "lands with a thump and glares around"},
    {"a thoughtful spider",
     "She is knitting something with eight sleeves and would rather not be disturbed.",
     PlaceId::Loft, 20, 1, 4, "pokes you with a knitting needle",
     "packs up her wool and leaves by the window", "is back, with more wool"},
    {"an off-duty orc",
     "Large, green and lightly sunburnt. He has put his feet up and his axe down.", PlaceId::Hollow,
     50, 3, 9, "swats you with a rolled-up newspaper", "calls it a day and lumbers off to bed",
     "is back in the deck chair, refreshed"},
    {"the late keeper",
     "You can see the coats through him. He is very polite, and very strict about feet.",
     PlaceId::Lighthouse, 66, 4, 11, "walks through you, which is colder than it looks",
     "bows, says \"Mind the step\", and fades into the wall",
     "steps out of the wall, buttoning a coat"},
}};

}  // namespace

std::span<const Scenery> scenery() {
  return kScenery;
}

std::span<const Item> items() {
  return kItems;
}

std::span<const Creature> creatures() {
  return kCreatures;
}

bool isCalled(const char* name, const QString& words) {
  QString wanted = words;
  for (const char* article : {"a ", "an ", "the "})
    if (words.startsWith(QLatin1String(article)))
      wanted = words.section(u' ', 1);
  const QString bare = QString::fromUtf8(name).section(u' ', 1);
  return wanted == bare || bare.split(u' ').contains(wanted);
}

}  // namespace kelmora::demo
