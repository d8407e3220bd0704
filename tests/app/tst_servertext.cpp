#include <QApplication>
#include <QProgressBar>
#include <QRandomGenerator>
#include <QSoundEffect>

#include "PlayWindow.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"

/// The server's bytes on their way to the pane.
class TestServerText : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void shows_data();
  void shows();
  void aBellSoundsWhereBeepsAreOn_data();
  void aBellSoundsWhereBeepsAreOn();
  void coloursReachThePane();
  void aColourLastsAcrossReads();
  void aLinkIsAnAnchor();
  void aLinkIsTextWhereLinksAreOff();
  void aPromptMovesTheBars();
  void serverAndEchoKeepTheirOrder();
  void theServersEndInsideAnEscapeLosesNothing();
  void invalidUtf8ShowsReplacementCharacters();
  void anyBytesCutAnywhereLeaveTheWindowAlive_data();
  void anyBytesCutAnywhereLeaveTheWindowAlive();
  void oneByteAtATime();
  void aBurstIsOneReadHoweverLong_data();
  void aBurstIsOneReadHoweverLong();
  void coloursOfAnyDepthAreShownInTime_data();
  void coloursOfAnyDepthAreShownInTime();
  void markupOfAnyDepthIsSurvived_data();
  void markupOfAnyDepthIsSurvived();

 private:
  std::unique_ptr<GameServer> server_;
};

void TestServerText::initTestCase() {
  server_ = std::make_unique<GameServer>();
}

void TestServerText::shows_data() {
  QTest::addColumn<QByteArray>("bytes");
  QTest::addColumn<PlayWindow::Options>("options");
  QTest::addColumn<QString>("shown");
  const PlayWindow::Options defaults;
  const PlayWindow::Options html{{"parseHtml", 1}};
  const PlayWindow::Options colourless{{"displayAnsiColor", 0}};
  QTest::newRow("markup is shown as it is written") << QByteArray("a<b>c") << defaults << "a<b>c";
  QTest::newRow("with tags parsed, markup is markup") << QByteArray("a<b>c</b>") << html << "ac";
  QTest::newRow("a carriage return and a line feed are one line break")
      << QByteArray("one\r\ntwo") << defaults << "one\ntwo";
  QTest::newRow("runs of blanks keep their width") << QByteArray("a   b") << defaults << "a   b";
  QTest::newRow("telnet commands are dropped") << QByteArray(
                                                      "a\xff\xfb\x01"
                                                      "b")
                                               << defaults << "ab";
  QTest::newRow("colour codes leave no trace in the text")
      << QByteArray("\x1b[31mred\x1b[0m") << defaults << "red";
  QTest::newRow("with colours off their codes are still taken out")
      << QByteArray("\x1b[31mred\x1b[0m") << colourless << "red";
  QTest::newRow("UTF-8 is shown") << QByteArray("caf\xc3\xa9") << defaults
                                  << QString::fromUtf8("caf\xc3\xa9");
  QTest::newRow("a bell leaves no trace") << QByteArray(
                                                 "a\x07"
                                                 "b")
                                          << defaults << "ab";
  QTest::newRow("a bell that is switched off leaves no trace")
      << QByteArray(
             "a\x07"
             "b")
      << PlayWindow::Options{{"playBeeps", 0}} << "ab";
}

void TestServerText::shows() {
  QFETCH(const QByteArray, bytes);
  QFETCH(const PlayWindow::Options, options);
  QFETCH(QString, shown);
  PlayWindow play(server_->port(), options);
  QVERIFY(play.connectTo(*server_));
  settled(*play.pane).clear();
  server_->send(bytes + ".");
  QTRY_VERIFY(play.text().endsWith('.'));
  QCOMPARE(play.text().replace(QChar::Nbsp, ' '), shown + ".");
}

void TestServerText::aBellSoundsWhereBeepsAreOn_data() {
  QTest::addColumn<int>("playBeeps");
  QTest::addColumn<QByteArray>("bytes");
  QTest::addColumn<int>("sounds");
  QTest::newRow("beeps on") << 1 << QByteArray("a\a\a.") << 1;
  QTest::newRow("beeps off") << 0 << QByteArray("a\a\a.") << 0;
  QTest::newRow("no bell") << 1 << QByteArray("a.") << 0;
}

void TestServerText::aBellSoundsWhereBeepsAreOn() {
  QFETCH(const int, playBeeps);
  QFETCH(const QByteArray, bytes);
  QFETCH(const int, sounds);
  PlayWindow play(server_->port(), {{"playBeeps", playBeeps}});
  QVERIFY(play.connectTo(*server_));
  server_->send(bytes);
  QTRY_VERIFY(play.text().endsWith('.'));
  QCOMPARE(play.window->findChildren<QSoundEffect*>().size(), sounds);
}

void TestServerText::coloursReachThePane() {
  PlayWindow play(server_->port());
  QVERIFY(play.connectTo(*server_));
  server_->send("plain \x1b[31mred \x1b[42mongreen \x1b[0m\x1b[38;5;196mpalette\x1b[0m.");
  QTRY_VERIFY(play.text().endsWith("palette."));
  QCOMPARE(play.formatOf("plain").foreground().color(), QColor("#BDBDBD"));
  QCOMPARE(play.formatOf("plain").background().color(), QColor("#000000"));
  QCOMPARE(play.formatOf("red").foreground().color(), QColor("#660000"));
  QCOMPARE(play.formatOf("ongreen").background().color(), QColor("#006600"));
  QCOMPARE(play.formatOf("palette").foreground().color(), QColor("#ff0000"));
}

void TestServerText::aColourLastsAcrossReads() {
  PlayWindow play(server_->port());
  QVERIFY(play.connectTo(*server_));
  server_->send("\x1b[32mfirst.");
  QTRY_VERIFY(play.text().endsWith("first."));
  server_->send("second.");
  QTRY_VERIFY(play.text().endsWith("second."));
  QCOMPARE(play.formatOf("second").foreground().color(), QColor("#006600"));
}

void TestServerText::aLinkIsAnAnchor() {
  PlayWindow play(server_->port());
  QVERIFY(play.connectTo(*server_));
  server_->send("see http://a.b/c now.");
  QTRY_VERIFY(play.text().endsWith("now."));
  QVERIFY(play.formatOf("a.b/c").isAnchor());
  QVERIFY(!play.formatOf("now").isAnchor());
}

void TestServerText::aLinkIsTextWhereLinksAreOff() {
  PlayWindow play(server_->port(), {{"displayURLs", 0}});
  QVERIFY(play.connectTo(*server_));
  server_->send("see http://a.b/c now.");
  QTRY_VERIFY(play.text().endsWith("now."));
  QVERIFY(!play.formatOf("a.b/c").isAnchor());
}

void TestServerText::aPromptMovesTheBars() {
  PlayWindow play(server_->port());
  QVERIFY(play.connectTo(*server_));
  server_->send("You rest.\r\n\x1b[32mhp: [ 50 / 200 ], sp: [ 10 / 10 ], ep: [ 0 / 80 ]\r\n");
  const auto bars = play.window->findChildren<QProgressBar*>("progHP");
  QTRY_COMPARE(bars.at(0)->value(), 25);
  QCOMPARE(bars.at(1)->value(), 100);
  QCOMPARE(bars.at(2)->value(), 0);
}

void TestServerText::serverAndEchoKeepTheirOrder() {
  PlayWindow play(server_->port());
  QVERIFY(play.connectTo(*server_));
  settled(*play.pane).clear();
  for (int i = 0; i < 5; ++i) {
    play.type(QStringLiteral("ask%1").arg(i));
    server_->send("answer" + QByteArray::number(i) + "\r\n");
    QTRY_VERIFY(play.text().contains(QStringLiteral("answer%1\n").arg(i)));
  }
  QCOMPARE(play.text(), QString("ask0\nanswer0\nask1\nanswer1\nask2\nanswer2\nask3\nanswer3\n"
                                "ask4\nanswer4\n"));
}

void TestServerText::theServersEndInsideAnEscapeLosesNothing() {
  PlayWindow play(server_->port());
  QVERIFY(play.connectTo(*server_));
  server_->send("last words\x1b[3");
  server_->peer()->close();
  QTRY_COMPARE(play.connectionStates(), QString("+-+"));
  QVERIFY(play.text().contains("last words\nDisconnected from host!"));
}

void TestServerText::invalidUtf8ShowsReplacementCharacters() {
  PlayWindow play(server_->port());
  QVERIFY(play.connectTo(*server_));
  settled(*play.pane).clear();
  server_->send("a\xe9 b.");
  QTRY_COMPARE(play.text(), QString("a\ufffd b."));
}

void TestServerText::anyBytesCutAnywhereLeaveTheWindowAlive_data() {
  QTest::addColumn<PlayWindow::Options>("options");
  QTest::newRow("as it comes") << PlayWindow::Options{};
  QTest::newRow("with tags parsed") << PlayWindow::Options{{"parseHtml", 1}};
}

void TestServerText::anyBytesCutAnywhereLeaveTheWindowAlive() {
  QFETCH(const PlayWindow::Options, options);
  PlayWindow play(server_->port(), options);
  QVERIFY(play.connectTo(*server_));
  QRandomGenerator random(20261121);
  const QByteArrayList pieces{"\x1b[",
                              "\x1b",
                              "38;5;",
                              "48;5;",
                              "m",
                              "<",
                              ">",
                              "<table><tr><td>",
                              "<img src=\"file:///etc/passwd\">",
                              "<ul><li>",
                              "&#",
                              "&lt;",
                              "http://",
                              "www.",
                              "\r\n",
                              "\n",
                              " ",
                              "\t",
                              "\x07",
                              "\xff",
                              "\xff\xfd",
                              "word",
                              "\xe2\x82",
                              "\xac",
                              QByteArray(1, '\0'),
                              "hp: [",
                              "999999999999"};
  for (int round = 0; round < 300; ++round) {
    QByteArray bytes;
    const int length = random.bounded(60);
    for (int i = 0; i < length; ++i) {
      if (random.bounded(4) == 0)
        bytes += static_cast<char>(random.bounded(256));
      else
        bytes += pieces.at(random.bounded(int(pieces.size())));
    }
    server_->send(bytes);
    if (random.bounded(3) == 0)
      QTest::qWait(1);
  }
  // Ends any sequence, tag or telnet triplet that is still open.
  server_->send("m>>m\x1b[m\r\nstill here");
  QTRY_VERIFY_WITH_TIMEOUT(play.text().contains("still here"), 60000);
  play.type("alive");
  QTRY_VERIFY(server_->received().endsWith("alive\r\n"));
}

void TestServerText::oneByteAtATime() {
  PlayWindow play(server_->port());
  QVERIFY(play.connectTo(*server_));
  settled(*play.pane).clear();
  server_->peer()->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  // Without blanks: one that begins a read is the toolkit's to collapse.
  const QByteArray line = "slow,but(whole)\r\n";
  for (const char byte : line) {
    server_->send(QByteArray(1, byte));
    QTest::qWait(2);
  }
  QTRY_COMPARE(play.text(), QString("slow,but(whole)\n"));
}

void TestServerText::aBurstIsOneReadHoweverLong_data() {
  QTest::addColumn<QByteArray>("burst");
  QTest::addColumn<PlayWindow::Options>("options");
  const PlayWindow::Options defaults;
  const QByteArray lines = QByteArray("a line of the game\r\n").repeated(1500);
  QTest::newRow("in a colour of the palette") << "\x1b[38;5;208m" + lines + "the end" << defaults;
  QTest::newRow("in bold") << "\x1b[31;\x1b[31m\x1b[1m" + lines + "the end" << defaults;
  QTest::newRow("in a tag") << "<u>" + lines + "the end" << PlayWindow::Options{{"parseHtml", 1}};
}

void TestServerText::aBurstIsOneReadHoweverLong() {
  QFETCH(const QByteArray, burst);
  QFETCH(const PlayWindow::Options, options);
  PlayWindow play(server_->port(), options);
  QVERIFY(play.connectTo(*server_));
  settled(*play.pane).clear();
  server_->send(burst);
  QTRY_VERIFY(play.text().endsWith("the end"));
  // Neither does a colour's text stand between the lines, nor does a look end.
  const QString plain = play.text().remove("a line of the game").remove("the end").trimmed();
  QCOMPARE(plain, QString());
  QCOMPARE(play.text().count("a line of the game"), 1500);
  const QTextCharFormat first = play.formatOf("a line of the game");
  const QTextCharFormat last = play.formatOf("the end");
  QCOMPARE(last.foreground(), first.foreground());
  QCOMPARE(last.fontUnderline(), first.fontUnderline());
}

void TestServerText::coloursOfAnyDepthAreShownInTime_data() {
  QTest::addColumn<QByteArray>("bytes");
  QTest::addColumn<PlayWindow::Options>("options");
  const QByteArray parameters = "\x1b[" + QByteArray(65536, ';') + "m";
  QTest::newRow("a code of endless parameters") << parameters << PlayWindow::Options{};
  QTest::newRow("a code of endless parameters, with tags parsed")
      << parameters << PlayWindow::Options{{"parseHtml", 1}};
  QTest::newRow("codes without text")
      << QByteArray("\x1b[31m\x1b[m").repeated(8192) << PlayWindow::Options{};
  QTest::newRow("a stored colour that opens a list at each code")
      << QByteArray("\x1b[m").repeated(8192) << PlayWindow::Options{{"white", "\"><ul>"}};
}

void TestServerText::coloursOfAnyDepthAreShownInTime() {
  QFETCH(const QByteArray, bytes);
  QFETCH(const PlayWindow::Options, options);
  PlayWindow play(server_->port(), options);
  QVERIFY(play.connectTo(*server_));
  server_->send(bytes + "the end of it");
  // Takes a fraction of a second; with all of them nested it takes minutes.
  QTRY_VERIFY_WITH_TIMEOUT(play.text().contains("the end of it"), 20000);
}

void TestServerText::markupOfAnyDepthIsSurvived_data() {
  QTest::addColumn<QByteArray>("markup");
  for (const char* tag :
       {"<table><tr><td>", "<ul><li>", "<blockquote>", "<div>", "<b>", "<p>", "<a href=\"x\">",
        "<table width=999999999 cellpadding=999999>", "<hr>", "<pre>", "<h1>", "<font size=7>",
        "<center>", "<div style=\"margin-left:999999px\">"})
    QTest::newRow(tag) << QByteArray(tag);
}

void TestServerText::markupOfAnyDepthIsSurvived() {
  QFETCH(const QByteArray, markup);
  PlayWindow play(server_->port(), {{"parseHtml", 1}});
  QVERIFY(play.connectTo(*server_));
  server_->send(markup.repeated(3000));
  server_->send("the end of it");
  QTRY_VERIFY_WITH_TIMEOUT(play.text().contains("the end of it"), 60000);
  play.window->grab();
}

KELMORA_GUI_TEST_MAIN(TestServerText)
#include "tst_servertext.moc"
