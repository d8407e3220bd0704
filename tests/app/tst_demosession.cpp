#include <QApplication>
#include <QProgressBar>

#include "PlayWindow.h"
#include "demo/DemoServer.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::demo;

/// The client on the demo world, as a newcomer plays it.
class TestDemoSession : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void aNewcomerWalksAround();
  void theTutorialsAutomationWorks();
  void aFloodArrivesAndTheClientAnswers();

 private:
  /// Types a line and waits for words in what it brings.
  [[nodiscard]] bool answers(const QString& line, const QString& words) {
    const qsizetype before = play_->text().size();
    play_->type(line);
    return QTest::qWaitFor([&] { return play_->text().mid(before).contains(words); }, 20000);
  }

  std::unique_ptr<DemoServer> server_;
  std::unique_ptr<PlayWindow> play_;
};

void TestDemoSession::init() {
  DemoOptions options;
  options.chatter = NpcChatter::Off;
  server_ = std::make_unique<DemoServer>(options);
  QVERIFY(server_->listen(0));
  play_ = std::make_unique<PlayWindow>(server_->port());
  play_->window->connectToServer();
  QVERIFY(QTest::qWaitFor([&] { return play_->text().contains("name"); }));
  QVERIFY(answers("Robin", "hp: ["));
}

void TestDemoSession::cleanup() {
  play_.reset();
  server_.reset();
}

void TestDemoSession::aNewcomerWalksAround() {
  QVERIFY(answers("look", "Exits:"));
  QVERIFY(answers("map", "*Lantern Square*"));
  QVERIFY(answers("say Hello!", "You say: Hello!"));
  QVERIFY(answers("link", "the guide:"));
  QVERIFY(play_->formatOf("kelmora.example/guide").isAnchor());
  QVERIFY(answers("colours", "A cube of 216 colours:"));
  QVERIFY(answers("n;kill straw", "hp: ["));
  const auto bars = play_->window->findChildren<QProgressBar*>("progHP");
  QTRY_VERIFY_WITH_TIMEOUT(bars.at(0)->value() < 100 || bars.at(2)->value() < 100, 20000);
  play_->type("quit");
  QTRY_COMPARE(play_->lastLine(), QString("Disconnected from host!"));
}

void TestDemoSession::theTutorialsAutomationWorks() {
  QVERIFY(answers("tutorial 9", "Let the client play along"));
  QVERIFY(answers("/set town,Kelmora;/echo I live in {town}, FFCC00", "I live in Kelmora\n"));
  play_->profile.aliases.append({"hi", {"say Good morning!", "look"}});
  QVERIFY(answers("hi", "You say: Good morning!"));
  play_->profile.triggers.append(
      {"{*} tells you: {*}", {"/echo {_trigOut0} began with {_trigOut1}, 80FF80"}});
  QVERIFY(answers("bob", "Bob began with hello\n"));
  QVERIFY(answers("say one;/pause later, 200;say two", "You say: one"));
  QVERIFY(!play_->text().contains("You say: two"));
  QTRY_VERIFY(play_->text().contains("You say: two"));
}

void TestDemoSession::aFloodArrivesAndTheClientAnswers() {
  play_->profile.triggers.append({"flood: {*} lines sent", {"/set flood,{_trigOut0}"}});
  QVERIFY(answers("flood 3000", "flood: 3000 lines sent"));
  QTRY_COMPARE(play_->profile.variables.value("flood"), QString("3000"));
  QVERIFY(answers("look", "Exits:"));
}

KELMORA_GUI_TEST_MAIN(TestDemoSession)
#include "tst_demosession.moc"
