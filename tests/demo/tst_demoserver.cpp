#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include "demo/DemoServer.h"
#include "demo/LineAssembler.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::demo;

namespace {

DemoOptions quick() {
  DemoOptions options;
  options.roundInterval = std::chrono::milliseconds(5);
  options.chatter = NpcChatter::Off;
  options.seed = 7;
  return options;
}

QByteArray withoutSequences(const QByteArray& bytes) {
  static const QRegularExpression sequence(QStringLiteral("\x1b\\[[0-9;]*m"));
  return QString::fromUtf8(bytes).remove(sequence).toUtf8();
}

const char* const kPrompt =
    "(^|\n)hp: \\[ \\d+ / \\d+ \\], sp: \\[ \\d+ / \\d+ \\], ep: \\[ \\d+ / \\d+ \\]\r\n";

bool hasPrompt(const QByteArray& heard) {
  static const QRegularExpression prompt(QString::fromLatin1(kPrompt));
  return prompt.match(QString::fromUtf8(heard)).hasMatch();
}

bool endsWithPrompt(const QByteArray& heard) {
  static const QRegularExpression prompt(QString::fromLatin1(kPrompt) + u'$');
  return prompt.match(QString::fromUtf8(heard)).hasMatch();
}

/// A player's end of a real connection.
class Client {
 public:
  enum class Reading { Always, Never };

  explicit Client(const DemoServer& server, Reading reading = Reading::Always)
      : Client(server.port(), reading) {}
  explicit Client(quint16 port, Reading reading = Reading::Always) {
    if (reading == Reading::Never)
      socket_.setReadBufferSize(1);
    else
      QObject::connect(&socket_, &QTcpSocket::readyRead, &socket_,
                       [this] { raw_ += socket_.readAll(); });
    socket_.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
  }

  [[nodiscard]] bool waitFor(const QByteArray& text) {
    return QTest::qWaitFor([&] { return heard().contains(text); }, 20000);
  }
  [[nodiscard]] bool waitForPrompt() {
    return QTest::qWaitFor([&] { return hasPrompt(heard()); }, 20000);
  }
  [[nodiscard]] bool waitForEnd() {
    return QTest::qWaitFor([&] { return socket_.state() == QAbstractSocket::UnconnectedState; },
                           20000);
  }
  [[nodiscard]] bool enter(const QByteArray& name) {
    if (!waitFor("By what name"))
      return false;
    send(name + "\r\n");
    return waitForPrompt();
  }
  /// Sends a line and yields what came, once a prompt is among it.
  [[nodiscard]] QByteArray ask(const QByteArray& line) {
    clear();
    send(line + "\r\n");
    return waitForPrompt() ? heard() : QByteArray("no prompt came");
  }
  void send(const QByteArray& bytes) { socket_.write(bytes); }
  void clear() { raw_.clear(); }
  [[nodiscard]] QByteArray heard() const { return withoutSequences(raw_); }
  [[nodiscard]] qsizetype heardBytes() const { return raw_.size(); }
  [[nodiscard]] QTcpSocket& socket() { return socket_; }

 private:
  QTcpSocket socket_;
  QByteArray raw_;
};

}  // namespace

class TestDemoServer : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void listensOnThisComputerOnly();
  void aPortInUseIsRefusedWithAReason();
  void theProgramTellsItsPort();
  void theProgramOpensTheClientAndEndsWithIt();
  void theProgramAnswersItsArguments_data();
  void theProgramAnswersItsArguments();
  void everyResponseArrivesInOnePiece();
  void playersSeeEachOther();
  void fightsGoOnByThemselves();
  void bytesMayArriveOneByOne();
  void severalLinesMayArriveAtOnce();
  void aLineWithoutEndIsCut();
  void binaryRubbishDoesNoHarm();
  void aFloodArrivesWholeAndInOrder();
  void aFloodCanBeStopped();
  void aFloodWaitsForItsReader();
  void aPlayerWhoNeverReadsIsDroppedAndStopsNobody();
  void aPlayerWhoAsksWithoutReadingIsNotAnswered();
  void oneChatterboxDoesNotKeepOthersWaiting();
  void leavingInMidFightIsClean();
  void quittingClosesTheConnection();
  void aFullTownTurnsNewcomersAway();
  void aServerMayGoWithItsPlayersInside();
  void assembly_data();
  void assembly();
};

void TestDemoServer::listensOnThisComputerOnly() {
  DemoServer server(quick());
  QCOMPARE(server.port(), quint16{0});
  QVERIFY(server.listen(0));
  QVERIFY(server.port() != 0);
  // Another address of this computer: a server on every address would answer.
  QTcpSocket socket;
  socket.connectToHost(QHostAddress(QStringLiteral("127.0.0.2")), server.port());
  QVERIFY(!socket.waitForConnected(2000));
}

void TestDemoServer::aPortInUseIsRefusedWithAReason() {
  DemoServer first(quick());
  QVERIFY(first.listen(0));
  DemoServer second(quick());
  QVERIFY(!second.listen(first.port()));
  QVERIFY(!second.errorString().isEmpty());
}

void TestDemoServer::theProgramTellsItsPort() {
  QProcess program;
  program.start(QStringLiteral(KELMORA_DEMO_PROGRAM),
                {QStringLiteral("--port"), QStringLiteral("0")});
  QVERIFY(QTest::qWaitFor([&] { return program.canReadLine(); }, 20000));
  static const QRegularExpression form(
      QStringLiteral("^Listening on 127\\.0\\.0\\.1 port (\\d+)\n$"));
  const auto said = form.match(QString::fromUtf8(program.readLine()));
  QVERIFY(said.hasMatch());
  Client ada(said.captured(1).toUShort());
  QVERIFY(ada.enter("Ada"));

  QProcess second;
  second.start(QStringLiteral(KELMORA_DEMO_PROGRAM), {QStringLiteral("--port"), said.captured(1)});
  QVERIFY(second.waitForFinished(20000));
  QCOMPARE(second.exitCode(), 1);
  QVERIFY(second.readAllStandardError().startsWith(
      "kelmora-demo: cannot listen on 127.0.0.1 port " + said.captured(1).toUtf8()));
  program.terminate();
  QVERIFY(program.waitForFinished(20000));
}

void TestDemoServer::theProgramOpensTheClientAndEndsWithIt() {
  const QTemporaryDir folder;
  QFile client(folder.filePath(QStringLiteral("kelmora")));
  QVERIFY(client.open(QIODevice::WriteOnly));
  client.write("#!/bin/sh\necho a client plays\nexit 7\n");
  client.close();
  QVERIFY(client.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
  QProcess program;
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("PATH"), folder.path() + ":/usr/bin:/bin");
  program.setProcessEnvironment(environment);
  const QStringList play{QStringLiteral("--play"), QStringLiteral("--port")};
  program.start(QStringLiteral(KELMORA_DEMO_PROGRAM), play + QStringList{QStringLiteral("0")});
  QVERIFY(program.waitForFinished(20000));
  QCOMPARE(program.exitCode(), 7);
  QVERIFY(program.readAllStandardOutput().endsWith("a client plays\n"));

  DemoServer first(quick());
  QVERIFY(first.listen(0));
  program.start(QStringLiteral(KELMORA_DEMO_PROGRAM),
                play + QStringList{QString::number(first.port())});
  QVERIFY(program.waitForFinished(20000));
  QCOMPARE(program.exitCode(), 7);
  QVERIFY(program.readAllStandardOutput().endsWith("a client plays\n"));

  QVERIFY(client.remove());
  program.start(QStringLiteral(KELMORA_DEMO_PROGRAM), play + QStringList{QStringLiteral("0")});
  QVERIFY(program.waitForFinished(20000));
  QCOMPARE(program.exitCode(), 1);
  QVERIFY(program.readAllStandardError().startsWith("kelmora-demo: cannot start the client"));
}

void TestDemoServer::theProgramAnswersItsArguments_data() {
  QTest::addColumn<QStringList>("arguments");
  QTest::addColumn<int>("exitCode");
  QTest::addColumn<QString>("beginning");
  const QString port = "kelmora-demo: a port is a number from 0 to 65535\n";
  QTest::newRow("--version") << QStringList{"--version"} << 0 << "kelmora-demo 3.9b\n";
  QTest::newRow("-v") << QStringList{"-v"} << 0 << "kelmora-demo 3.9b\n";
  QTest::newRow("--help") << QStringList{"--help"} << 0 << "Usage: ";
  QTest::newRow("-h") << QStringList{"-h"} << 0 << "Usage: ";
  QTest::newRow("an unknown option")
      << QStringList{"--host", "x"} << 2 << "kelmora-demo: Unknown option 'host'.\n";
  QTest::newRow("a word") << QStringList{"5000"} << 2 << "kelmora-demo: '5000' is no option\n";
  QTest::newRow("a port beyond the last") << QStringList{"--port", "65536"} << 2 << port;
  QTest::newRow("a negative port") << QStringList{"--port", "-1"} << 2 << port;
  QTest::newRow("a port in letters") << QStringList{"--port", "five"} << 2 << port;
  QTest::newRow("an empty port") << QStringList{"--port", ""} << 2 << port;
}

void TestDemoServer::theProgramAnswersItsArguments() {
  QFETCH(const QStringList, arguments);
  QFETCH(const int, exitCode);
  QFETCH(const QString, beginning);
  QProcess program;
  program.start(QStringLiteral(KELMORA_DEMO_PROGRAM), arguments);
  QVERIFY(program.waitForFinished(20000));
  QCOMPARE(program.exitCode(), exitCode);
  // An answer that was asked for goes to one end, a complaint to the other.
  const QString output = QString::fromUtf8(program.readAllStandardOutput());
  const QString errors = QString::fromUtf8(program.readAllStandardError());
  QCOMPARE((exitCode == 0 ? output : errors).left(beginning.size()), beginning);
  QCOMPARE(exitCode == 0 ? errors : output, QString());
}

void TestDemoServer::everyResponseArrivesInOnePiece() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  QVERIFY(ada.enter("Ada"));
  QList<QByteArray> reads;
  QObject::connect(&ada.socket(), &QIODevice::readyRead, &ada.socket(), [&] {
    reads.append(ada.heard());
    ada.clear();
  });
  for (const char* line : {"look", "help", "colours", "unicode", "tutorial 7", ""}) {
    reads.clear();
    ada.send(QByteArray(line) + "\r\n");
    QVERIFY(QTest::qWaitFor([&] { return !reads.isEmpty(); }, 20000));
    QCOMPARE(reads.size(), 1);
    QVERIFY2(endsWithPrompt(reads.first()), line);
  }
}

void TestDemoServer::playersSeeEachOther() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  Client eve(server);
  QVERIFY(ada.enter("Ada"));
  QVERIFY(eve.enter("Eve"));
  QVERIFY(ada.waitFor("Eve arrives.\r\n"));
  QVERIFY(eve.ask("say good evening").startsWith("You say: good evening\r\n"));
  QVERIFY(ada.waitFor("Eve says: good evening\r\n"));
  QVERIFY(ada.ask("who").contains("  Eve "));
  eve.send("quit\r\n");
  QVERIFY(ada.waitFor("Eve leaves the world.\r\n"));
  QVERIFY(eve.waitForEnd());
  QVERIFY(eve.heard().endsWith("We will leave a light on.\r\n"));

  Client kit(server);
  QVERIFY(kit.enter("Kit"));
  kit.socket().abort();
  QVERIFY(ada.waitFor("Kit goes out like a candle.\r\n"));
}

void TestDemoServer::fightsGoOnByThemselves() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  QVERIFY(ada.enter("Ada"));
  QVERIFY(ada.ask("n").contains("A straw soldier is here."));
  ada.send("kill straw\r\n");
  QVERIFY(ada.waitFor("You have won!\r\n"));
  QVERIFY(ada.waitForPrompt());
  QVERIFY(ada.heard().count("You hit the straw soldier for ") >= 3);
}

void TestDemoServer::bytesMayArriveOneByOne() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  QVERIFY(ada.waitFor("By what name"));
  ada.socket().setSocketOption(QAbstractSocket::LowDelayOption, 1);
  for (const char byte : QByteArray("Ada\r\nsay na\xC3\xAFve\n")) {
    ada.send(QByteArray(1, byte));
    ada.socket().flush();
    QTest::qWait(1);
  }
  QVERIFY(ada.waitFor("You say: na\xC3\xAFve\r\n"));
}

void TestDemoServer::severalLinesMayArriveAtOnce() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  QVERIFY(ada.enter("Ada"));
  ada.clear();
  QByteArray lines;
  for (int i = 0; i < 500; ++i)
    lines += "say number " + QByteArray::number(i) + "\n";
  ada.send(lines);
  QVERIFY(ada.waitFor("You say: number 499\r\n"));
  const QByteArray heard = ada.heard();
  qsizetype at = 0;
  for (int i = 0; i < 500; ++i) {
    at = heard.indexOf("You say: number " + QByteArray::number(i) + "\r\n", at);
    QVERIFY(at >= 0);
  }
}

void TestDemoServer::aLineWithoutEndIsCut() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  QVERIFY(ada.enter("Ada"));
  ada.clear();
  ada.send("say " + QByteArray(100000, 'x'));
  QTest::qWait(50);
  QCOMPARE(ada.heard(), QByteArray());
  ada.send("\r\n");
  QVERIFY(ada.waitForPrompt());
  const QByteArray heard = ada.heard();
  QVERIFY(heard.startsWith("That was a mouthful!"));
  QCOMPARE(heard.count('x'), LineAssembler::kMaxLine - 4);
  QVERIFY(ada.ask("hungry").startsWith("You are hungry.\r\n"));
}

void TestDemoServer::binaryRubbishDoesNoHarm() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  QVERIFY(ada.waitFor("By what name"));
  QRandomGenerator dice(11);
  QByteArray rubbish(200000, '\0');
  for (char& byte : rubbish)
    byte = static_cast<char>(dice.bounded(256));
  ada.send(rubbish + "\n");
  QVERIFY(ada.waitFor("A name here is 1 to 20 letters"));
  // The rubbish may have named the player already; either way the world answers.
  ada.send("Ada\r\n");
  Client eve(server);
  QVERIFY(eve.enter("Eve"));
  QVERIFY(eve.ask(QByteArray("say \0a\0b\xFF\xFB\x01"
                             "c\xFF\xFA\x18\x01\xFF\xF0"
                             "d",
                             19))
              .contains("You say: abcd\r\n"));
  QCOMPARE(server.sessionCount(), 2);
}

void TestDemoServer::aFloodArrivesWholeAndInOrder() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  QVERIFY(ada.enter("Ada"));
  ada.clear();
  ada.send("flood 20000\r\n");
  QVERIFY(QTest::qWaitFor([&] { return ada.heardBytes() > 700000; }, 20000));
  QVERIFY(ada.waitFor("flood: 20000 lines sent\r\n"));
  QVERIFY(ada.waitForPrompt());
  const QByteArrayList lines = ada.heard().split('\n');
  QCOMPARE(lines.size(), 20003);
  for (int i = 0; i < 20000; ++i)
    QCOMPARE(lines.at(i), "flood: line " + QByteArray::number(i + 1) + " of 20000\r");
  QCOMPARE(lines.at(20000), QByteArray("flood: 20000 lines sent\r"));
}

void TestDemoServer::aFloodCanBeStopped() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server, Client::Reading::Never);
  QVERIFY(ada.socket().waitForConnected(20000));
  // Nobody reads, so the flood stands still and cannot end by itself.
  ada.send("Ada\r\nflood 1000000\r\n");
  QTest::qWait(100);
  ada.send("flood stop\r\n");
  QTest::qWait(100);
  ada.socket().setReadBufferSize(0);
  QByteArray heard;
  QVERIFY(QTest::qWaitFor(
      [&] {
        heard += ada.socket().readAll();
        return heard.contains(" lines sent\r\n");
      },
      20000));
  QVERIFY(!heard.contains("flood: 1000000 lines sent"));
}

void TestDemoServer::aFloodWaitsForItsReader() {
  DemoOptions options = quick();
  // A flood that ran ahead of its reader would be dropped at once.
  options.maxUnsentBytes = qint64{512} * 1024;
  DemoServer server(options);
  QVERIFY(server.listen(0));
  Client ada(server, Client::Reading::Never);
  QVERIFY(ada.socket().waitForConnected(20000));
  ada.send("Ada\r\nflood 1000000\r\n");
  QTest::qWait(300);
  QCOMPARE(server.sessionCount(), 1);
  Client eve(server);
  QVERIFY(eve.enter("Eve"));
  QVERIFY(eve.ask("hungry").startsWith("You are hungry.\r\n"));
}

void TestDemoServer::aPlayerWhoNeverReadsIsDroppedAndStopsNobody() {
  DemoOptions options = quick();
  options.maxUnsentBytes = qint64{64} * 1024;
  DemoServer server(options);
  QVERIFY(server.listen(0));
  Client deaf(server, Client::Reading::Never);
  QVERIFY(deaf.socket().waitForConnected(20000));
  deaf.send("Deaf\r\n");
  Client ada(server);
  Client eve(server);
  QVERIFY(ada.enter("Ada"));
  QVERIFY(eve.enter("Eve"));
  // The kernel's own buffers take some megabytes first.
  const QByteArray speech = ("say " + QByteArray(1000, 'x') + "\n").repeated(200);
  for (int i = 0; i < 200 && server.sessionCount() == 3; ++i) {
    ada.clear();
    eve.clear();
    ada.send(speech + "say the end\n");
    QVERIFY(eve.waitFor("Ada says: the end\r\n"));
  }
  QCOMPARE(server.sessionCount(), 2);
  QVERIFY(eve.ask("who").contains("  Ada "));
  QVERIFY(!eve.heard().contains("  Deaf "));
}

void TestDemoServer::aPlayerWhoAsksWithoutReadingIsNotAnswered() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client deaf(server, Client::Reading::Never);
  QVERIFY(deaf.socket().waitForConnected(20000));
  deaf.send("Deaf\r\n");
  Client ada(server);
  QVERIFY(ada.enter("Ada"));
  // Tens of megabytes of answers were asked for: the questions wait instead.
  deaf.send(QByteArray("colours\n").repeated(20000));
  QTest::qWait(500);
  QVERIFY(ada.ask("hungry").startsWith("You are hungry.\r\n"));
  QCOMPARE(server.sessionCount(), 2);
  // Most of the questions are still on the other side of the connection, or in
  // the small buffer on this one; none of them cost the player the connection.
  QCOMPARE(deaf.socket().state(), QAbstractSocket::ConnectedState);
}

void TestDemoServer::oneChatterboxDoesNotKeepOthersWaiting() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  Client eve(server);
  QVERIFY(ada.enter("Ada"));
  QVERIFY(eve.enter("Eve"));
  ada.clear();
  ada.send(QByteArray("map\n").repeated(20000) + "hungry\n");
  QVERIFY(ada.waitFor("*Lantern Square*"));
  QVERIFY(eve.ask("hungry").startsWith("You are hungry.\r\n"));
  QVERIFY(!ada.heard().contains("You are hungry."));
}

void TestDemoServer::leavingInMidFightIsClean() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  for (int i = 0; i < 5; ++i) {
    Client ada(server);
    QVERIFY(ada.enter("Ada"));
    ada.send("n\nn\ne\nkill orc\n");
    QVERIFY(ada.waitFor("You hit the off-duty orc for"));
    ada.socket().abort();
    QVERIFY(QTest::qWaitFor([&] { return server.sessionCount() == 0; }, 20000));
  }
  Client eve(server);
  QVERIFY(eve.enter("Eve"));
  QVERIFY(eve.ask("who").contains("  Eve "));
  QVERIFY(!eve.heard().contains("Ada"));
}

void TestDemoServer::quittingClosesTheConnection() {
  DemoServer server(quick());
  QVERIFY(server.listen(0));
  Client ada(server);
  QVERIFY(ada.enter("Ada"));
  ada.send("quit\nlook\nlook\n");
  QVERIFY(ada.waitForEnd());
  QVERIFY(ada.heard().endsWith("We will leave a light on.\r\n"));
  QVERIFY(QTest::qWaitFor([&] { return server.sessionCount() == 0; }, 20000));
}

void TestDemoServer::aFullTownTurnsNewcomersAway() {
  DemoOptions options = quick();
  options.maxPlayers = 2;
  DemoServer server(options);
  QVERIFY(server.listen(0));
  Client ada(server);
  Client eve(server);
  QVERIFY(ada.enter("Ada"));
  QVERIFY(eve.enter("Eve"));
  Client kit(server);
  QVERIFY(kit.waitFor("The town is full tonight"));
  QVERIFY(kit.waitForEnd());
  QCOMPARE(server.sessionCount(), 2);
  eve.send("quit\n");
  QVERIFY(QTest::qWaitFor([&] { return server.sessionCount() == 1; }, 20000));
  Client late(server);
  QVERIFY(late.enter("Kit"));
  QVERIFY(ada.waitFor("Kit arrives.\r\n"));
}

void TestDemoServer::aServerMayGoWithItsPlayersInside() {
  auto server = std::make_unique<DemoServer>(quick());
  QVERIFY(server->listen(0));
  Client ada(*server);
  Client eve(*server);
  QVERIFY(ada.enter("Ada"));
  QVERIFY(eve.waitFor("By what name"));
  ada.send("flood 1000000\n");
  QVERIFY(ada.waitFor("flood: line 1 of"));
  server.reset();
  QVERIFY(ada.waitForEnd());
  QVERIFY(eve.waitForEnd());
}

void TestDemoServer::assembly_data() {
  QTest::addColumn<QByteArray>("bytes");
  QTest::addColumn<QByteArrayList>("lines");
  QTest::newRow("both line ends") << QByteArray("a\r\nb\nc") << QByteArrayList{"a", "b"};
  QTest::newRow("empty lines are lines") << QByteArray("\n\r\n") << QByteArrayList{"", ""};
  QTest::newRow("NULs are dropped") << QByteArray("a\0b\n", 4) << QByteArrayList{"ab"};
  QTest::newRow("an option request is dropped") << QByteArray(
                                                       "a\xFF\xFD\x18"
                                                       "b\n")
                                                << QByteArrayList{"ab"};
  QTest::newRow("a two-byte command is dropped") << QByteArray(
                                                        "a\xFF\xF1"
                                                        "b\n")
                                                 << QByteArrayList{"ab"};
  QTest::newRow("a subnegotiation is dropped with all it says")
      << QByteArray(
             "a\xFF\xFAxy\xFF\xFFz\xFF\xF0"
             "b\n")
      << QByteArrayList{"ab"};
  QTest::newRow("half a command ends with its line")
      << QByteArray("a\xFF\nb\xFF\xFD\nc\xFF\xFAzz\nd\n") << QByteArrayList{"a", "b", "c", "d"};
  QTest::newRow("a line of exactly the longest length is whole")
      << QByteArray(1024, 'x') + "\n"
      << QByteArrayList{QByteArray(1024, 'x')};
  QTest::newRow("a longer one is cut, and says so")
      << QByteArray(1025, 'x') + "\ny\n"
      << QByteArrayList{QByteArray(1024, 'x') + "!", "y"};
  QTest::newRow("no character is cut in two") << QByteArray(1023, 'x') + "\xC3\xA4\n"
                                              << QByteArrayList{QByteArray(1023, 'x') + "!"};
}

void TestDemoServer::assembly() {
  QFETCH(QByteArray, bytes);
  QFETCH(QByteArrayList, lines);
  LineAssembler assembler;
  QByteArrayList found;
  for (const char byte : bytes)
    if (const auto line = assembler.take(byte))
      found.append(line->cut == LineCut::Yes ? line->bytes + "!" : line->bytes);
  QCOMPARE(found, lines);
}

KELMORA_TEST_MAIN(TestDemoServer)
#include "tst_demoserver.moc"
