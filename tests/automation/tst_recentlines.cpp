#include "automation/core/RecentLines.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

class TestRecentLines : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theLineThatIsShown_data();
  void theLineThatIsShown();
  void oldLinesAreForgotten();
  void ofALongLineTheBeginningIsKept();
  void ofALongLineOfThePaneTheNeighbourhoodIsLookedUp();
  void noLineTakesLongToLookUp_data();
  void noLineTakesLongToLookUp();
};

void TestRecentLines::theLineThatIsShown_data() {
  QTest::addColumn<QByteArrayList>("lines");
  QTest::addColumn<QString>("shown");
  QTest::addColumn<QString>("clicked");  // the words of it that the mouse is on
  QTest::addColumn<QByteArray>("line");
  const auto row = [](const char* what, const QByteArrayList& lines, const QString& shown,
                      const QString& clicked, const QByteArray& line) {
    QTest::newRow(what) << lines << shown << clicked << line;
  };
  const QByteArrayList prompted{"HP:10 SP:20> ", "Ok.", "You rest."};
  row("it is among others", {"You rest.", "The orc dies.", "You win."}, "The orc dies.", "dies",
      "The orc dies.");
  row("a longer one does not hide it", {"The orc dies. You win.", "The orc dies."}, "The orc dies.",
      "orc", "The orc dies.");
  row("a word of it that came alone does not hide it", {"Bob says \"hello\".", "hello"},
      "Bob says \"hello\".", "hello", "Bob says \"hello\".");
  row("behind a prompt it is what the mouse is on", prompted, "HP:10 SP:20> Ok.", "Ok.", "Ok.");
  row("the prompt is one as well", prompted, "HP:10 SP:20> Ok.", "SP", "HP:10 SP:20> ");
  row("the echo behind a prompt is none, the prompt is", prompted, "HP:10 SP:20> kill", "kill",
      "HP:10 SP:20> ");
  row("of two that are the same but for blanks it is the newest", {"a  b c", "a b  c"}, "a b c",
      "b", "a b  c");
  row("umlauts are the same in both",
      {"Gr\xc3\xbc\xc3\x9f"
       "e aus K\xc3\xb6ln"},
      QString::fromUtf8("Gr\xc3\xbc\xc3\x9f"
                        "e aus K\xc3\xb6ln"),
      "aus",
      "Gr\xc3\xbc\xc3\x9f"
      "e aus K\xc3\xb6ln");
  row("a tab is shown as blanks", {"Name:&nbsp;&nbsp;&nbsp;&nbsp;Bob"}, "Name:    Bob", "Bob",
      "Name:&nbsp;&nbsp;&nbsp;&nbsp;Bob");
  row("an address gets its scheme", {"see www.kelmora.example now"},
      "see http://www.kelmora.example now", "now", "see www.kelmora.example now");
  row("tags are not shown", {"The <b>orc</b> dies."}, "The orc dies.", "orc",
      "The <b>orc</b> dies.");
  row("tags are shown", {"The <b>orc</b> dies."}, "The <b>orc</b> dies.", "orc",
      "The <b>orc</b> dies.");
  row("a tag goes on in the next line", {"The orc dies. <img"}, "The orc dies.", "orc",
      "The orc dies. <img");
  row("entities are resolved", {"Bob &amp; Al rest."}, "Bob & Al rest.", "rest",
      "Bob &amp; Al rest.");
  row("tags and entities", {"<b>&lt; The orc</b> dies."}, "<b>< The orc</b> dies.", "dies",
      "<b>&lt; The orc</b> dies.");
  row("tags that are not shown and entities", {"<b>&lt; The orc</b> dies."}, "< The orc dies.",
      "dies", "<b>&lt; The orc</b> dies.");
  row("a message of the client is none", {"The orc dies.", ""}, "++ Variable set", "set", "");
  row("nothing is shown in an empty line", {"The orc dies.", ""}, "", "", "");
  row("nothing came", {}, "The orc dies.", "orc", "");
}

void TestRecentLines::theLineThatIsShown() {
  QFETCH(const QByteArrayList, lines);
  QFETCH(const QString, shown);
  QFETCH(const QString, clicked);
  RecentLines recent;
  for (const QByteArray& line : lines)
    recent.add(line);
  QTEST(recent.shownAt(shown, shown.indexOf(clicked) + clicked.size() / 2), "line");
}

void TestRecentLines::oldLinesAreForgotten() {
  RecentLines recent;
  const auto isKept = [&recent](const QString& line) {
    return recent.shownAt(line, 0) == line.toLatin1();
  };
  recent.add("the first of many");
  recent.add("the second of many");
  for (qsizetype line = 2; line < RecentLines::mostLines; ++line)
    recent.add("x");
  QVERIFY(isKept("the first of many"));
  recent.add("x");
  QVERIFY(!isKept("the first of many"));
  QVERIFY(isKept("the second of many"));
  for (qsizetype bytes = 0; bytes < RecentLines::mostBytes; bytes += 2000)
    recent.add(QByteArray(2000, 'y'));
  QVERIFY(!isKept("the second of many"));
  QVERIFY(!isKept("x"));
}

void TestRecentLines::ofALongLineTheBeginningIsKept() {
  const QByteArray line = "The beginning " + QByteArray("\xc3\xbc ").repeated(5000);
  RecentLines recent;
  recent.add(line);
  const QByteArray kept = recent.shownAt(QString::fromUtf8(line), 3);
  QVERIFY(kept.size() > RecentLines::longestLine - 10 && kept.size() <= RecentLines::longestLine);
  QVERIFY(line.startsWith(kept));
  const QByteArray oneWord(5000, 'x');
  recent.add(oneWord);
  QCOMPARE(recent.shownAt(oneWord, 3), oneWord.first(RecentLines::longestLine));
}

void TestRecentLines::ofALongLineOfThePaneTheNeighbourhoodIsLookedUp() {
  RecentLines recent;
  recent.add("The orc dies.");
  recent.add("You win.");
  const QString shown = "The orc dies." + QString(RecentLines::longestShown, u' ') + "You win.";
  QCOMPARE(recent.shownAt(shown, 5), QByteArray("The orc dies."));
  QCOMPARE(recent.shownAt(shown, shown.size() - 2), QByteArray("You win."));
  QCOMPARE(recent.shownAt(shown, shown.size() / 2), QByteArray());
}

void TestRecentLines::noLineTakesLongToLookUp_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<QString>("shown");
  const QByteArray many(RecentLines::longestLine - 4, 'a');
  const QString shown(RecentLines::longestShown, u'a');
  QTest::newRow("one that differs at its beginning") << 'b' + many << shown;
  QTest::newRow("one that differs at its end") << many + 'b' << shown;
  QTest::newRow("one with an entity and a word that differs at its beginning")
      << "& b" + many.chopped(2) << shown;
  QTest::newRow("one of tags") << QByteArray("<>a").repeated(many.size() / 3) << shown;
  QTest::newRow("one of beginnings of tags") << QByteArray(many.size(), '<') << shown;
  QTest::newRow("one of entities")
      << QByteArray("& a ").repeated(many.size() / 4) << QString("b ").repeated(shown.size() / 2);
}

void TestRecentLines::noLineTakesLongToLookUp() {
  QFETCH(const QByteArray, line);
  QFETCH(const QString, shown);
  RecentLines recent;
  for (qsizetype bytes = 0; bytes < RecentLines::mostBytes; bytes += line.size())
    recent.add(line);
  for (const qsizetype place : {qsizetype{0}, shown.size()}) {
    const ProcessorClock clock;
    (void)recent.shownAt(shown, place);
    QVERIFY2(clock.elapsed() < 2000, QByteArray::number(clock.elapsed()).constData());
  }
}

KELMORA_TEST_MAIN(TestRecentLines)
#include "tst_recentlines.moc"
