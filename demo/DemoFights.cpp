#include <array>

#include "demo/DemoWorld.h"

namespace kelmora::demo {

namespace {

using demo::Ink;
using demo::prose;

constexpr int kStrikeCost = 2;
constexpr int kFleeCost = 5;
constexpr int kFewestCoins = 2;
constexpr int kMostCoins = 9;

struct Spell {
  const char* word;
  int cost;
  int least;
  int most;
};
constexpr Spell kSpark{"spark", 6, 9, 16};
constexpr Spell kMend{"mend", 10, 24, 36};

struct Breath {
  int hits = 6;
  int spells = 3;
  int endurance = 8;
};

QString the(const Creature& creature) {
  const auto [article, name] = firstWord(prose(creature.name));
  return (article == QLatin1String("the") ? article : QStringLiteral("the")) + u' ' + name;
}

QString capitalised(const QString& text) {
  return text.at(0).toUpper() + text.sliced(1);
}

}  // namespace

std::optional<std::size_t> DemoWorld::creatureHere(const DemoPlayer& player,
                                                   const QString& word) const {
  const auto all = creatures();
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i].home == player.place && !creatures_[i].returnsAt && isCalled(all[i].name, word))
      return i;
  }
  return std::nullopt;
}

void DemoWorld::kill(DemoPlayer& player, const QString& argument) {
  if (player.foe) {
    tell(player,
         QStringLiteral("One at a time! You are busy with %1.").arg(the(creatures()[*player.foe])));
    return;
  }
  const QString word = argument.toLower();
  if (player.place == PlaceId::Square && word == QLatin1String("bob")) {
    tell(player, prose("Bob looks at you so kindly that you put your fists back in your pockets."));
    return;
  }
  const auto creature = creatureHere(player, word);
  if (!creature) {
    tell(player, word.isEmpty() ? prose("Kill what? (We use the word loosely here.)")
                                : prose("There is nobody of that name to fight here."));
    return;
  }
  player.foe = creature;
  player.resting = false;
  const QString name = the(creatures()[*creature]);
  tell(player, QStringLiteral("You square up to %1.").arg(name), Ink::Red);
  tellOthers(player, QStringLiteral("%1 squares up to %2.").arg(player.name, name), Ink::Red);
}

void DemoWorld::fightRound(DemoPlayer& player) {
  const std::size_t foe = *player.foe;
  const Creature& creature = creatures()[foe];
  player.promptDue = true;
  const bool tired = player.endurance.now == 0;
  const int damage = tired ? roll(1, 4) : roll(5, 11);
  player.endurance.spend(kStrikeCost);
  tell(player,
       tired ? QStringLiteral("Out of breath, you tap %1 for %2.").arg(the(creature)).arg(damage)
             : QStringLiteral("You hit %1 for %2.").arg(the(creature)).arg(damage),
       Ink::White);
  strike(player, damage);
  if (!player.foe)
    return;
  const int blow = roll(creature.leastBlow, creature.hardestBlow);
  const QString strikes = capitalised(the(creature)) + u' ' + prose(creature.strikes);
  player.hits.spend(blow);
  tell(player,
       strikes +
           (blow == 0 ? QStringLiteral(", and misses.") : QStringLiteral(", for %1.").arg(blow)),
       Ink::Red);
  if (player.hits.now == 0)
    carryToInn(player);
}

void DemoWorld::strike(DemoPlayer& player, int damage) {
  const std::size_t foe = *player.foe;
  creatures_[foe].hits -= damage;
  if (creatures_[foe].hits <= 0)
    creatureBeaten(foe, player);
}

void DemoWorld::creatureBeaten(std::size_t creature, const DemoPlayer& victor) {
  const Creature& beaten = creatures()[creature];
  creatures_[creature] = {beaten.hits, beat_ + options_.creatureReturnRounds};
  const QString how = capitalised(the(beaten)) + u' ' + prose(beaten.beaten) + u'.';
  for (auto& [id, player] : players_) {
    if (player.stage != DemoPlayer::Stage::Playing || player.place != victor.place)
      continue;
    tell(player, how, Ink::Yellow);
    if (player.foe == creature) {
      player.foe.reset();
      player.promptDue = true;
      ++player.bested;
      tell(player, prose("You have won!"), Ink::Yellow);
    } else {
      tell(player, QStringLiteral("%1 has won.").arg(victor.name), Ink::Cyan);
    }
  }
  const int coins = roll(kFewestCoins, kMostCoins);
  coinsAt(beaten.home) += coins;
  tellPlace(
      beaten.home,
      QStringLiteral("%1 leaves %2 copper coins behind.").arg(capitalised(the(beaten))).arg(coins),
      Ink::Yellow);
}

// Nobody dies in Kelmora; one wakes up in bed, somewhat embarrassed.
void DemoWorld::carryToInn(DemoPlayer& player) {
  leaveFight(player);
  tell(player,
       prose("Everything goes soft and dark. Kind hands carry you somewhere that smells of "
             "onion soup..."),
       Ink::Magenta);
  tellOthers(player, QStringLiteral("%1 is carried off to the inn.").arg(player.name), Ink::Cyan);
  player.place = kInn;
  tellOthers(player, QStringLiteral("%1 is carried in and tucked up by the fire.").arg(player.name),
             Ink::Cyan);
  player.hits.now = player.hits.most / 3;
  tell(player, prose("You wake up. Somebody has taken your boots off. A good moment to `rest`.\n"));
  showPlace(player);
}

void DemoWorld::leaveFight(DemoPlayer& player) {
  if (!player.foe)
    return;
  const std::size_t foe = *player.foe;
  player.foe.reset();
  for (const auto& [id, other] : players_)
    if (other.foe == foe)
      return;
  creatures_[foe].hits = creatures()[foe].hits;
}

void DemoWorld::flee(DemoPlayer& player, const QString&) {
  if (!player.foe) {
    tell(player, prose("There is nothing to flee from, except perhaps the soup."));
    return;
  }
  std::vector<Direction> ways;
  for (const Direction way : kDirections)
    if (neighbour(player.place, way))
      ways.push_back(way);
  const QString name = the(creatures()[*player.foe]);
  leaveFight(player);
  player.endurance.spend(kFleeCost);
  tell(player,
       QStringLiteral("You remember an urgent appointment elsewhere, and leave %1 to it.\n")
           .arg(name),
       Ink::Magenta);
  tellOthers(player, QStringLiteral("%1 flees!").arg(player.name), Ink::Red);
  step(player, ways.at(static_cast<std::size_t>(roll(0, static_cast<int>(ways.size()) - 1))));
}

void DemoWorld::cast(DemoPlayer& player, const QString& argument) {
  const QString word = argument.toLower();
  const bool spark = word == QLatin1String(kSpark.word);
  if (!spark && word != QLatin1String(kMend.word)) {
    tell(player, QStringLiteral("You know two spells: spark (%1 spell points) and mend (%2).")
                     .arg(kSpark.cost)
                     .arg(kMend.cost));
    return;
  }
  const Spell& spell = spark ? kSpark : kMend;
  if (player.spells.now < spell.cost) {
    tell(player, prose("You reach for the words, but they are still out. `rest` calls them back."));
    return;
  }
  if (spark && !player.foe) {
    tell(player, prose("You are not in a fight, and the lanterns are lit already."));
    return;
  }
  player.spells.spend(spell.cost);
  const int power = roll(spell.least, spell.most);
  if (!spark) {
    player.hits.regain(power);
    tell(player, prose("Warmth runs through you like good news."), Ink::Green);
    return;
  }
  const QString name = the(creatures()[*player.foe]);
  tell(player,
       QStringLiteral("A spark leaps from your fingers and stings %1 for %2.").arg(name).arg(power),
       Ink::Yellow);
  tellOthers(player, QStringLiteral("%1 throws a spark at %2.").arg(player.name, name),
             Ink::Yellow);
  strike(player, power);
}

void DemoWorld::rest(DemoPlayer& player, const QString&) {
  if (player.foe) {
    tell(player, prose("In the middle of a fight? Your foe admires the idea."));
  } else if (player.hits.isFull() && player.spells.isFull() && player.endurance.isFull()) {
    tell(player, prose("You could not be any fresher without being a salad."));
  } else if (player.resting) {
    tell(player, prose("You are resting already, and doing it beautifully."));
  } else {
    player.resting = true;
    tell(player, prose("You sit down and put your feet up."), Ink::Green);
    tellOthers(player, QStringLiteral("%1 sits down to rest.").arg(player.name), Ink::Cyan);
  }
}

void DemoWorld::restRound(DemoPlayer& player) {
  const Breath breath;
  player.hits.regain(breath.hits);
  player.spells.regain(breath.spells);
  player.endurance.regain(breath.endurance);
  player.promptDue = true;
  if (player.hits.isFull() && player.spells.isFull() && player.endurance.isFull()) {
    player.resting = false;
    tell(player, prose("You get up, good as new."), Ink::Green);
  }
}

void DemoWorld::returnCreatures() {
  for (std::size_t i = 0; i < creatures_.size(); ++i) {
    if (!creatures_[i].returnsAt || beat_ < *creatures_[i].returnsAt)
      continue;
    creatures_[i].returnsAt.reset();
    const Creature& creature = creatures()[i];
    tellPlace(creature.home, capitalised(the(creature)) + u' ' + prose(creature.returns) + u'.',
              Ink::Magenta);
  }
}

void DemoWorld::letBobSpeak() {
  static constexpr std::array<const char*, 8> kSayings{
      "Lovely evening. They usually are, if one stays for the end.",
      "If you find a key, do not put it anywhere safe.",
      "I would try the soup. Somebody has to.",
      "The orc is a sweet fellow, really. It is the newspaper that is hard news.",
      "Twelve lanterns, there were. I have my suspicions about the moon.",
      "The lighthouse keeper was late for everything. Still is.",
      "Ask for the tutorial, everyone does. Even the sea did.",
      "You have a travelling sort of face. Mine has always been a sitting one.",
  };
  if (options_.chatter == NpcChatter::Off || beat_ < bobSpeaksAt_)
    return;
  const bool first = bobSpeaksAt_ == 0;
  bobSpeaksAt_ = beat_ + roll(40, 90);
  if (first)
    return;
  const auto saying = static_cast<std::size_t>(roll(0, static_cast<int>(kSayings.size()) - 1));
  tellPlace(PlaceId::Square, QStringLiteral("Bob says: ") + prose(kSayings.at(saying)), Ink::Green);
}

}  // namespace kelmora::demo
