#include "support/ScratchMain.h"
#include "terminal/core/ParagraphCount.h"

class TestParagraphCount : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void lines_data();
  void lines();
  void markup_data();
  void markup();
  void aLineMayComeInParts();
  void plainParagraphsBeginAnew();
};

constexpr qsizetype length = 10;

void TestParagraphCount::lines_data() {
  QTest::addColumn<QByteArray>("plain");
  QTest::addColumn<qint64>("ended");
  const auto row = [](const char* name, const QByteArray& plain, qint64 ended) {
    QTest::newRow(name) << plain << ended;
  };
  row("short lines share a paragraph", "abc\nabc\n", 0);
  row("the line in which the length is reached ends one", "abcdefghijk\n", 1);
  row("a line without an end ends none", "abcdefghijklmnop", 0);
  row("line breaks count as characters", "\n\n\n\n\n\n\n\n\n\n\n", 1);
  row("a blank that begins a line is not shown", " bcdefghij\n", 0);
  row("bytes that continue a character are none",
      QByteArray("\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\n"), 0);
  row("an entity may be one character", "&thetasym;\n", 0);
  row("a doubled scheme may vanish", "http://http://a\n", 0);
  row("so may a secure one", "https://https://https://a\n", 0);
  row("so may the beginning of an address", "www.Www.www.www.www.\n", 0);
  row("blanks in a row may collapse", "a               b\n", 0);
  row("a blank behind a character is shown", "a b c d e f\n", 1);
  row("blanks beyond ASCII may collapse",
      QByteArray("\xE3\x80\x80\xE2\x80\x83\xE1\x9A\x80\xC2\x85").repeated(5) + "\n", 0);
  row("a text with paragraphs of its own counts as none",
      "abcdefghijkl\n\xE2\x80\xA9\nabcdefghijkl\n", 0);
  row("also where an entity ends them", "abcdefghijkl\n&#8233;\nabcdefghijkl\n", 0);
  row("kana are characters", QByteArray("\xE3\x81\x82").repeated(12) + "\n", 1);
  row("frames are characters", QByteArray("\xE2\x94\x80").repeated(12) + "\n", 1);
  row("umlauts are characters", QByteArray("\xC3\xA4").repeated(12) + "\n", 1);
  row("controls are not shown", QByteArray("\x01\x01\x01\x01\x01\x01\x01\x01\x01\x01\x01\n"), 0);
  row("each full paragraph counts", QByteArray("abcdefghijkl\n").repeated(7), 7);
}

void TestParagraphCount::lines() {
  QFETCH(const QByteArray, plain);
  QFETCH(const qint64, ended);
  ParagraphCount count(length);
  count.addLines(plain);
  QCOMPARE(count.ended(), ended);
}

void TestParagraphCount::markup_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<bool>("inlineOnly");
  QTest::addColumn<qint64>("ended");
  const auto row = [](const char* name, const QString& html, bool inlineOnly, qint64 ended) {
    QTest::newRow(name) << html << inlineOnly << ended;
  };
  row("text and line breaks", "abcdefghijk<br>\nabc<br>\n", true, 1);
  row("tags are not shown", "<span style=\"color:#ff0000\"><b>abc</b><br>\n", true, 0);
  row("an entity is one character at most", "a&nbsp;&nbsp;b<br>\n", true, 0);
  row("a paragraph tag works on behind it", "<p>abcdefghijk<br>\n", false, 0);
  row("so does an alignment", "<center>a</center>", false, 0);
  row("a tag without an end", "abc<br", true, 0);
}

void TestParagraphCount::markup() {
  QFETCH(const QString, html);
  QFETCH(const bool, inlineOnly);
  QFETCH(const qint64, ended);
  ParagraphCount count(length);
  QCOMPARE(count.addMarkup(html), inlineOnly);
  QCOMPARE(count.ended(), ended);
}

void TestParagraphCount::aLineMayComeInParts() {
  ParagraphCount count(length);
  count.addLines("abcdefg");
  count.addLines("hijklmn\n");
  QCOMPARE(count.ended(), 1);
}

void TestParagraphCount::plainParagraphsBeginAnew() {
  ParagraphCount count(length);
  count.addLines("abcdefg");
  count.addParagraphs(3);
  count.addLines("hijklmn\n");
  QCOMPARE(count.ended(), 3);
  count.addParagraphs(0);
  count.addLines("hijklmn\n");
  QCOMPARE(count.ended(), 4);
}

KELMORA_TEST_MAIN(TestParagraphCount)
#include "tst_paragraphcount.moc"
