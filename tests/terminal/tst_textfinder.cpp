#include <QElapsedTimer>
#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/core/TextFinder.h"

using namespace kelmora::terminal;

using Hits = QStringList;

Q_DECLARE_METATYPE(TextFinder::Options)

class TestTextFinder : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void finds_data();
  void finds();
  void whatIsNoExpressionIsNotUsable_data();
  void whatIsNoExpressionIsNotUsable();
  void anExpressionThatTriesForeverIsGivenUp_data();
  void anExpressionThatTriesForeverIsGivenUp();
};

void TestTextFinder::finds_data() {
  QTest::addColumn<QString>("words");
  QTest::addColumn<TextFinder::Options>("options");
  QTest::addColumn<QString>("text");
  QTest::addColumn<Hits>("hits");
  using Options = TextFinder::Options;
  const QString story = "The orc hits you. Orcs hit hard.";
  QTest::newRow("words in any case") << "orc" << Options{} << story << Hits{"4+3", "18+3"};
  QTest::newRow("case where it is asked for")
      << "Orc" << Options{.matchCase = true} << story << Hits{"18+3"};
  QTest::newRow("whole words alone")
      << "hit" << Options{.wholeWords = true} << story << Hits{"23+3"};
  QTest::newRow("whole words that begin with a sign")
      << "(hit)" << Options{.wholeWords = true} << "a (hit) b" << Hits{"2+5"};
  QTest::newRow("letters of an expression as they are")
      << "a.c*" << Options{} << "abc a.c* aac" << Hits{"4+4"};
  QTest::newRow("an expression") << "o\\w+s" << Options{.expression = true} << story
                                 << Hits{"18+4"};
  QTest::newRow("whole words of an expression with a choice")
      << "hit|you" << Options{.wholeWords = true, .expression = true} << story
      << Hits{"13+3", "23+3"};
  QTest::newRow("nothing for no words") << "" << Options{} << story << Hits{};
  QTest::newRow("nothing of no length")
      << "x*" << Options{.expression = true} << "axxb" << Hits{"1+2"};
  QTest::newRow("a line's start and end within a paragraph")
      << "^b$" << Options{.expression = true} << QString("a\u2028b\u2028c") << Hits{"2+1"};
  QTest::newRow("no overlap") << "aa" << Options{} << "aaaa" << Hits{"0+2", "2+2"};
  QTest::newRow("a hard blank as a blank")
      << "a  b" << Options{} << QString("x a \u00a0b") << Hits{"2+4"};
  QTest::newRow("beside half a surrogate pair")
      << "orc" << Options{} << QChar(0xD800) + QString("an orc") + QChar(0xDC00) << Hits{"4+3"};
  QTest::newRow("a whole pair") << QString::fromUtf8("\U0001F600") << Options{}
                                << QString::fromUtf8("a \U0001F600") << Hits{"2+2"};
  QTest::newRow("letters of all kinds") << QString::fromUtf8("\u00dcber") << Options{}
                                        << QString::fromUtf8("\u00fcber alles") << Hits{"0+4"};
}

void TestTextFinder::finds() {
  QFETCH(const QString, words);
  QFETCH(const TextFinder::Options, options);
  QFETCH(const QString, text);
  Hits found;
  for (const TextFinder::Hit& hit : TextFinder(words, options).hitsIn(text))
    found << QStringLiteral("%1+%2").arg(hit.start).arg(hit.length);
  QTEST(found, "hits");
}

void TestTextFinder::whatIsNoExpressionIsNotUsable_data() {
  QTest::addColumn<QString>("words");
  QTest::newRow("nothing") << "";
  QTest::newRow("an open bracket") << "(a";
  QTest::newRow("a bracket too many") << "a)(?:b";
  QTest::newRow("a class without an end") << "[a";
}

void TestTextFinder::whatIsNoExpressionIsNotUsable() {
  QFETCH(const QString, words);
  for (const bool wholeWords : {false, true}) {
    const TextFinder finder(words, {.wholeWords = wholeWords, .expression = true});
    QVERIFY(!finder.isUsable());
    QVERIFY(finder.hitsIn("a (a) b").empty());
  }
  QVERIFY(words.isEmpty() || TextFinder(words, {}).isUsable());
}

void TestTextFinder::anExpressionThatTriesForeverIsGivenUp_data() {
  QTest::addColumn<QString>("words");
  QTest::newRow("repeats within repeats") << "(a+)+$";
  QTest::newRow("choices that overlap") << "(a|a)*b";
  QTest::newRow("repeats side by side") << "a*a*a*a*a*a*b";
  QTest::newRow("deep brackets") << "((((a*)*)*)*)*b";
}

void TestTextFinder::anExpressionThatTriesForeverIsGivenUp() {
  QFETCH(const QString, words);
  const TextFinder finder(words, {.expression = true});
  QVERIFY(finder.isUsable());
  QElapsedTimer timer;
  timer.start();
  const auto hits = finder.hitsIn(QString(4096, 'a') + "c");
  QVERIFY(hits.empty());
  QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
}

KELMORA_TEST_MAIN(TestTextFinder)
#include "tst_textfinder.moc"
