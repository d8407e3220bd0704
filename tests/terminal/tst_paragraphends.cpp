#include <QTest>
#include <random>

#include "support/ScratchMain.h"
#include "terminal/core/ParagraphEnds.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

constexpr ParagraphEnds::Lengths lengths{.longParagraph = 4, .longestParagraph = 10};

/// The text with a bar at each paragraph end; slashes stand for line ends.
QString divided(ParagraphEnds& ends, QString text) {
  text.replace('/', QChar::LineSeparator);
  QString shown;
  qsizetype start = 0;
  while (const auto end = ends.next(text, start)) {
    shown += text.mid(start, end->start - start) + '|';
    start = end->behind();
  }
  return QString(shown + text.mid(start)).replace(QChar::LineSeparator, '/');
}

/// The same in the simplest way: after each character the whole last paragraph is
/// looked at.
QString dividedPlainly(QString text) {
  QString done;
  QString last;
  for (const QChar character : text.replace('/', QChar::LineSeparator)) {
    last += character;
    if (last.size() <= lengths.longParagraph)
      continue;
    const bool isTooLong = last.size() > lengths.longestParagraph;
    if (character == QChar::LineSeparator && !isTooLong) {
      done += last.chopped(1) + '|';
      last.clear();
    } else if (isTooLong) {
      const qsizetype kept = character.isLowSurrogate() ? 2 : 1;
      done += last.chopped(kept) + '|';
      last = last.last(kept);
    }
  }
  return QString(done + last).replace(QChar::LineSeparator, '/');
}

}  // namespace

class TestParagraphEnds : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void divides_data();
  void divides();
  void randomTextsInPiecesOfAnySize();
  void goesOnWithTheLastParagraph();
  void aLineOfAtLeastSoManyCharacters_data();
  void aLineOfAtLeastSoManyCharacters();
  void fewerCharactersNeverEndMoreParagraphs();
};

void TestParagraphEnds::divides_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("expected");
  const auto row = [](const char* name, const QString& text, const QString& expected) {
    QTest::newRow(name) << text << expected;
  };
  row("nothing ends nothing", "", "");
  row("short lines share a paragraph", "a/b/", "a/b/");
  row("a line end before the length ends none", "abc/d", "abc/d");
  row("a line end at the length ends one", "abcd/e", "abcd|e");
  row("so does the first one behind it", "abcdefg/h", "abcdefg|h");
  row("line ends count as characters", "///////", "////|//");
  row("each full paragraph ends", "abcdef/ghijkl/mnopqr/", "abcdef|ghijkl|mnopqr|");
  row("a line without an end ends none below the longest", "abcdefghij", "abcdefghij");
  row("beyond the longest it ends anywhere", "abcdefghijk", "abcdefghij|k");
  row("again and again", "abcdefghijabcdefghijab", "abcdefghij|abcdefghij|ab");
  row("a line end at the longest comes too late", "abcdefghij/k", "abcdefghij|/k");
  row("one before it is in time", "abcdefghi/k", "abcdefghi|k");
  row("a surrogate pair is not torn", QStringLiteral("abcdefghi\U0001F600k"),
      QStringLiteral("abcdefghi|\U0001F600k"));
  row("one that ends there is kept", QStringLiteral("abcdefgh\U0001F600k"),
      QStringLiteral("abcdefgh\U0001F600|k"));
}

void TestParagraphEnds::divides() {
  QFETCH(const QString, text);
  ParagraphEnds ends(lengths);
  QTEST(divided(ends, text), "expected");
}

void TestParagraphEnds::randomTextsInPiecesOfAnySize() {
  std::mt19937 random(1);
  const auto pick = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  for (int round = 0; round < 20000; ++round) {
    ParagraphEnds ends(lengths);
    QString whole;
    QString inPieces;
    for (int piece = pick(6); piece > 0; --piece) {
      QString text;
      for (int left = pick(30); left > 0; --left)
        text += pick(6) == 0   ? QStringLiteral("/")
                : pick(9) == 0 ? QStringLiteral("\U0001F600")
                               : QStringLiteral("x");
      whole += text;
      inPieces += divided(ends, text);
    }
    QCOMPARE(inPieces, dividedPlainly(whole));
  }
}

void TestParagraphEnds::goesOnWithTheLastParagraph() {
  ParagraphEnds ends(lengths, 3);
  QCOMPARE(divided(ends, "a/b"), QStringLiteral("a|b"));
  QCOMPARE(ends.length(), 1);
  ends.addCharacters(2);
  QCOMPARE(divided(ends, "a/b"), QStringLiteral("a|b"));
  ends.beginAnew();
  QCOMPARE(divided(ends, "a/b"), QStringLiteral("a/b"));
}

void TestParagraphEnds::aLineOfAtLeastSoManyCharacters_data() {
  QTest::addColumn<QList<int>>("lines");
  QTest::addColumn<int>("ended");
  QTest::newRow("short lines share a paragraph") << QList<int>{1, 1} << 0;
  QTest::newRow("the line in which the length is reached ends one") << QList<int>{1, 1, 1} << 1;
  QTest::newRow("line breaks count") << QList<int>{0, 0, 0, 0, 0} << 1;
  QTest::newRow("each full paragraph counts") << QList<int>{4, 9, 20} << 3;
}

void TestParagraphEnds::aLineOfAtLeastSoManyCharacters() {
  QFETCH(const QList<int>, lines);
  ParagraphEnds ends(lengths);
  int ended = 0;
  for (const int line : lines)
    ended += ends.endsWithLine(line) ? 1 : 0;
  QTEST(ended, "ended");
}

void TestParagraphEnds::fewerCharactersNeverEndMoreParagraphs() {
  std::mt19937 random(1);
  const auto pick = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  for (int round = 0; round < 20000; ++round) {
    ParagraphEnds exact(lengths);
    ParagraphEnds atLeast(lengths);
    qsizetype ends = 0;
    int counted = 0;
    for (int line = 0; line < 20; ++line) {
      const int length = pick(14);
      ends += divided(exact, QString(length, 'x') + '/').count('|');
      counted += atLeast.endsWithLine(length - std::min(length, pick(4))) ? 1 : 0;
      QVERIFY(counted <= ends);
    }
  }
}

KELMORA_TEST_MAIN(TestParagraphEnds)
#include "tst_paragraphends.moc"
