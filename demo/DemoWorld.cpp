#include "demo/DemoWorld.h"

#include <algorithm>
#include <utility>

#include "demo/Shows.h"

namespace kelmora::demo {

namespace {

using demo::Ink;
using demo::prose;

constexpr int kLongestName = 20;

QString prompt(const DemoPlayer& player) {
  const auto pair = [](const char* name, Ink ink, const Points& points) {
    return paint(ink, QStringLiteral("%1: [ %2 / %3 ]")
                          .arg(QLatin1String(name))
                          .arg(points.now)
                          .arg(points.most));
  };
  return pair("hp", Ink::Red, player.hits) + QStringLiteral(", ") +
         pair("sp", Ink::Blue, player.spells) + QStringLiteral(", ") +
         pair("ep", Ink::Green, player.endurance) + QStringLiteral("\r\n");
}

bool isName(const QString& name) {
  return !name.isEmpty() && name.size() <= kLongestName &&
         std::all_of(name.begin(), name.end(), [](QChar c) { return c.isLetter(); });
}

QString asName(const QString& typed) {
  QString composed = typed.normalized(QString::NormalizationForm_C).toLower();
  if (composed.isEmpty())
    return composed;
  return composed.at(0).toUpper() + composed.sliced(1);
}

}  // namespace

DemoWorld::DemoWorld(const DemoOptions& options, DemoHost& host)
    : options_(options),
      host_(host),
      dice_(options.seed ? QRandomGenerator(*options.seed)
                         : QRandomGenerator(QRandomGenerator::global()->generate())) {
  for (const Creature& creature : creatures())
    creatures_.push_back({creature.hits, std::nullopt});
  for (const Item& item : items())
    items_.push_back({item.home, std::nullopt});
}

void DemoWorld::connectPlayer(PlayerId id) {
  const auto [position, fresh] = players_.try_emplace(id, id);
  if (!fresh)
    return;
  position->second.outgoing = welcome();
  flush();
}

const DemoPlayer* DemoWorld::player(PlayerId id) const {
  const auto found = players_.find(id);
  return found == players_.end() ? nullptr : &found->second;
}

void DemoWorld::disconnectPlayer(PlayerId id) {
  const auto found = players_.find(id);
  if (found == players_.end())
    return;
  DemoPlayer& player = found->second;
  if (player.stage == DemoPlayer::Stage::Playing) {
    tellOthers(player, QStringLiteral("%1 goes out like a candle.").arg(player.name), Ink::Cyan);
    removePlayer(player);
  }
  players_.erase(found);
  flush();
}

void DemoWorld::receiveLine(PlayerId id, const QByteArray& line, LineCut cut) {
  const auto found = players_.find(id);
  if (found == players_.end())
    return;
  DemoPlayer& player = found->second;
  if (cut == LineCut::Yes)
    tell(player,
         prose("That was a mouthful! The town clerk wrote down the first %1 bytes of it.")
             .arg(LineAssembler::kMaxLine),
         Ink::Magenta);
  const QString words = cleaned(line);
  if (player.stage == DemoPlayer::Stage::AskedForName) {
    takeName(player, words);
  } else {
    player.promptDue = true;
    obey(player, words);
  }
  flush();
}

void DemoWorld::takeName(DemoPlayer& player, const QString& typed) {
  const QString name = asName(typed);
  if (!isName(name)) {
    tell(player,
         prose("A name here is 1 to 20 letters and nothing else. By what name shall we know you?"),
         Ink::White);
    return;
  }
  const bool taken =
      name == QLatin1String("Bob") ||
      std::any_of(players_.begin(), players_.end(), [&](auto& p) { return p.second.name == name; });
  if (taken) {
    tell(player,
         QStringLiteral("There is a %1 here already, and one is plenty. By what other name "
                        "shall we know you?")
             .arg(name),
         Ink::White);
    return;
  }
  player.name = name;
  player.stage = DemoPlayer::Stage::Playing;
  player.promptDue = true;
  tell(player, QStringLiteral("Welcome to Kelmora, %1.").arg(name), Ink::Yellow);
  tell(player, prose("New here? `tutorial` shows you around the client, `help` around the "
                     "world. Those who simply start walking do well, too.\n"));
  showPlace(player);
  tellOthers(player, QStringLiteral("%1 arrives.").arg(name), Ink::Cyan);
}

void DemoWorld::removePlayer(DemoPlayer& player) {
  leaveFight(player);
  for (ItemState& item : items_)
    if (item.carrier == player.id)
      item = {player.place, std::nullopt};
  coinsAt(player.place) += std::exchange(player.coins, 0);
}

void DemoWorld::floodFinished(PlayerId id, int lines) {
  const auto found = players_.find(id);
  if (found == players_.end())
    return;
  tell(found->second, QStringLiteral("flood: %1 lines sent").arg(lines));
  found->second.flooding = false;
  found->second.promptDue = true;
  flush();
}

void DemoWorld::beat() {
  ++beat_;
  for (auto& [id, player] : players_) {
    if (player.foe)
      fightRound(player);
    else if (player.resting)
      restRound(player);
  }
  returnCreatures();
  letBobSpeak();
  flush();
}

// Everything that one event told one player leaves as one delivery: a prompt
// that reaches the client in two pieces is not recognised there.
void DemoWorld::flush() {
  for (auto it = players_.begin(); it != players_.end();) {
    DemoPlayer& player = it->second;
    if (player.promptDue && player.stage == DemoPlayer::Stage::Playing)
      player.outgoing += prompt(player);
    player.promptDue = false;
    if (!player.outgoing.isEmpty())
      host_.deliver(player.id, player.outgoing.toUtf8());
    player.outgoing.clear();
    if (player.stage == DemoPlayer::Stage::Leaving) {
      host_.hangUp(player.id);
      it = players_.erase(it);
    } else {
      ++it;
    }
  }
}

void DemoWorld::tell(DemoPlayer& player, const QString& text, Ink ink) {
  player.outgoing += paragraph(text, ink);
}

void DemoWorld::tellOthers(const DemoPlayer& player, const QString& text, Ink ink) {
  tellPlace(player.place, text, ink, &player);
}

void DemoWorld::tellPlace(PlaceId place, const QString& text, Ink ink, const DemoPlayer* except) {
  for (auto& [id, player] : players_)
    if (player.stage == DemoPlayer::Stage::Playing && player.place == place && &player != except)
      tell(player, text, ink);
}

int DemoWorld::roll(int least, int most) {
  return dice_.bounded(least, most + 1);
}

}  // namespace kelmora::demo
