#include <QStringList>
#include <algorithm>
#include <array>
#include <utility>

#include "demo/DemoWorld.h"

namespace kelmora::demo {

namespace {

using demo::Ink;
using demo::prose;

QString joined(QStringList names) {
  if (names.size() < 2)
    return names.join(QString());
  const QString last = names.takeLast();
  return names.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

QString coinsInWords(int count) {
  return count == 1 ? QStringLiteral("a copper coin")
                    : QStringLiteral("%1 copper coins").arg(count);
}

bool isCoins(const QString& word) {
  static constexpr std::array kWords{"coin", "coins", "copper coin", "copper coins"};
  return std::any_of(kWords.begin(), kWords.end(),
                     [&word](const char* name) { return word == QLatin1String(name); });
}

QString capitalised(const QString& text) {
  return text.isEmpty() ? text : text.at(0).toUpper() + text.sliced(1);
}

}  // namespace

std::span<const DemoWorld::Command> DemoWorld::commands() {
  static constexpr std::array kCommands{
      Command{"look l", "look [THING]", "see where you are, or look at something closely",
              &DemoWorld::look},
      Command{"map", "map", "the whole town on one sheet", &DemoWorld::showMap},
      Command{"go", "go DIRECTION", "north, south, east, west, up, down; or just n s e w u d",
              &DemoWorld::go},
      Command{"say", "say WORDS", "speak to everyone around you", &DemoWorld::say},
      Command{"get take", "get THING", "pick something up, such as coins after a fight",
              &DemoWorld::get},
      Command{"drop", "drop THING", "put it down again", &DemoWorld::drop},
      Command{"inventory i", "inventory", "what you carry", &DemoWorld::showInventory},
      Command{"who", "who", "who is in town", &DemoWorld::who},
      Command{"score", "score", "how you are doing", &DemoWorld::score},
      Command{"kill attack", "kill CREATURE", "start a fight", &DemoWorld::kill},
      Command{"cast", "cast SPELL", "spark hurts your foe, mend heals you", &DemoWorld::cast},
      Command{"flee", "flee", "end a fight the wise way", &DemoWorld::flee},
      Command{"rest", "rest", "sit down until you feel better", &DemoWorld::rest},
      Command{"bob", "bob", "let Bob say hello", &DemoWorld::bob},
      Command{"tutorial", "tutorial [next|N]", "a walk through the client",
              &DemoWorld::showTutorial},
      Command{"colours colors", "colours", "every colour there is", &DemoWorld::showColours},
      Command{"link links", "link", "addresses to click on", &DemoWorld::showLinks},
      Command{"unicode", "unicode", "many scripts and some line drawing", &DemoWorld::showUnicode},
      Command{"beep", "beep", "ring the harbour bell", &DemoWorld::beep},
      Command{"hungry", "hungry", "listen to your stomach", &DemoWorld::hungry},
      Command{"flood", "flood N", "N lines at once, up to a million; flood stop ends it",
              &DemoWorld::flood},
      Command{"help", "help", "this list", &DemoWorld::help},
      Command{"quit", "quit", "leave the world", &DemoWorld::quit},
  };
  return kCommands;
}

void DemoWorld::obey(DemoPlayer& player, const QString& line) {
  if (line.isEmpty())
    return;
  if (line.startsWith(u'\'')) {
    say(player, line.sliced(1).trimmed());
    return;
  }
  const auto [word, argument] = firstWord(line);
  if (const auto way = directionOf(word)) {
    step(player, *way);
    return;
  }
  for (const Command& command : commands()) {
    if (QString::fromLatin1(command.words).split(u' ').contains(word)) {
      (this->*command.run)(player, argument);
      return;
    }
  }
  tell(player, prose("Nobody in Kelmora knows how to do that. `help` lists what they do know."));
}

void DemoWorld::look(DemoPlayer& player, const QString& argument) {
  QString word = argument.toLower();
  if (word.startsWith(QLatin1String("at ")))
    word = word.sliced(3).trimmed();
  if (word.isEmpty()) {
    showPlace(player);
    return;
  }
  for (const Scenery& thing : scenery())
    if (thing.where == player.place && word == QLatin1String(thing.word))
      return tell(player, prose(thing.text));
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const bool near =
        items_[i].carrier ? *items_[i].carrier == player.id : items_[i].place == player.place;
    if (near && isCalled(items()[i].name, word))
      return tell(player, prose(items()[i].text));
  }
  if (const auto creature = creatureHere(player, word))
    return tell(player, prose(creatures()[*creature].text));
  for (const auto& [id, other] : players_)
    if (other.stage == DemoPlayer::Stage::Playing && other.place == player.place &&
        other.name.toLower() == word)
      return tell(player,
                  &other == &player
                      ? prose("You look well. Travel suits you.")
                      : QStringLiteral("%1 looks like someone with a story.").arg(other.name));
  tell(player, prose("You look for it here and there, and find mostly here."));
}

void DemoWorld::showPlace(DemoPlayer& player) {
  player.seen.insert(player.place);
  const Place& here = place(player.place);
  tell(player, prose(here.name), Ink::Yellow);
  tell(player, prose(here.text));
  for (std::size_t i = 0; i < creatures_.size(); ++i)
    if (creatures()[i].home == player.place && !creatures_[i].returnsAt)
      tell(player, capitalised(prose(creatures()[i].name)) + QStringLiteral(" is here."),
           Ink::Magenta);
  QStringList things;
  for (std::size_t i = 0; i < items_.size(); ++i)
    if (!items_[i].carrier && items_[i].place == player.place)
      things.append(prose(items()[i].name));
  if (const int lie = coinsAt(player.place); lie > 0)
    things.append(coinsInWords(lie));
  if (!things.isEmpty())
    tell(player, QStringLiteral("You see %1 here.").arg(joined(things)), Ink::Green);
  QStringList others;
  for (const auto& [id, other] : players_)
    if (other.stage == DemoPlayer::Stage::Playing && other.place == player.place &&
        &other != &player)
      others.append(other.name);
  if (!others.isEmpty())
    tell(player,
         joined(others) +
             (others.size() == 1 ? QStringLiteral(" is here.") : QStringLiteral(" are here.")),
         Ink::Cyan);
  QStringList exits;
  for (const Direction way : kDirections)
    if (neighbour(player.place, way))
      exits.append(QString::fromLatin1(directionName(way)));
  tell(player, QStringLiteral("Exits: %1.").arg(exits.join(QStringLiteral(", "))), Ink::White);
}

void DemoWorld::showMap(DemoPlayer& player, const QString&) {
  player.outgoing += map(player.place);
}

void DemoWorld::go(DemoPlayer& player, const QString& argument) {
  if (const auto way = directionOf(argument.toLower()))
    step(player, *way);
  else
    tell(player, prose("Go where? North, south, east, west, up or down; the signpost's other two "
                       "directions are closed."));
}

void DemoWorld::step(DemoPlayer& player, Direction way) {
  if (player.foe) {
    tell(player, prose("You cannot just stroll out of a fight. You could `flee`, though."));
    return;
  }
  const auto next = neighbour(player.place, way);
  if (!next) {
    tell(player, prose("That way the world has been left blank."));
    return;
  }
  player.resting = false;
  player.endurance.spend(1);
  tellOthers(
      player,
      QStringLiteral("%1 leaves %2.").arg(player.name, QString::fromLatin1(directionName(way))),
      Ink::Cyan);
  player.place = *next;
  tellOthers(player, QStringLiteral("%1 arrives.").arg(player.name), Ink::Cyan);
  showPlace(player);
}

void DemoWorld::say(DemoPlayer& player, const QString& argument) {
  if (argument.isEmpty()) {
    tell(player, prose("You say nothing, and say it well."));
    return;
  }
  player.outgoing += speech(QStringLiteral("You say: %1").arg(argument), Ink::Green);
  const QString heard =
      speech(QStringLiteral("%1 says: %2").arg(player.name, argument), Ink::Green);
  for (auto& [id, other] : players_)
    if (other.stage == DemoPlayer::Stage::Playing && other.place == player.place &&
        &other != &player)
      other.outgoing += heard;
}

void DemoWorld::get(DemoPlayer& player, const QString& argument) {
  const QString word = argument.toLower();
  if (int& lie = coinsAt(player.place); lie > 0 && isCoins(word)) {
    player.coins += lie;
    tell(player, QStringLiteral("You take %1.").arg(coinsInWords(lie)));
    tellOthers(player, QStringLiteral("%1 takes %2.").arg(player.name, coinsInWords(lie)),
               Ink::Cyan);
    lie = 0;
    return;
  }
  for (std::size_t i = 0; i < items_.size(); ++i) {
    ItemState& item = items_[i];
    if (item.carrier || item.place != player.place || !isCalled(items()[i].name, word))
      continue;
    item.carrier = player.id;
    const QString name = prose(items()[i].name);
    tell(player, QStringLiteral("You take %1.").arg(name));
    tellOthers(player, QStringLiteral("%1 takes %2.").arg(player.name, name), Ink::Cyan);
    return;
  }
  tell(player, word.isEmpty() ? prose("Get what?")
                              : prose("There is nothing of that name to pick up here."));
}

void DemoWorld::drop(DemoPlayer& player, const QString& argument) {
  const QString word = argument.toLower();
  if (player.coins > 0 && isCoins(word)) {
    const QString coins = coinsInWords(player.coins);
    coinsAt(player.place) += std::exchange(player.coins, 0);
    tell(player, QStringLiteral("You put down %1.").arg(coins));
    tellOthers(player, QStringLiteral("%1 puts down %2.").arg(player.name, coins), Ink::Cyan);
    return;
  }
  for (std::size_t i = 0; i < items_.size(); ++i) {
    ItemState& item = items_[i];
    if (item.carrier != player.id || !isCalled(items()[i].name, word))
      continue;
    item = {player.place, std::nullopt};
    const QString name = prose(items()[i].name);
    tell(player, QStringLiteral("You put down %1.").arg(name));
    tellOthers(player, QStringLiteral("%1 puts down %2.").arg(player.name, name), Ink::Cyan);
    return;
  }
  tell(player, word.isEmpty() ? prose("Drop what?") : prose("You carry nothing of that name."));
}

void DemoWorld::showInventory(DemoPlayer& player, const QString&) {
  QStringList things;
  for (std::size_t i = 0; i < items_.size(); ++i)
    if (items_[i].carrier == player.id)
      things.append(prose(items()[i].name));
  if (player.coins > 0)
    things.append(coinsInWords(player.coins));
  tell(player, things.isEmpty() ? prose("You carry nothing but good intentions.")
                                : QStringLiteral("You carry %1.").arg(joined(things)));
}

void DemoWorld::who(DemoPlayer& player, const QString&) {
  tell(player, prose("In town tonight:"), Ink::White);
  for (const auto& [id, other] : players_) {
    if (other.stage != DemoPlayer::Stage::Playing)
      continue;
    const int padding = std::max(22 - columns(other.name), 1);
    tell(player, QStringLiteral("  ") + other.name + QString(padding, u' ') +
                     prose(place(other.place).name));
  }
  tell(player, prose("  Bob                   Lantern Square, as ever"));
}

void DemoWorld::score(DemoPlayer& player, const QString&) {
  const auto carried = std::count_if(items_.begin(), items_.end(), [&player](const ItemState& i) {
    return i.carrier == player.id;
  });
  tell(player, QStringLiteral("%1, traveller").arg(player.name), Ink::White);
  tell(player, QStringLiteral("  places seen       %1 of %2\n"
                              "  creatures bested  %3\n"
                              "  things carried    %4 of %5\n"
                              "  copper coins      %6")
                   .arg(player.seen.size())
                   .arg(kPlaceCount)
                   .arg(player.bested)
                   .arg(carried)
                   .arg(items_.size())
                   .arg(player.coins));
  if (player.seen.size() == static_cast<std::size_t>(kPlaceCount))
    tell(player, prose("You have seen it all. It was pleased to be seen."), Ink::Yellow);
}

void DemoWorld::quit(DemoPlayer& player, const QString&) {
  tell(player, QStringLiteral("Farewell, %1. We will leave a light on.").arg(player.name),
       Ink::Yellow);
  tellOthers(player, QStringLiteral("%1 leaves the world.").arg(player.name), Ink::Cyan);
  removePlayer(player);
  player.stage = DemoPlayer::Stage::Leaving;
}

}  // namespace kelmora::demo
