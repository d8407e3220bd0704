#include <QApplication>
#include <QElapsedTimer>

#include "PlayWindow.h"
#include "automation/editors/AliasWidget.h"
#include "script/ActionTimer.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

using namespace kelmora;
using namespace kelmora::automation;
using namespace kelmora::script;

namespace {

/// The box that tells of a file which could not be read.
ExpectedDialog readFailure(const QString& title, const QString& file) {
  return ExpectedDialog::information(
      title, QStringLiteral("There has been a failure reading your %1 file.").arg(file));
}

}  // namespace

/// Triggers, aliases, macros, variables and timers in a real window on a real
/// connection.
class TestAutomation : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void missingFilesAreCreatedEmptyWithoutAWord();
  void everyBrokenFileHasItsBoxInOrder();
  void oneBrokenFileKeepsTheOthers();
  void theTablesAreLoadedAndTheVariablesKept();
  void whatCouldNotBeReadIsKeptBeside();
  void aTriggerAnswersWithTheWordItCaptured();
  void triggersFireInOrderEachBeforeTheNextIsTried();
  void aTriggerCallsAnAlias();
  void aPauseInATriggerHoldsBackThatTriggerAlone();
  void aLineInTwoReadsIsTwoPieces();
  void vitalsAndTriggersSeeTheSameLine();
  void anAliasRunsInPlaceOfItsName();
  void aPauseInAnAliasHoldsBackTheAliasAlone();
  void macroKeys_data();
  void macroKeys();
  void aMacroRunsCommandsAliasesAndPauses();
  void commandsPrintIntoThePane();
  void withSplittingOffAPauseMakesNoTimer();
  void aWaitingTimerEndsWithTheWindow();
  void unpauseCancels();
  void anEndlessAliasEndsWithOneLineAndTheWindowLives();
  void anEndlessAliasOfEveryLineOfAReadIsToldOnce();
  void nestedLoopsEndAndTheWindowLives();
  void linesThatTheServerDoesNotTakeAreToldOnce();
  void aTriggerThatFeedsItselfLetsKeysThrough();
};

void TestAutomation::init() {
  for (const char* name : {"macros.txt", "triggers.txt", "aliases.txt", "variables.txt"})
    QFile::remove(name);
}

void TestAutomation::missingFilesAreCreatedEmptyWithoutAWord() {
  const DialogAnswers none;
  const PlayWindow play(5000);
  for (const char* name : {"macros.txt", "triggers.txt", "aliases.txt", "variables.txt"})
    QCOMPARE(contentsOf(name), QByteArray());
}

void TestAutomation::everyBrokenFileHasItsBoxInOrder() {
  for (const char* name : {"macros.txt", "triggers.txt", "aliases.txt", "variables.txt"})
    writeFile(name, "nonsense\n");
  const DialogAnswers answers{
      readFailure("Macros", "macros.txt"), readFailure("Triggers", "triggers.txt"),
      readFailure("Aliases", "aliases.txt"), readFailure("Variables", "variables.txt")};
  const PlayWindow play(5000);
  QVERIFY(answers.allCame());
  QCOMPARE(answers.parents(), QList<const QWidget*>(4, play.window.get()));
}

void TestAutomation::oneBrokenFileKeepsTheOthers() {
  writeFile("triggers.txt", "\ntrigger \"a\"\nx\n/trigger\nnonsense\n");
  writeFile("aliases.txt", "\nalias \"n\"\nnorth\n/alias\n");
  writeFile("variables.txt", "\nvariable hp \"10\"\n");
  const DialogAnswers answers{readFailure("Triggers", "triggers.txt")};
  const PlayWindow play(5000);
  QVERIFY(answers.allCame());
  QCOMPARE(play.profile.triggers.size(), 1);
  QCOMPARE(play.profile.aliases.size(), 1);
  QCOMPARE(play.profile.variables.value("hp"), QString("10"));
}

void TestAutomation::theTablesAreLoadedAndTheVariablesKept() {
  writeFile("variables.txt", "\nvariable hp \"10\"\n");
  {
    PlayWindow play(5000);
    play.type("/add hp, 5;/set name,Robin");
    QVERIFY(play.window->close());
  }
  QCOMPARE(contentsOf("variables.txt"),
           QByteArray("\nvariable hp \"15\"\n\nvariable name \"Robin\"\n"));
}

void TestAutomation::whatCouldNotBeReadIsKeptBeside() {
  const QByteArray variables = "\nvariable a \"1\"\n\nvariable b \"\"x\"\n\nvariable c \"3\"\n";
  const QByteArray aliases = "\nalias \"n\"\nnorth\n/alias\nnonsense\n";
  writeFile("variables.txt", variables);
  writeFile("aliases.txt", aliases);
  const DialogAnswers answers{readFailure("Aliases", "aliases.txt"),
                              readFailure("Variables", "variables.txt")};
  {
    PlayWindow play(5000);
    QVERIFY(answers.allCame());
    play.actions.at(8)->trigger();
    buttonOf(*play.window->findChild<AliasWidget*>(), "Add alias")->click();
    QVERIFY(play.window->close());
  }
  QCOMPARE(contentsOf("variables.txt"), QByteArray("\nvariable a \"1\"\n"));
  QCOMPARE(contentsOf("variables.txt.bak"), variables);
  QVERIFY(contentsOf("aliases.txt").contains("north"));
  QCOMPARE(contentsOf("aliases.txt.bak"), aliases);
  // What was written instead is read whole, so that nothing more is kept.
  {
    PlayWindow play(5000);
    QVERIFY(play.window->close());
  }
  QVERIFY(answers.allCame());
  QCOMPARE(QDir().entryList({"*.bak*"}, QDir::Files).size(), 2);
}

void TestAutomation::aTriggerAnswersWithTheWordItCaptured() {
  writeFile("triggers.txt",
            "\ntrigger \"{*} tells you: {*}\"\n/set reply, {_trigOut1}\n"
            "/set reply_to, {_trigOut0}\ntell back\n/trigger\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("\x1b[33mBob tells you: hello there\x1b[0m\r\n");
  QTRY_COMPARE(server.received(), QByteArray("tell back\r\n"));
  QCOMPARE(play.profile.variables.value("reply"), QString("hello"));
  QCOMPARE(play.profile.variables.value("reply_to"), QString("Bob"));
}

void TestAutomation::triggersFireInOrderEachBeforeTheNextIsTried() {
  writeFile("triggers.txt",
            "\ntrigger \"hungry\"\neat\nlook\n/trigger\n"
            "\ntrigger \"never\"\nno\n/trigger\n"
            "\ntrigger \"You are {*}\"\nsay done\n/trigger\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("You are hungry\r\nYou are hungry\r\n");
  QTRY_COMPARE(server.received(), QByteArray("eat\r\nlook\r\nsay done\r\n").repeated(2));
}

void TestAutomation::aTriggerCallsAnAlias() {
  writeFile("triggers.txt", "\ntrigger \"hungry\"\nmeal\nlook\n/trigger\n");
  writeFile("aliases.txt", "\nalias \"meal\"\nget bread\neat bread\n/alias\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("You are hungry\r\n");
  QTRY_COMPARE(server.received(), QByteArray("get bread\r\neat bread\r\nlook\r\n"));
}

void TestAutomation::aPauseInATriggerHoldsBackThatTriggerAlone() {
  writeFile("triggers.txt",
            "\ntrigger \"hungry\"\na\n/pause t,100\nb\n/trigger\n"
            "\ntrigger \"You are\"\nc\n/trigger\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("You are hungry\r\n");
  QTRY_COMPARE(server.received(), QByteArray("a\r\nc\r\nb\r\n"));
}

void TestAutomation::aLineInTwoReadsIsTwoPieces() {
  writeFile("triggers.txt",
            "\ntrigger \"whole line\"\nno\n/trigger\n"
            "\ntrigger \"end\"\nyes\n/trigger\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("who");
  QTRY_VERIFY(play.text().endsWith("who"));
  server.send("le line\r\nend\r\n");
  QTRY_COMPARE(server.received(), QByteArray("yes\r\n"));
}

void TestAutomation::vitalsAndTriggersSeeTheSameLine() {
  writeFile("triggers.txt",
            "\ntrigger \"hp: [ {*} / {*} ]\"\nok\n/trigger\n"
            "\ntrigger \"hp: [\"\nprompt\n/trigger\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  server.send("hp: [ 50 / 200 ], sp: [ 10 / 10 ], ep: [ 0 / 80 ]\r\n");
  QTRY_COMPARE(server.received(), QByteArray("prompt\r\n"));
}

void TestAutomation::anAliasRunsInPlaceOfItsName() {
  writeFile("aliases.txt",
            "\nalias \"n\"\nnorth\nlook\n/alias\n\nalias \"/x\"\nsay x\n/alias\n"
            "\nalias \"/set\"\nsay set\n/alias\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  play.type("n;n ;N;/x;//x;//set;/set a,b");
  QTRY_COMPARE(server.received(),
               QByteArray("north\r\nlook\r\nn \r\nN\r\nsay x\r\nsay x\r\nsay set\r\n"));
  QCOMPARE(play.profile.variables.value("a"), QString("b"));
}

void TestAutomation::aPauseInAnAliasHoldsBackTheAliasAlone() {
  writeFile("aliases.txt", "\nalias \"a\"\na1\n/pause t, 150\na2\n/alias\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  QElapsedTimer clock;
  clock.start();
  play.type("a;second");
  QTRY_COMPARE(server.received(), QByteArray("a1\r\nsecond\r\n"));
  QTRY_COMPARE(server.received(), QByteArray("a1\r\nsecond\r\na2\r\n"));
  QVERIFY(clock.elapsed() >= 140);
}

void TestAutomation::macroKeys_data() {
  QTest::addColumn<int>("key");
  QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
  QTest::addColumn<QByteArray>("wire");
  QTest::addColumn<QString>("text");
  const Qt::KeyboardModifiers none;
  QTest::newRow("F5 runs its macro and leaves the line alone")
      << int(Qt::Key_F5) << none << QByteArray("five\r\n") << "text";
  QTest::newRow("Shift and F5 run it too")
      << int(Qt::Key_F5) << Qt::KeyboardModifiers(Qt::ShiftModifier) << QByteArray("five\r\n")
      << "text";
  QTest::newRow("Control and F5 do not")
      << int(Qt::Key_F5) << Qt::KeyboardModifiers(Qt::ControlModifier) << QByteArray() << "text";
  QTest::newRow("Alt and F5 do not")
      << int(Qt::Key_F5) << Qt::KeyboardModifiers(Qt::AltModifier) << QByteArray() << "text";
  QTest::newRow("keypad 8 runs the macro of NUMPAD8")
      << int(Qt::Key_Up) << Qt::KeyboardModifiers(Qt::KeypadModifier) << QByteArray("up\r\n")
      << "text";
  QTest::newRow("the arrow beside it browses") << int(Qt::Key_Up) << none << QByteArray() << "";
  QTest::newRow("Page Up runs the macro of NUMPAD9")
      << int(Qt::Key_PageUp) << none << QByteArray("nine\r\n") << "text";
  QTest::newRow("a bound letter types nothing")
      << int(Qt::Key_A) << none << QByteArray("letter\r\n") << "text";
  QTest::newRow("an unbound letter is typed") << int(Qt::Key_B) << none << QByteArray() << "textb";
  QTest::newRow("a macro without commands takes its key all the same")
      << int(Qt::Key_F6) << none << QByteArray() << "text";
}

void TestAutomation::macroKeys() {
  QFETCH(const int, key);
  QFETCH(const Qt::KeyboardModifiers, modifiers);
  QFETCH(const QByteArray, wire);
  QFETCH(const QString, text);
  writeFile("macros.txt",
            "\nmacro Key_F5\nfive\n/macro\n\nmacro NUMPAD8\nup\n/macro\n\nmacro NUMPAD9\nnine\n"
            "/macro\n\nmacro A\nletter\n/macro\n\nmacro Key_F6\n/macro\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  play.bar->setText("text");
  QTest::keyClick(play.bar, static_cast<Qt::Key>(key), modifiers);
  if (key == Qt::Key_Up && modifiers == Qt::NoModifier)
    play.bar->clear();
  QCOMPARE(play.bar->text(), text);
  play.window->runActions({"mark"});
  QTRY_COMPARE(server.received(), wire + "mark\r\n");
}

void TestAutomation::aMacroRunsCommandsAliasesAndPauses() {
  writeFile("macros.txt", "\nmacro Key_F5\n/set way, north\nwalk\n/pause t, 100\nlate\n/macro\n");
  writeFile("aliases.txt", "\nalias \"walk\"\nopen door\nnorth\n/alias\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  QElapsedTimer clock;
  clock.start();
  QTest::keyClick(play.bar, Qt::Key_F5);
  QCOMPARE(play.profile.variables.value("way"), QString("north"));
  play.type("typed");
  QTRY_COMPARE(server.received(), QByteArray("open door\r\nnorth\r\ntyped\r\nlate\r\n"));
  QVERIFY(clock.elapsed() >= 90);
}

void TestAutomation::commandsPrintIntoThePane() {
  PlayWindow play(5000);
  QTest::failOnWarning(QRegularExpression("QColor"));
  play.type("/echo a, b");
  QCOMPARE(play.text(), QString("a\n"));
  QCOMPARE(play.formatOf("a").foreground().color(), QColor(Qt::white));
  settled(*play.pane).clear();
  play.type("/set a,1;/variables;/delete nothing;/echo Hello {a}, FF8000;/echo bare;/echo");
  QCOMPARE(play.text(), QString("++ Global variables:\n++  a : 1\n"
                                "## No such variable to delete: nothing\nHello 1\nbare\n"
                                "## /echo takes at least one argument\n"));
  QCOMPARE(play.formatOf("Hello 1").foreground().color(), QColor("#FF8000"));
  QCOMPARE(play.formatOf("bare").foreground().color(), QColor("#FFFFFF"));
  QCOMPARE(play.formatOf("## No such").foreground().color(), QColor(Qt::yellow));
  QCOMPARE(play.formatOf("## No such").background().color(), QColor(Qt::red));
  QCOMPARE(play.formatOf("++ Global").foreground().color(), QColor(Qt::white));
  QCOMPARE(play.formatOf("++ Global").background().color(), QColor(Qt::blue));
}

void TestAutomation::withSplittingOffAPauseMakesNoTimer() {
  PlayWindow play(5000, {{"splitInput", 0}});
  play.type("/pause t, 50");
  play.type("/unpause t");
  QVERIFY(play.text().contains("## No such pending timer: t\n"));
}

void TestAutomation::aWaitingTimerEndsWithTheWindow() {
  GameServer server;
  {
    PlayWindow play(server.port());
    QVERIFY(play.connectTo(server));
    play.type("/pause t, 500;late");
    play.type("now");
    QTRY_COMPARE(server.received(), QByteArray("now\r\n"));
    QVERIFY(play.window->findChild<ActionTimer*>());
  }
  QTest::qWait(600);
  QCOMPARE(server.received(), QByteArray("now\r\n"));
}

void TestAutomation::unpauseCancels() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  play.type("/pause t, 50;late");
  play.type("/unpause t");
  QVERIFY(play.text().contains("++ Deleted timer: t\n"));
  QTest::qWait(120);
  QCOMPARE(server.received(), QByteArray());
}

void TestAutomation::anEndlessAliasEndsWithOneLineAndTheWindowLives() {
  writeFile("aliases.txt", "\nalias \"loop\"\nloop\n/alias\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  settled(*play.pane).clear();
  play.type("loop");
  QCOMPARE(play.text().count("## "), 1);
  QVERIFY2(play.text().contains("loop"), qPrintable(play.text()));
  play.type("alive");
  QTRY_COMPARE(server.received(), QByteArray("alive\r\n"));
}

void TestAutomation::anEndlessAliasOfEveryLineOfAReadIsToldOnce() {
  writeFile("triggers.txt", "\ntrigger \"orc\"\nk\nlook\n/trigger\n");
  writeFile("aliases.txt", "\nalias \"k\"\nkill orc\nk\n/alias\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  settled(*play.pane).clear();
  server.send(QByteArray("orc\r\n").repeated(5));
  QTRY_COMPARE(server.received(), QByteArray("kill orc\r\nlook\r\n").repeated(5));
  QCOMPARE(play.text().count("## "), 1);
  QVERIFY2(play.text().contains("## Endless alias stopped: k"), qPrintable(play.text()));
}

void TestAutomation::linesThatTheServerDoesNotTakeAreToldOnce() {
  GameServer server;
  PlayWindow play(server.port(), {{"displayLocalEcho", 0}});
  QVERIFY(play.connectTo(server));
  settled(*play.pane).clear();
  const QStringList tooMuch(70'000, QString(1000, u'x'));
  const QString told = QStringLiteral("## The server takes no lines");
  play.window->runActions(tooMuch);
  play.window->runActions({"lost", "lost too"});
  QCOMPARE(play.text().count(told), 1);
  QCOMPARE(play.text().count("## "), 1);
  // It takes them after all, and again it takes none.
  QTRY_VERIFY_WITH_TIMEOUT(server.received().size() > 60'000'000, 60'000);
  play.type("alive");
  QTRY_VERIFY(server.received().endsWith("x\r\nalive\r\n"));
  QVERIFY(!server.received().contains("lost"));
  QCOMPARE(play.text().count(told), 1);
  play.window->runActions(tooMuch);
  QCOMPARE(play.text().count(told), 2);
}

void TestAutomation::nestedLoopsEndAndTheWindowLives() {
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  settled(*play.pane).clear();
  play.type("/set n,0;/repeat 512, /repeat 512, /repeat 512, /add n, 1");
  QCOMPARE(play.text().count("## "), 1);
  QVERIFY(play.profile.variables.value("n").toInt() >= 512 * 512);
  play.type("alive");
  QTRY_COMPARE(server.received(), QByteArray("alive\r\n"));
}

void TestAutomation::aTriggerThatFeedsItselfLetsKeysThrough() {
  writeFile("triggers.txt", "\ntrigger \"ping\"\nping\n/trigger\n");
  GameServer server;
  PlayWindow play(server.port());
  QVERIFY(play.connectTo(server));
  int echoes = 0;
  connect(server.peer(), &QTcpSocket::readyRead, this, [&] {
    ++echoes;
    server.send("ping\r\n");
  });
  server.send("ping\r\n");
  QTRY_VERIFY(echoes > 20);
  play.type("typed between");
  QTRY_VERIFY(server.received().contains("typed between\r\n"));
  server.peer()->disconnect(this);
}

KELMORA_GUI_TEST_MAIN(TestAutomation)
#include "tst_automation.moc"
