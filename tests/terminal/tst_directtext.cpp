#include <QTest>

#include "support/ScratchMain.h"
#include "terminal/view/DirectText.h"

/// What the client makes itself of the game's text is read without the
/// toolkit's importer, which costs many times as much; all else is left to it.
class TestDirectText : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void isRead_data();
  void isRead();
  void isLeftToTheImporter_data();
  void isLeftToTheImporter();
  void aLinkKnowsItsTarget();
};

void TestDirectText::isRead_data() {
  QTest::addColumn<QString>("html");
  QTest::addColumn<QString>("text");
  const auto row = [](const char* name, const char* html, const char* text) {
    QTest::newRow(name) << QString::fromUtf8(html) << QString::fromUtf8(text);
  };
  row("plain text", "You see a lamp.", "You see a lamp.");
  row("a line break", "a<br>b", "a\u2028b");
  row("a colour", R"(<span style="color:#0a9FcF">a)", "a");
  row("a background", R"(<span style="background-color:#990000">a)", "a");
  row("both", R"(<span style="color:#BDBDBD;background-color:#000000">a)", "a");
  row("a web link", R"(<a href="http://a.example/?b=c&lt;d">a</a> b)", "a b");
  row("the entities of blanks and brackets", "a&#32;b&nbsp;c&lt;d&gt;", "a b\u00A0c<d>");
  row("an ampersand", "Tom & Jerry", "Tom & Jerry");
  row("an ampersand in front of too many letters", "&abcdefghi", "&abcdefghi");
  row("nothing", "", "");
}

void TestDirectText::isRead() {
  QFETCH(const QString, html);
  const auto read = DirectText::read(html);
  QVERIFY(read);
  QTEST(read->text, "text");
}

void TestDirectText::isLeftToTheImporter_data() {
  QTest::addColumn<QString>("html");
  for (const char* html : {"<b>a</b>",
                           "<span>a",
                           R"(<span style="color:red">a)",
                           R"(<span style="color:#12345">a)",
                           R"(<span style="color:#12345g">a)",
                           R"(<span style="color:#12345/">a)",
                           R"(<span style="color:#12345:">a)",
                           R"(<span style="color:#12345@">a)",
                           R"(<span style="color:x123456">a)",
                           R"(<span style="color:#123456 ">a)",
                           R"(<span style="color:#123456;color:#123456">a)",
                           R"(<span style="background-color:#123456;">a)",
                           R"(<span style="color:#123456)",
                           R"(<a name="x">a</a>)",
                           R"(<a href="http://a b">a</a>)",
                           R"(<a href="http://a">a)",
                           "&copy;",
                           "&copy",
                           "&abcdefg",
                           "a > b < c",
                           "\u2029"})
    QTest::newRow(html) << QString::fromUtf8(html);
}

void TestDirectText::isLeftToTheImporter() {
  QFETCH(const QString, html);
  QVERIFY(!DirectText::read(html));
}

void TestDirectText::aLinkKnowsItsTarget() {
  const auto read =
      DirectText::read(uR"(a<a href="http://b.example/">bc</a><span style="color:#00FF00">d)");
  QVERIFY(read);
  QCOMPARE(read->text, QStringLiteral("abcd"));
  QCOMPARE(read->runs.size(), 3U);
  QCOMPARE(read->runs[0].end, 1);
  QCOMPARE(read->runs[0].target, QString());
  QCOMPARE(read->runs[1].end, 3);
  QCOMPARE(read->runs[1].target, QStringLiteral("http://b.example/"));
  QCOMPARE(read->runs[2].end, 4);
  QCOMPARE(read->runs[2].target, QString());
  QCOMPARE(read->runs[2].look.text, 0x00FF00U);
}

KELMORA_TEST_MAIN(TestDirectText)
#include "tst_directtext.moc"
