#pragma once

#include <QRandomGenerator>
#include <array>
#include <map>
#include <span>
#include <vector>

#include "demo/DemoOptions.h"
#include "demo/DemoPlayer.h"
#include "demo/DemoText.h"
#include "demo/LineAssembler.h"

namespace kelmora::demo {

/// What the world asks of whoever carries its words. No call may lead back
/// into the world before it returns.
class DemoHost {
 public:
  virtual ~DemoHost() = default;
  /// One response: whole lines in UTF-8, to be sent in one piece.
  virtual void deliver(PlayerId to, const QByteArray& response) = 0;
  /// Send `lines` flood lines, then report DemoWorld::floodFinished().
  virtual void startFlood(PlayerId to, int lines) = 0;
  /// End a flood early; the number of lines it sent, or nothing where none ran.
  virtual std::optional<int> stopFlood(PlayerId to) = 0;
  /// The player said goodbye: close when everything is sent.
  virtual void hangUp(PlayerId who) = 0;
};

/// The rules: places, things, creatures and the players among them. Time
/// passes only by beat(). An unknown player id is ignored everywhere.
class DemoWorld {
 public:
  DemoWorld(const DemoOptions& options, DemoHost& host);
  Q_DISABLE_COPY_MOVE(DemoWorld)

  /// A new connection under an id of the host's choice, never used before:
  /// shows the title and asks for a name.
  void connectPlayer(PlayerId id);
  /// The connection is gone; what the player carried stays behind.
  void disconnectPlayer(PlayerId id);
  void receiveLine(PlayerId id, const QByteArray& line, LineCut cut = LineCut::No);
  void floodFinished(PlayerId id, int lines);
  /// One round passes: fights, rests, returns and Bob.
  void beat();

  /// The state of a player who is connected, else nothing.
  [[nodiscard]] const DemoPlayer* player(PlayerId id) const;

  struct Command {
    /// All its names, separated by blanks, the one to teach first.
    const char* words;
    const char* usage;
    const char* help;
    void (DemoWorld::*run)(DemoPlayer& player, const QString& argument);
  };
  [[nodiscard]] static std::span<const Command> commands();

 private:
  struct CreatureState {
    int hits;
    /// The beat at which it is back; unset while it is here.
    std::optional<qint64> returnsAt;
  };
  struct ItemState {
    PlaceId place;
    std::optional<PlayerId> carrier;
  };

  /// How many copper coins lie there.
  [[nodiscard]] int& coinsAt(PlaceId place) { return coins_.at(static_cast<std::size_t>(place)); }

  void takeName(DemoPlayer& player, const QString& typed);
  void obey(DemoPlayer& player, const QString& line);
  void removePlayer(DemoPlayer& player);
  void flush();

  static void tell(DemoPlayer& player, const QString& text, Ink ink = Ink::Plain);
  void tellOthers(const DemoPlayer& player, const QString& text, Ink ink = Ink::Plain);
  void tellPlace(PlaceId place, const QString& text, Ink ink, const DemoPlayer* except = nullptr);

  void look(DemoPlayer& player, const QString& argument);
  void showPlace(DemoPlayer& player);
  void showMap(DemoPlayer& player, const QString& argument);
  void go(DemoPlayer& player, const QString& argument);
  void step(DemoPlayer& player, Direction way);
  void say(DemoPlayer& player, const QString& argument);
  void get(DemoPlayer& player, const QString& argument);
  void drop(DemoPlayer& player, const QString& argument);
  void showInventory(DemoPlayer& player, const QString& argument);
  void who(DemoPlayer& player, const QString& argument);
  void score(DemoPlayer& player, const QString& argument);
  void kill(DemoPlayer& player, const QString& argument);
  void cast(DemoPlayer& player, const QString& argument);
  void flee(DemoPlayer& player, const QString& argument);
  void rest(DemoPlayer& player, const QString& argument);
  void showColours(DemoPlayer& player, const QString& argument);
  void beep(DemoPlayer& player, const QString& argument);
  void showLinks(DemoPlayer& player, const QString& argument);
  void showUnicode(DemoPlayer& player, const QString& argument);
  void hungry(DemoPlayer& player, const QString& argument);
  void bob(DemoPlayer& player, const QString& argument);
  void flood(DemoPlayer& player, const QString& argument);
  void showTutorial(DemoPlayer& player, const QString& argument);
  void help(DemoPlayer& player, const QString& argument);
  void quit(DemoPlayer& player, const QString& argument);

  void fightRound(DemoPlayer& player);
  void strike(DemoPlayer& player, int damage);
  void creatureBeaten(std::size_t creature, const DemoPlayer& victor);
  void carryToInn(DemoPlayer& player);
  void leaveFight(DemoPlayer& player);
  void restRound(DemoPlayer& player);
  void returnCreatures();
  void letBobSpeak();
  [[nodiscard]] std::optional<std::size_t> creatureHere(const DemoPlayer& player,
                                                        const QString& word) const;
  [[nodiscard]] int roll(int least, int most);

  DemoOptions options_;
  DemoHost& host_;
  QRandomGenerator dice_;
  std::map<PlayerId, DemoPlayer> players_;
  std::vector<CreatureState> creatures_;
  std::vector<ItemState> items_;
  std::array<int, kPlaceCount> coins_{};
  qint64 beat_ = 0;
  qint64 bobSpeaksAt_ = 0;
};

}  // namespace kelmora::demo
