#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/core/SpokenLines.h"

using namespace kelmora::terminal;

class TestSpokenLines : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void speaksEachLineOnce_data();
  void speaksEachLineOnce();
  void anUnendedLineComesOnceItIsAskedFor();
  void ofManyLinesTheLastOnesCome();
  void leftOutLinesAreCountedOnce();
  void aLongLineIsCut();
  void aLineOfMegabytesTakesNoMemory();
};

namespace {

QStringList allOf(SpokenLines& lines) {
  return lines.take(SpokenLines::Rest::Comes).lines;
}

}  // namespace

void TestSpokenLines::speaksEachLineOnce_data() {
  QTest::addColumn<QStringList>("pieces");
  QTest::addColumn<QStringList>("spoken");
  const QString separator(QChar::LineSeparator);
  QTest::newRow("nothing") << QStringList{} << QStringList{};
  QTest::newRow("two lines in one piece") << QStringList{"one\ntwo\n"} << QStringList{"one", "two"};
  QTest::newRow("the line ends of the pane")
      << QStringList{"one" + separator + "two" + QChar(QChar::ParagraphSeparator) + "three"}
      << QStringList{"one", "two", "three"};
  QTest::newRow("a line in three pieces") << QStringList{"o", "n", "e\n"} << QStringList{"one"};
  QTest::newRow("blank lines") << QStringList{"\n\n  \none\n\t\n"} << QStringList{"one"};
  QTest::newRow("blanks around a line") << QStringList{"   one two  \n"} << QStringList{"one two"};
  QTest::newRow("tabs") << QStringList{"one\ttwo\n"} << QStringList{"one two"};
  QTest::newRow("blanks in a row, as the pane has them for a tab")
      << QStringList{QStringLiteral("one\u00A0 \u00A0two\n")} << QStringList{"one two"};
  QTest::newRow("characters that have no sound")
      << QStringList{QStringLiteral("o\u0007n\u0000e\uFFFC\r\n")} << QStringList{"one"};
  QTest::newRow("letters of two halves, in two pieces")
      << QStringList{QString(QChar(0xD83D)), QString(QChar(0xDE00)) + "\n"}
      << QStringList{QString::fromUcs4(U"\U0001F600")};
}

void TestSpokenLines::speaksEachLineOnce() {
  QFETCH(const QStringList, pieces);
  SpokenLines lines;
  for (const QString& piece : pieces)
    lines.add(piece);
  QTEST(allOf(lines), "spoken");
  QCOMPARE(allOf(lines), QStringList());
}

void TestSpokenLines::anUnendedLineComesOnceItIsAskedFor() {
  SpokenLines lines;
  lines.add(u"one\nName: ");
  QVERIFY(lines.hasLines() && lines.hasRest());
  QCOMPARE(lines.take(SpokenLines::Rest::Waits).lines, QStringList{"one"});
  QVERIFY(!lines.hasLines() && lines.hasRest());
  QCOMPARE(allOf(lines), QStringList{"Name:"});
  QVERIFY(!lines.hasRest());
  lines.add(u"Robin\ntwo\n");
  QCOMPARE(allOf(lines), (QStringList{"Robin", "two"}));
}

void TestSpokenLines::ofManyLinesTheLastOnesCome() {
  SpokenLines lines;
  for (int i = 1; i <= 1000; ++i)
    lines.add(QString::number(i) + u'\n');
  const SpokenLines::Taken taken = lines.take(SpokenLines::Rest::Waits);
  QCOMPARE(taken.leftOut, 1000 - SpokenLines::mostLines);
  QCOMPARE(taken.lines.size(), SpokenLines::mostLines);
  QCOMPARE(taken.lines.first(), QString::number(1001 - SpokenLines::mostLines));
  QCOMPARE(taken.lines.last(), QString("1000"));
}

void TestSpokenLines::leftOutLinesAreCountedOnce() {
  SpokenLines lines;
  lines.add(u"one\ntwo");
  lines.leaveOut(7);
  lines.add(u"three\n");
  const SpokenLines::Taken taken = lines.take(SpokenLines::Rest::Waits);
  QCOMPARE(taken.leftOut, 9);
  QCOMPARE(taken.lines, QStringList{"three"});
  lines.add(u"four\n");
  QCOMPARE(lines.take(SpokenLines::Rest::Waits).leftOut, 0);
}

void TestSpokenLines::aLongLineIsCut() {
  const QString most(SpokenLines::longestLine, u'a');
  SpokenLines lines;
  lines.add(most + u'\n');
  QCOMPARE(allOf(lines), QStringList{most});
  lines.add(most);
  QCOMPARE(allOf(lines), QStringList{most});
  lines.add(u"bcd\ne\n");
  QCOMPARE(allOf(lines), (QStringList{QChar(0x2026), "e"}));
}

void TestSpokenLines::aLineOfMegabytesTakesNoMemory() {
  SpokenLines lines;
  const QString kilobytes(8192, u'a');
  for (int i = 0; i < 500; ++i)
    lines.add(kilobytes);
  const QStringList spoken = allOf(lines);
  QCOMPARE(spoken.size(), 1);
  QCOMPARE(spoken.first().size(), SpokenLines::longestLine + 1);
}

KELMORA_TEST_MAIN(TestSpokenLines)
#include "tst_spokenlines.moc"
