#include <QRegularExpression>
#include <QTest>
#include <deque>
#include <map>
#include <set>

#include "demo/DemoWorld.h"
#include "demo/Shows.h"
#include "demo/Tutorial.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::demo;

using demo::Direction;
using demo::PlaceId;

namespace {

/// Remembers every delivery, one entry each.
class RecordingHost : public DemoHost {
 public:
  void deliver(PlayerId to, const QByteArray& response) override { heard[to].append(response); }
  void startFlood(PlayerId, int lines) override { flood = lines; }
  std::optional<int> stopFlood(PlayerId) override { return std::exchange(flood, std::nullopt); }
  void hangUp(PlayerId who) override { hungUp.insert(who); }

  std::map<PlayerId, QByteArrayList> heard;
  std::optional<int> flood;
  std::set<PlayerId> hungUp;
};

DemoOptions quiet() {
  DemoOptions options;
  options.chatter = NpcChatter::Off;
  options.seed = 7;
  options.creatureReturnRounds = 5;
  return options;
}

QByteArray withoutSequences(const QByteArray& bytes) {
  static const QRegularExpression sequence(QStringLiteral("\x1b\\[[0-9;]*m"));
  return QString::fromUtf8(bytes).remove(sequence).toUtf8();
}

const QRegularExpression& promptForm() {
  static const QRegularExpression form(QStringLiteral(
      "^hp: \\[ \\d+ / \\d+ \\], sp: \\[ \\d+ / \\d+ \\], ep: \\[ \\d+ / \\d+ \\]$"));
  return form;
}

/// A world with players in it, and what they hear.
struct Stage {
  explicit Stage(const DemoOptions& options = quiet()) : world(options, host) {}

  PlayerId join(const char* name) {
    const PlayerId id{next++};
    world.connectPlayer(id);
    world.receiveLine(id, name);
    return id;
  }
  /// What one line brings this player, colours removed.
  QByteArray type(PlayerId id, const QByteArray& line) {
    const qsizetype before = host.heard[id].size();
    world.receiveLine(id, line);
    return withoutSequences(host.heard[id].sliced(before).join());
  }
  QByteArray heardSince(PlayerId id, qsizetype from) {
    return withoutSequences(host.heard[id].sliced(from).join());
  }
  /// Walks the shortest way.
  void walk(PlayerId id, PlaceId to);

  RecordingHost host;
  DemoWorld world;
  quint64 next = 1;
};

std::map<PlaceId, QByteArrayList> waysFrom(PlaceId from) {
  std::map<PlaceId, QByteArrayList> ways{{from, {}}};
  std::deque<PlaceId> open{from};
  while (!open.empty()) {
    const PlaceId here = open.front();
    open.pop_front();
    for (const Direction way : demo::kDirections) {
      const auto next = demo::neighbour(here, way);
      if (!next || ways.contains(*next))
        continue;
      ways[*next] = ways[here] + QByteArrayList{demo::directionName(way)};
      open.push_back(*next);
    }
  }
  return ways;
}

void Stage::walk(PlayerId id, PlaceId to) {
  const QByteArrayList steps = waysFrom(world.player(id)->place).at(to);
  for (const QByteArray& step : steps)
    world.receiveLine(id, step);
}

PlaceId placeAt(int index) {
  return static_cast<PlaceId>(index);
}

}  // namespace

class TestDemoWorld : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aNameIsLettersOnly_data();
  void aNameIsLettersOnly();
  void aNameIsTakenOnce();
  void everyPlaceIsReachable();
  void everyExitLeadsBack();
  void everyPlaceIsDescribed_data();
  void everyPlaceIsDescribed();
  void theMapShowsEveryPlaceAndTheReader();
  void everyCommandAnswers_data();
  void everyCommandAnswers();
  void everyNameOfACommandWorks();
  void everyResponseIsTidy();
  void aResponseIsOneDeliveryThatEndsWithThePrompt();
  void walking_data();
  void walking();
  void thingsCanBeTakenAndDropped();
  void whatALeaverCarriedStaysBehind();
  void playersHearEachOther();
  void nobodyCanForgeALineOfTheWorld();
  void aFightCostsPointsAndEnds();
  void aBeatenCreatureLeavesCoins();
  void aBeatenCreatureReturns();
  void everyCreatureCanBeFought();
  void losingAFightEndsInTheInn();
  void fleeingEndsAFight();
  void aFightIsNotWalkedOutOf();
  void twoPlayersFightTheSameCreature();
  void leavingInMidFightHealsTheCreature();
  void spellsCostSpellPoints();
  void restingGivesEverythingBack();
  void bobSaysHello();
  void bobSpeaksUpNowAndThenInTheSquareOnly();
  void hungerAndTheBellAreExact();
  void linksEndWhereTheirColourEnds();
  void floodsAreBounded_data();
  void floodsAreBounded();
  void theTutorialGoesThroughItsChapters();
  void quittingSaysGoodbyeAndHangsUp();
  void harmlessWhateverIsTyped_data();
  void harmlessWhateverIsTyped();
  void strangersAreIgnored();
  void numbers_data();
  void numbers();
};

void TestDemoWorld::aNameIsLettersOnly_data() {
  QTest::addColumn<QByteArray>("typed");
  QTest::addColumn<QString>("name");
  QTest::newRow("a plain name") << QByteArray("Ada") << QStringLiteral("Ada");
  QTest::newRow("a shouted name is lowered") << QByteArray("ADA") << QStringLiteral("Ada");
  QTest::newRow("blanks around it do not count") << QByteArray("  ada ") << QStringLiteral("Ada");
  QTest::newRow("one letter is a name") << QByteArray("x") << QStringLiteral("X");
  QTest::newRow("twenty letters are a name")
      << QByteArray(20, 'a') << QStringLiteral("A") + QString(19, u'a');
  QTest::newRow("twenty-one letters are not") << QByteArray(21, 'a') << QString();
  QTest::newRow("letters of any script") << QByteArray("жанна") << QStringLiteral("Жанна");
  QTest::newRow("nothing is no name") << QByteArray() << QString();
  QTest::newRow("digits are no letters") << QByteArray("ada9") << QString();
  QTest::newRow("two words are no name") << QByteArray("ada b") << QString();
  QTest::newRow("control bytes are dropped") << QByteArray(
                                                    "a\x1b"
                                                    "da\x07")
                                             << QStringLiteral("Ada");
  QTest::newRow("invalid UTF-8 is no letter") << QByteArray("a\xC3") << QString();
}

void TestDemoWorld::aNameIsLettersOnly() {
  QFETCH(QByteArray, typed);
  QFETCH(QString, name);
  Stage stage;
  const PlayerId id = stage.join(typed.constData());
  const DemoPlayer* player = stage.world.player(id);
  QVERIFY(player != nullptr);
  QCOMPARE(player->name, name);
  QCOMPARE(player->stage,
           name.isEmpty() ? DemoPlayer::Stage::AskedForName : DemoPlayer::Stage::Playing);
  if (name.isEmpty()) {
    QVERIFY(stage.type(id, "Ada").contains("Welcome to Kelmora, Ada."));
  }
}

void TestDemoWorld::aNameIsTakenOnce() {
  Stage stage;
  stage.join("Ada");
  const PlayerId second = stage.join("ADA");
  QCOMPARE(stage.world.player(second)->stage, DemoPlayer::Stage::AskedForName);
  QVERIFY(stage.type(second, "bob").contains("There is a Bob here already"));
  QVERIFY(stage.type(second, "Eve").contains("Welcome to Kelmora, Eve."));

  stage.world.disconnectPlayer(PlayerId{1});
  const PlayerId third = stage.join("ada");
  QCOMPARE(stage.world.player(third)->stage, DemoPlayer::Stage::Playing);
}

void TestDemoWorld::everyPlaceIsReachable() {
  QCOMPARE(static_cast<int>(waysFrom(demo::kStart).size()), demo::kPlaceCount);
}

void TestDemoWorld::everyExitLeadsBack() {
  for (int i = 0; i < demo::kPlaceCount; ++i) {
    int exits = 0;
    for (const Direction way : demo::kDirections) {
      const auto next = demo::neighbour(placeAt(i), way);
      if (!next)
        continue;
      ++exits;
      QVERIFY(*next != placeAt(i));
      bool back = false;
      for (const Direction there : demo::kDirections)
        back = back || demo::neighbour(*next, there) == placeAt(i);
      QVERIFY2(back, demo::place(placeAt(i)).name);
    }
    QVERIFY2(exits > 0, demo::place(placeAt(i)).name);
  }
  QCOMPARE(demo::neighbour(PlaceId::Square, Direction::North), PlaceId::Gate);
  QCOMPARE(demo::neighbour(PlaceId::Gate, Direction::South), PlaceId::Square);
}

void TestDemoWorld::everyPlaceIsDescribed_data() {
  QTest::addColumn<int>("index");
  for (int i = 0; i < demo::kPlaceCount; ++i)
    QTest::newRow(demo::place(placeAt(i)).name) << i;
}

void TestDemoWorld::everyPlaceIsDescribed() {
  QFETCH(int, index);
  const demo::Place& place = demo::place(placeAt(index));
  QCOMPARE(place.id, placeAt(index));

  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.walk(ada, place.id);
  const QByteArray seen = stage.type(ada, "look");
  QVERIFY(seen.startsWith(QByteArray(place.name) + "\r\n"));
  for (const Direction way : demo::kDirections) {
    const QByteArray exits = seen.mid(seen.indexOf("Exits: "));
    QCOMPARE(exits.contains(demo::directionName(way)), demo::neighbour(place.id, way).has_value());
  }
  for (const demo::Creature& creature : demo::creatures())
    QCOMPARE(seen.contains(QByteArray(creature.name).mid(2) + " is here."),
             creature.home == place.id);
  for (const demo::Item& item : demo::items())
    QCOMPARE(seen.contains(QByteArray("You see ") + item.name), item.home == place.id);
  for (const demo::Scenery& thing : demo::scenery())
    QCOMPARE(!stage.type(ada, QByteArray("look ") + thing.word).startsWith("You look for it"),
             thing.where == place.id);
}

void TestDemoWorld::theMapShowsEveryPlaceAndTheReader() {
  for (int here = 0; here < demo::kPlaceCount; ++here) {
    const QByteArray map = withoutSequences(demo::map(placeAt(here)).toUtf8());
    for (int there = 0; there < demo::kPlaceCount; ++there) {
      const QByteArray name = demo::place(placeAt(there)).name;
      QCOMPARE(map.count("[" + name + "]"), there == here ? 0 : 1);
      QCOMPARE(map.count("*" + name + "*"), there == here ? 1 : 0);
    }
  }
}

void TestDemoWorld::everyCommandAnswers_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<QByteArray>("answer");
  const auto row = [](const char* name, const char* line, const char* answer) {
    QTest::newRow(name) << QByteArray(line) << QByteArray(answer);
  };
  row("look shows the place", "look", "Lantern Square\r\n");
  row("look at something", "look at fountain", "The water says");
  row("look at a thing lying here", "look button", "It has an anchor on it");
  row("look at another player", "look eve", "Eve looks like");
  row("look at oneself", "look ada", "You look well.");
  row("look at nothing there", "look unicorn", "You look for it here and there");
  row("the map", "map", "*Lantern Square*");
  row("go somewhere", "go north", "North Gate\r\n");
  row("go nowhere", "go", "Go where?");
  row("go into a wall", "up", "That way the world has been left blank.");
  row("say something", "say hello  there", "You say: hello  there\r\n");
  row("say it short", "'hello", "You say: hello\r\n");
  row("say nothing", "say", "You say nothing, and say it well.");
  row("get something", "get button", "You take a brass button.");
  row("get nothing", "get", "Get what?");
  row("get what is not there", "get moon", "There is nothing of that name to pick up here.");
  row("drop nothing", "drop", "Drop what?");
  row("drop what one has not", "drop moon", "You carry nothing of that name.");
  row("an empty inventory", "inventory", "You carry nothing but good intentions.");
  row("who", "who", "  Ada                   Lantern Square\r\n");
  row("score", "score", "  places seen       1 of 16\r\n");
  row("kill nobody", "kill", "Kill what?");
  row("kill somebody who is elsewhere", "kill orc", "There is nobody of that name to fight here.");
  row("kill Bob", "kill bob", "Bob looks at you so kindly");
  row("cast nothing", "cast", "You know two spells: spark (6 spell points) and mend (10).");
  row("cast at nobody", "cast spark", "You are not in a fight");
  row("flee from nothing", "flee", "There is nothing to flee from");
  row("rest when rested", "rest", "You could not be any fresher");
  row("bob", "bob", "Bob tells you: hello traveller\r\n");
  row("tutorial", "tutorial", "The tutorial has these chapters:\r\n");
  row("colours", "colours", "black red green yellow blue magenta cyan white\r\n");
  row("link", "link", "http://kelmora.example/guide\r\n");
  row("unicode", "unicode", "Фонарь горит.\r\n");
  row("beep", "beep", "ding!\x07\r\n");
  row("hungry", "hungry", "You are hungry.\r\n");
  row("flood of nothing", "flood", "How high a flood?");
  row("help", "help", "  get THING          pick something up, such as coins after a fight\r\n");
  row("quit", "quit", "Farewell, Ada.");
  row("a word nobody knows", "xyzzy", "Nobody in Kelmora knows how to do that.");
  row("capitals are the same", "LOOK", "Lantern Square\r\n");
  row("blanks around it do not count", "   look   ", "Lantern Square\r\n");
  row("an empty line brings the prompt alone", "", "hp: [ 120 / 120 ]");
}

void TestDemoWorld::everyCommandAnswers() {
  QFETCH(QByteArray, line);
  QFETCH(QByteArray, answer);
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.join("Eve");
  const QByteArray heard = stage.type(ada, line);
  QVERIFY2(heard.contains(answer), heard.constData());
}

void TestDemoWorld::everyNameOfACommandWorks() {
  for (const DemoWorld::Command& command : DemoWorld::commands()) {
    for (const QByteArray& word : QByteArray(command.words).split(' ')) {
      Stage stage;
      const PlayerId ada = stage.join("Ada");
      const QByteArray heard = stage.type(ada, word + " 1");
      QVERIFY2(!heard.contains("Nobody in Kelmora knows"), word.constData());
      QVERIFY2(!heard.isEmpty() || stage.host.flood.has_value(), word.constData());
    }
  }
}

// Everything the world can say, as the client will see it.
void TestDemoWorld::everyResponseIsTidy() {
  DemoOptions options = quiet();
  options.chatter = NpcChatter::On;
  Stage stage(options);
  const PlayerId ada = stage.join("Ada");
  const PlayerId eve = stage.join("Eve");
  stage.type(eve, "say " + QByteArray(900, 'x'));
  stage.type(eve, "say " + QByteArray("long words, many words; ").repeated(40));
  for (int i = 0; i < demo::kPlaceCount; ++i) {
    stage.walk(ada, placeAt(i));
    for (const char* line : {"look", "map", "score", "who", "kill bob", "cast", "get key"})
      stage.type(ada, line);
  }
  for (const DemoWorld::Command& command : DemoWorld::commands())
    if (QByteArray(command.words) != "quit")
      stage.type(ada, QByteArray(command.words).split(' ').first());
  for (std::size_t n = 1; n <= demo::tutorial().size(); ++n)
    stage.type(ada, "tutorial " + QByteArray::number(static_cast<int>(n)));
  stage.walk(ada, PlaceId::Gate);
  stage.type(ada, "kill straw");
  for (int i = 0; i < 300; ++i)
    stage.world.beat();

  // A run of blanks, a sequence and another blank: a browser shows an odd run
  // and the blank behind it as one blank fewer.
  static const QRegularExpression splitBlanks(
      QStringLiteral("(?<! )(?:  )* (?:\x1b\\[[0-9;]*m)+ "));
  for (const auto& [id, responses] : stage.host.heard) {
    for (const QByteArray& response : responses) {
      QVERIFY2(response.endsWith("\r\n"), response.constData());
      QCOMPARE(response.count('\n'), response.count("\r\n"));
      QVERIFY2(!QString::fromUtf8(response).contains(splitBlanks), response.constData());
      QVERIFY2(!response.contains('<') && !response.contains('>'), response.constData());
      const qsizetype last = response.lastIndexOf('\x1b');
      QVERIFY2(last < 0 || response.sliced(last).startsWith("\x1b[0m"), response.constData());
      for (const QByteArray& line : withoutSequences(response).split('\n'))
        QVERIFY2(demo::columns(QString::fromUtf8(line.chopped(line.isEmpty() ? 0 : 1))) <= 78,
                 line.constData());
      // Several parameters in one sequence are for the 256 colours only.
      static const QRegularExpression piled(QStringLiteral("\x1b\\[(?![34]8;5;\\d+m)\\d*;"));
      QVERIFY2(!QString::fromUtf8(response).contains(piled), response.constData());
    }
  }
  QVERIFY(stage.host.heard[eve].size() > 5);
}

void TestDemoWorld::aResponseIsOneDeliveryThatEndsWithThePrompt() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  for (const char* line : {"look", "say hello", "", "xyzzy", "help", "n", "kill straw"}) {
    const qsizetype before = stage.host.heard[ada].size();
    stage.world.receiveLine(ada, line);
    QCOMPARE(stage.host.heard[ada].size(), before + 1);
    const QByteArrayList lines = withoutSequences(stage.host.heard[ada].last()).split('\n');
    QVERIFY(lines.last().isEmpty());
    QVERIFY(
        promptForm().match(QString::fromUtf8(lines.at(lines.size() - 2).chopped(1))).hasMatch());
  }
  const qsizetype before = stage.host.heard[ada].size();
  stage.world.beat();
  QCOMPARE(stage.host.heard[ada].size(), before + 1);
  const QByteArrayList lines = withoutSequences(stage.host.heard[ada].last()).split('\n');
  QVERIFY(promptForm().match(QString::fromUtf8(lines.at(lines.size() - 2).chopped(1))).hasMatch());
  QVERIFY(stage.type(ada, "flee").endsWith("ep: [ 71 / 80 ]\r\n"));
}

void TestDemoWorld::walking_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<int>("place");
  const auto row = [](const char* line, PlaceId place) {
    QTest::addRow("%s", line) << QByteArray(line) << static_cast<int>(place);
  };
  row("n", PlaceId::Gate);
  row("north", PlaceId::Gate);
  row("go n", PlaceId::Gate);
  row("GO NORTH", PlaceId::Gate);
  row("s", PlaceId::Harbour);
  row("south", PlaceId::Harbour);
  row("e", PlaceId::Lane);
  row("east", PlaceId::Lane);
  row("w", PlaceId::Heron);
  row("west", PlaceId::Heron);
  row("u", PlaceId::Square);
  row("down", PlaceId::Square);
  row("go away", PlaceId::Square);
}

void TestDemoWorld::walking() {
  QFETCH(QByteArray, line);
  QFETCH(int, place);
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.world.receiveLine(ada, line);
  QCOMPARE(stage.world.player(ada)->place, placeAt(place));
  stage.walk(ada, PlaceId::Heron);
  stage.world.receiveLine(ada, "u");
  QCOMPARE(stage.world.player(ada)->place, PlaceId::Loft);
  stage.world.receiveLine(ada, "d");
  stage.world.receiveLine(ada, "down");
  QCOMPARE(stage.world.player(ada)->place, PlaceId::Cellar);
}

void TestDemoWorld::thingsCanBeTakenAndDropped() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const PlayerId eve = stage.join("Eve");
  stage.world.receiveLine(ada, "take the brass button");
  QVERIFY(stage.host.heard[eve].last().contains("Ada takes a brass button."));
  QVERIFY(stage.type(eve, "get button").contains("There is nothing of that name"));
  QVERIFY(stage.type(ada, "i").contains("You carry a brass button."));
  stage.walk(ada, PlaceId::Lane);
  stage.world.receiveLine(ada, "get candle");
  QVERIFY(stage.type(ada, "i").contains("You carry a brass button and a candle stub."));
  QVERIFY(stage.type(ada, "drop button").contains("You put down a brass button."));
  QVERIFY(stage.type(ada, "look").contains("You see a brass button here."));
  QVERIFY(stage.type(ada, "i").contains("You carry a candle stub."));
}

void TestDemoWorld::whatALeaverCarriedStaysBehind() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.world.receiveLine(ada, "get button");
  stage.walk(ada, PlaceId::Shop);
  stage.world.receiveLine(ada, "get jar");
  stage.world.disconnectPlayer(ada);
  const PlayerId eve = stage.join("Eve");
  stage.walk(eve, PlaceId::Shop);
  QVERIFY(stage.type(eve, "look").contains("You see a brass button and a jar of moonlight here."));
}

void TestDemoWorld::playersHearEachOther() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const PlayerId eve = stage.join("Eve");
  const auto adaHears = [&](const QByteArray& line) {
    const qsizetype before = stage.host.heard[ada].size();
    stage.world.receiveLine(eve, line);
    return stage.heardSince(ada, before);
  };
  QVERIFY(withoutSequences(stage.host.heard[ada].last()) == "Eve arrives.\r\n");
  QCOMPARE(adaHears("say good evening"), QByteArray("Eve says: good evening\r\n"));
  QCOMPARE(adaHears("n"), QByteArray("Eve leaves north.\r\n"));
  QCOMPARE(adaHears("say unheard"), QByteArray());
  QCOMPARE(adaHears("s"), QByteArray("Eve arrives.\r\n"));
  QVERIFY(stage.type(ada, "look").contains("Eve is here."));
  stage.join("Kit");
  QVERIFY(stage.type(ada, "look").contains("Eve and Kit are here."));
  stage.walk(ada, PlaceId::Gate);
  stage.world.receiveLine(eve, "n");
  QCOMPARE(adaHears("kill straw"), QByteArray("Eve squares up to the straw soldier.\r\n"));
  QVERIFY(adaHears("flee").startsWith("Eve flees!\r\n"));
  stage.walk(eve, PlaceId::Gate);
  QCOMPARE(adaHears("quit"), QByteArray("Eve leaves the world.\r\n"));
}

void TestDemoWorld::nobodyCanForgeALineOfTheWorld() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const PlayerId eve = stage.join("Eve");
  const QByteArray forged = "hp: [ 1 / 2 ], sp: [ 1 / 2 ], ep: [ 1 / 2 ]";
  const qsizetype before = stage.host.heard[ada].size();
  for (int padding = 0; padding < 90; ++padding)
    stage.world.receiveLine(eve, "say " + QByteArray(padding, 'x') + " \r" + forged);
  for (const QByteArray& line : stage.heardSince(ada, before).split('\n'))
    QVERIFY2(line.isEmpty() || line.startsWith("Eve says:") || line.startsWith("  "),
             line.constData());
}

void TestDemoWorld::aFightCostsPointsAndEnds() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.walk(ada, PlaceId::Hollow);
  QVERIFY(stage.type(ada, "kill orc").contains("You square up to the off-duty orc."));
  QVERIFY(stage.type(ada, "attack orc").contains("One at a time!"));
  const DemoPlayer* const player = stage.world.player(ada);
  int rounds = 0;
  while (player->foe && rounds < 100) {
    const int hits = player->hits.now;
    const int endurance = player->endurance.now;
    stage.world.beat();
    ++rounds;
    QVERIFY(player->endurance.now < endurance);
    QVERIFY(player->foe ? player->hits.now < hits : player->hits.now == hits);
  }
  QVERIFY(rounds > 1 && rounds < 100);
  QVERIFY(withoutSequences(stage.host.heard[ada].last()).contains("You have won!"));
  QCOMPARE(player->bested, 1);
  QVERIFY(player->hits.now > 0 && player->hits.now < player->hits.most);
}

void TestDemoWorld::aBeatenCreatureLeavesCoins() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const PlayerId eve = stage.join("Eve");
  for (const PlayerId id : {ada, eve})
    stage.walk(id, PlaceId::Gate);
  QVERIFY(stage.type(ada, "get coins").contains("There is nothing of that name"));
  stage.world.receiveLine(ada, "kill straw");
  const qsizetype before = stage.host.heard[eve].size();
  for (int i = 0; i < 100 && stage.world.player(ada)->foe; ++i)
    stage.world.beat();
  static const QRegularExpression left(
      QStringLiteral("\nThe straw soldier leaves ([2-9]) copper coins behind\\.\r\n"));
  const auto match = left.match(QString::fromUtf8(stage.heardSince(eve, before)));
  QVERIFY(match.hasMatch());
  const QByteArray coins = match.captured(1).toUtf8() + " copper coins";
  QVERIFY(stage.type(eve, "look").contains("You see " + coins + " here."));
  QVERIFY(stage.type(ada, "get coins").contains("You take " + coins + "."));
  QVERIFY(stage.type(eve, "get coins").contains("There is nothing of that name"));
  QVERIFY(stage.type(ada, "score").contains("copper coins      " + match.captured(1).toUtf8()));
  QVERIFY(stage.type(ada, "inventory").contains("You carry " + coins + "."));
  QVERIFY(stage.type(ada, "drop coins").contains("You put down " + coins + "."));
  QVERIFY(stage.type(ada, "drop coins").contains("You carry nothing of that name."));
  stage.world.receiveLine(ada, "take copper coins");
  stage.world.disconnectPlayer(ada);
  QVERIFY(stage.type(eve, "look").contains("You see " + coins + " here."));
}

void TestDemoWorld::aBeatenCreatureReturns() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.walk(ada, PlaceId::Gate);
  stage.world.receiveLine(ada, "kill straw");
  for (int i = 0; i < 100 && stage.world.player(ada)->foe; ++i)
    stage.world.beat();
  QVERIFY(stage.type(ada, "kill straw").contains("There is nobody of that name"));
  const qsizetype before = stage.host.heard[ada].size();
  for (int i = 0; i < quiet().creatureReturnRounds; ++i) {
    QVERIFY(!stage.heardSince(ada, before).contains("takes up his post"));
    stage.world.beat();
  }
  QVERIFY(stage.heardSince(ada, before).contains("takes up his post"));
  QVERIFY(stage.type(ada, "kill straw").contains("You square up"));
}

void TestDemoWorld::everyCreatureCanBeFought() {
  for (const demo::Creature& creature : demo::creatures()) {
    Stage stage;
    const PlayerId ada = stage.join("Ada");
    stage.walk(ada, creature.home);
    const QByteArray word = QByteArray(creature.name).split(' ').last();
    QVERIFY2(stage.type(ada, "kill " + word).contains("You square up"), word.constData());
    for (int i = 0; i < 200 && stage.world.player(ada)->foe; ++i)
      stage.world.beat();
    QVERIFY2(!stage.world.player(ada)->foe, word.constData());
  }
}

void TestDemoWorld::losingAFightEndsInTheInn() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const DemoPlayer* const player = stage.world.player(ada);
  stage.walk(ada, PlaceId::Lighthouse);
  const PlayerId eve = stage.join("Eve");
  stage.walk(eve, PlaceId::Lighthouse);
  // One fight after the other, without a rest, until one is lost.
  for (int i = 0; i < 500 && player->place == PlaceId::Lighthouse; ++i) {
    if (!player->foe)
      stage.world.receiveLine(ada, "kill keeper");
    stage.world.beat();
  }
  QCOMPARE(player->place, demo::kInn);
  QVERIFY(!player->foe);
  QCOMPARE(player->hits.now, 40);
  const QByteArray last = withoutSequences(stage.host.heard[ada].last());
  QVERIFY(last.contains("You wake up."));
  QVERIFY(last.contains("hp: [ 40 / 120 ], "));
  QVERIFY(
      withoutSequences(stage.host.heard[eve].last()).contains("Ada is carried off to the inn."));
}

void TestDemoWorld::fleeingEndsAFight() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.walk(ada, PlaceId::Hollow);
  stage.world.receiveLine(ada, "kill orc");
  stage.world.beat();
  stage.world.receiveLine(ada, "flee");
  QCOMPARE(stage.world.player(ada)->place, PlaceId::WoodsEdge);
  QVERIFY(!stage.world.player(ada)->foe);
  const qsizetype before = stage.host.heard[ada].size();
  stage.world.beat();
  QCOMPARE(stage.host.heard[ada].size(), before);
}

void TestDemoWorld::aFightIsNotWalkedOutOf() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.walk(ada, PlaceId::Gate);
  stage.world.receiveLine(ada, "kill straw");
  QVERIFY(stage.type(ada, "s").contains("You cannot just stroll out of a fight."));
  QVERIFY(stage.type(ada, "rest").contains("In the middle of a fight?"));
  QCOMPARE(stage.world.player(ada)->place, PlaceId::Gate);
  QVERIFY(stage.world.player(ada)->foe.has_value());
}

void TestDemoWorld::twoPlayersFightTheSameCreature() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const PlayerId eve = stage.join("Eve");
  for (const PlayerId id : {ada, eve}) {
    stage.walk(id, PlaceId::Gate);
    stage.world.receiveLine(id, "kill straw");
  }
  for (int i = 0; i < 100 && stage.world.player(ada)->foe; ++i)
    stage.world.beat();
  QVERIFY(!stage.world.player(eve)->foe);
  QCOMPARE(stage.world.player(ada)->bested, 1);
  QCOMPARE(stage.world.player(eve)->bested, 1);
}

void TestDemoWorld::leavingInMidFightHealsTheCreature() {
  const auto roundsToWin = [](bool helpedByALeaver) {
    Stage stage;
    if (helpedByALeaver) {
      const PlayerId eve = stage.join("Eve");
      stage.walk(eve, PlaceId::Hollow);
      stage.world.receiveLine(eve, "kill orc");
      for (int i = 0; i < 4; ++i)
        stage.world.beat();
      stage.world.disconnectPlayer(eve);
    }
    const PlayerId ada = stage.join("Ada");
    stage.walk(ada, PlaceId::Hollow);
    stage.world.receiveLine(ada, "kill orc");
    int rounds = 0;
    for (; rounds < 100 && stage.world.player(ada)->foe; ++rounds)
      stage.world.beat();
    return rounds;
  };
  // A hit takes eleven of the orc's fifty at most, so five rounds it must be.
  QVERIFY(roundsToWin(false) >= 5);
  QVERIFY(roundsToWin(true) >= 5);
}

void TestDemoWorld::spellsCostSpellPoints() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const DemoPlayer* const player = stage.world.player(ada);
  stage.walk(ada, PlaceId::Lighthouse);
  stage.world.receiveLine(ada, "kill keeper");
  stage.world.beat();
  const int hurt = player->hits.now;
  QVERIFY(hurt < 120);
  QVERIFY(stage.type(ada, "cast spark").contains("A spark leaps"));
  QCOMPARE(player->spells.now, 34);
  QVERIFY(stage.type(ada, "cast mend").contains("good news"));
  QCOMPARE(player->spells.now, 24);
  QCOMPARE(player->hits.now, 120);
  stage.world.receiveLine(ada, "cast mend");
  stage.world.receiveLine(ada, "cast mend");
  QCOMPARE(player->spells.now, 4);
  QVERIFY(stage.type(ada, "cast spark").contains("You reach for the words"));
  QCOMPARE(player->spells.now, 4);
}

void TestDemoWorld::restingGivesEverythingBack() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const DemoPlayer* const player = stage.world.player(ada);
  stage.walk(ada, PlaceId::Hollow);
  stage.world.receiveLine(ada, "kill orc");
  for (int i = 0; i < 3; ++i)
    stage.world.beat();
  stage.world.receiveLine(ada, "cast spark");
  if (player->foe)
    stage.world.receiveLine(ada, "flee");
  QVERIFY(stage.type(ada, "rest").contains("You sit down"));
  QVERIFY(stage.type(ada, "rest").contains("You are resting already"));
  const int before = player->hits.now;
  stage.world.beat();
  QVERIFY(player->hits.now > before);
  for (int i = 0; i < 100 && player->resting; ++i)
    stage.world.beat();
  QCOMPARE(player->hits.now, player->hits.most);
  QCOMPARE(player->spells.now, player->spells.most);
  QCOMPARE(player->endurance.now, player->endurance.most);
  QVERIFY(
      withoutSequences(stage.host.heard[ada].last()).startsWith("You get up, good as new.\r\n"));

  stage.world.receiveLine(ada, "s");
  stage.world.receiveLine(ada, "n");
  stage.world.receiveLine(ada, "rest");
  QVERIFY(player->resting);
  stage.world.receiveLine(ada, "s");
  QVERIFY(!player->resting);
}

void TestDemoWorld::bobSaysHello() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  stage.walk(ada, PlaceId::LampRoom);
  QVERIFY(stage.type(ada, "bob").startsWith("Bob tells you: hello traveller\r\nhp: ["));
}

void TestDemoWorld::bobSpeaksUpNowAndThenInTheSquareOnly() {
  for (const NpcChatter chatter : {NpcChatter::Off, NpcChatter::On}) {
    DemoOptions options = quiet();
    options.chatter = chatter;
    Stage stage(options);
    const PlayerId ada = stage.join("Ada");
    const PlayerId eve = stage.join("Eve");
    stage.walk(eve, PlaceId::Lane);
    const qsizetype adaBefore = stage.host.heard[ada].size();
    const qsizetype eveBefore = stage.host.heard[eve].size();
    for (int i = 0; i < 900; ++i)
      stage.world.beat();
    const auto said = stage.heardSince(ada, adaBefore).count("Bob says: ");
    if (chatter == NpcChatter::On)
      QVERIFY2(said >= 9 && said <= 22, qPrintable(QString::number(said)));
    else
      QCOMPARE(said, 0);
    QCOMPARE(stage.heardSince(eve, eveBefore), QByteArray());
  }
}

void TestDemoWorld::hungerAndTheBellAreExact() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  QVERIFY(stage.type(ada, "hungry").startsWith("You are hungry.\r\nhp: ["));
  QCOMPARE(stage.type(ada, "beep").count('\a'), 1);
}

void TestDemoWorld::linksEndWhereTheirColourEnds() {
  const QByteArray links = demo::links().toUtf8();
  QVERIFY(links.contains("http://kelmora.example/guide\x1b[0m\r\n"));
  QVERIFY(links.contains("www.kelmora.example\x1b[0m\r\n"));
}

void TestDemoWorld::floodsAreBounded_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<int>("lines");
  QTest::newRow("a small one") << QByteArray("flood 3") << 3;
  QTest::newRow("a million") << QByteArray("flood 1000000") << 1000000;
  QTest::newRow("more than a million") << QByteArray("flood 1000001") << 1000000;
  QTest::newRow("more than 32 bits") << QByteArray("flood 99999999999999999999999") << 1000000;
  QTest::newRow("none") << QByteArray("flood 0") << 0;
  QTest::newRow("fewer than none") << QByteArray("flood -5") << 0;
  QTest::newRow("no number") << QByteArray("flood gates") << 0;
}

void TestDemoWorld::floodsAreBounded() {
  QFETCH(QByteArray, line);
  QFETCH(int, lines);
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const QByteArray heard = stage.type(ada, line);
  QCOMPARE(stage.host.flood.value_or(0), lines);
  if (lines == 0) {
    QVERIFY(heard.contains("How high a flood?"));
    return;
  }
  QCOMPARE(heard, QByteArray());
  QVERIFY(stage.type(ada, "flood 3").contains("One flood at a time."));
  const qsizetype before = stage.host.heard[ada].size();
  stage.world.floodFinished(ada, lines);
  QVERIFY(stage.heardSince(ada, before)
              .startsWith("flood: " + QByteArray::number(lines) + " lines sent\r\nhp: ["));
  stage.host.flood.reset();
  stage.world.receiveLine(ada, "flood 2");
  QCOMPARE(stage.host.flood, std::optional<int>(2));
  QVERIFY(stage.type(ada, "flood stop").startsWith("flood: 2 lines sent\r\nhp: ["));
  QVERIFY(stage.type(ada, "flood stop").contains("There is nothing to stop."));
}

void TestDemoWorld::theTutorialGoesThroughItsChapters() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const auto chapters = demo::tutorial();
  const QByteArray count = QByteArray::number(static_cast<int>(chapters.size()));
  const QByteArray list = stage.type(ada, "tutorial");
  for (const demo::Chapter& chapter : chapters)
    QVERIFY2(list.contains(chapter.title), chapter.title);
  for (std::size_t n = 1; n <= chapters.size(); ++n) {
    const QByteArray heading = "Chapter " + QByteArray::number(static_cast<int>(n)) + " of " +
                               count + ": " + chapters[n - 1].title + "\r\n";
    const QByteArray shown = stage.type(ada, "tutorial next");
    QVERIFY2(shown.startsWith(heading), shown.constData());
    QCOMPARE(shown.contains("That was the last chapter."), n == chapters.size());
  }
  QVERIFY(stage.type(ada, "tutorial next").startsWith("The tutorial has these chapters:"));
  QVERIFY(stage.type(ada, "tutorial 2").startsWith("Chapter 2 of "));
  QVERIFY(stage.type(ada, "tutorial NEXT").startsWith("Chapter 3 of "));
  for (const char* none : {"tutorial 0", "tutorial 99", "tutorial -1", "tutorial twelve"})
    QVERIFY2(stage.type(ada, none).startsWith("The tutorial has these chapters:"), none);
}

void TestDemoWorld::quittingSaysGoodbyeAndHangsUp() {
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  QCOMPARE(stage.type(ada, "quit"), QByteArray("Farewell, Ada. We will leave a light on.\r\n"));
  QVERIFY(stage.host.hungUp.contains(ada));
  QCOMPARE(stage.world.player(ada), nullptr);
  QCOMPARE(stage.type(ada, "look"), QByteArray());
  stage.world.disconnectPlayer(ada);
}

void TestDemoWorld::harmlessWhateverIsTyped_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<QByteArray>("said");
  QTest::newRow("escape sequences lose their teeth")
      << QByteArray("say \x1b[31mred") << QByteArray("You say: [31mred");
  QTest::newRow("a bell is dropped") << QByteArray("say a\ab") << QByteArray("You say: ab");
  QTest::newRow("C1 controls are dropped") << QByteArray(
                                                  "say a\xC2\x9B"
                                                  "b")
                                           << QByteArray("You say: ab");
  QTest::newRow("a tab becomes a blank") << QByteArray("say a\tb") << QByteArray("You say: a b");
  QTest::newRow("invalid UTF-8 is replaced") << QByteArray(
                                                    "say a\xFE"
                                                    "b")
                                             << QByteArray(
                                                    "You say: a\xEF\xBF\xBD"
                                                    "b");
  QTest::newRow("text cannot be turned around") << QByteArray(
                                                       "say a\xE2\x80\xAE"
                                                       "b")
                                                << QByteArray("You say: ab");
  QTest::newRow("places for words stay as typed")
      << QByteArray("say %1 %2 %n `x`") << QByteArray("You say: %1 %2 %n `x`");
  QTest::newRow("other scripts pass") << QByteArray("say 灯り ж") << QByteArray("You say: 灯り ж");
}

void TestDemoWorld::harmlessWhateverIsTyped() {
  QFETCH(QByteArray, line);
  QFETCH(QByteArray, said);
  Stage stage;
  const PlayerId ada = stage.join("Ada");
  const PlayerId eve = stage.join("Eve");
  QVERIFY(stage.type(ada, line).startsWith(said + "\r\n"));
  QCOMPARE(withoutSequences(stage.host.heard[eve].last()), "Ada says:" + said.sliced(8) + "\r\n");
}

void TestDemoWorld::strangersAreIgnored() {
  Stage stage;
  const PlayerId nobody{99};
  stage.world.receiveLine(nobody, "look");
  stage.world.floodFinished(nobody, 3);
  stage.world.disconnectPlayer(nobody);
  stage.world.beat();
  QVERIFY(stage.host.heard.empty());
}

void TestDemoWorld::numbers_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<int>("number");
  QTest::newRow("zero") << QStringLiteral("0") << 0;
  QTest::newRow("a negative number") << QStringLiteral("-12") << -12;
  QTest::newRow("the largest") << QStringLiteral("2147483647") << 2147483647;
  QTest::newRow("beyond the largest") << QStringLiteral("2147483648") << 2147483647;
  QTest::newRow("beyond the least")
      << QStringLiteral("-99999999999999999999") << std::numeric_limits<int>::min();
  QTest::newRow("no text") << QString() << 5;
  QTest::newRow("a lone sign") << QStringLiteral("-") << 5;
  QTest::newRow("trailing letters") << QStringLiteral("12a") << 5;
}

void TestDemoWorld::numbers() {
  QFETCH(QString, text);
  QFETCH(int, number);
  QCOMPARE(demo::wholeNumber(text, 5), number);
}

KELMORA_TEST_MAIN(TestDemoWorld)
#include "tst_demoworld.moc"
