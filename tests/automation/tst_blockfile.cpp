#include <QRandomGenerator>

#include "BlockShape.h"
#include "automation/core/BlockFile.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(const BlockFormat*)

namespace {

QString readShape(const BlockFormat& format, QByteArrayView text) {
  QList<Block> blocks;
  const auto reading =
      blockfile::read(text, format, [&](Block&& block) { blocks.append(std::move(block)); });
  return shape(blocks, reading.isSuccess());
}

QByteArray repeated(QByteArrayView piece, qsizetype times) {
  return piece.toByteArray().repeated(times);
}

constexpr const BlockFormat* macros = &blockfile::macros;
constexpr const BlockFormat* triggers = &blockfile::triggers;
constexpr const BlockFormat* aliases = &blockfile::aliases;

}  // namespace

class TestBlockFile : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void reading_data();
  void reading();
  void theLineThatEndsTheReadingIsNamed_data();
  void theLineThatEndsTheReadingIsNamed();
  void writing_data();
  void writing();
  void roundTrip_data();
  void roundTrip();
  void noiseReadsAsTheLibrariesReadIt_data();
  void noiseReadsAsTheLibrariesReadIt();
  void longLines();
};

void TestBlockFile::reading_data() {
  QTest::addColumn<const BlockFormat*>("format");
  QTest::addColumn<QByteArray>("text");
  QTest::addColumn<QString>("expected");
  const auto row = [](const char* name, const BlockFormat* format, const QByteArray& text,
                      const QString& expected) {
    QTest::newRow(name) << format << text << expected;
  };

  row("an empty file is an empty table", aliases, "", u""_s);
  row("empty lines alone are an empty table", aliases, "\n\n\n", u""_s);
  row("a trigger block is read", triggers,
      "\ntrigger \"{*} tells you: {*}\"\nsay thanks\n/trigger\n",
      u"[{*} tells you: {*}|say thanks]"_s);
  row("a macro block is read", macros, "\nmacro Key_F1\nlook\nscore\n/macro\n",
      u"[Key_F1|look|score]"_s);
  row("an alias block is read", aliases, "\nalias \"k orc\"\nkill orc\n/alias\n",
      u"[k orc|kill orc]"_s);
  row("blocks keep their order and their duplicates", aliases,
      "alias \"b\"\n1\n/alias\nalias \"a\"\n2\n/alias\nalias \"b\"\n3\n/alias\n",
      u"[b|1][a|2][b|3]"_s);
  row("a block may have no commands", aliases, "alias \"b\"\n/alias\n", u"[b]"_s);
  row("a block needs no empty line before it", aliases,
      "alias \"a\"\n/alias\nalias \"b\"\n/alias\n", u"[a][b]"_s);
  row("any number of empty lines may stand between blocks", aliases,
      "\n\n\nalias \"a\"\n/alias\n\n\n\nalias \"b\"\n/alias\n\n", u"[a][b]"_s);

  // The body.
  row("an empty line inside a block is an empty command", aliases, "alias \"a\"\n\nx\n\n\n/alias\n",
      u"[a||x||]"_s);
  row("a header inside a block is a command", aliases, "alias \"a\"\nalias \"b\"\n/alias\n",
      u"[a|alias \"b\"]"_s);
  row("an end word with leading blanks is a command", aliases, "alias \"a\"\n  /alias\n/alias\n",
      u"[a|  /alias]"_s);
  row("an end word with a trailing blank is a command", aliases, "alias \"a\"\n/alias \n/alias\n",
      u"[a|/alias ]"_s);
  row("an end word with more after it is a command", aliases, "alias \"a\"\n/aliases\n/alias\n",
      u"[a|/aliases]"_s);
  row("an end word in capitals is a command", aliases, "alias \"a\"\n/Alias\n/alias\n",
      u"[a|/Alias]"_s);
  row("the end word of another file is a command", aliases,
      "alias \"a\"\n/trigger\n/macro\n/alias\n", u"[a|/trigger|/macro]"_s);
  row("an end word with a NUL after it is a command", aliases, "alias \"a\"\n/alias\0\n/alias\n"_ba,
      u"[a|/alias"_s + QChar(0) + u']');
  row("blanks around a command are kept", aliases, "alias \"a\"\n  x\t \n/alias\n",
      u"[a|  x\t ]"_s);
  row("a NUL inside a command is kept", aliases, "alias \"a\"\nx\0y\n/alias\n"_ba,
      u"[a|x"_s + QChar(0) + u"y]"_s);
  row("an alias command is kept as Latin-1", aliases, "alias \"a\"\nol\xE9 \xC3\xA9\n/alias\n",
      u"[a|ol\u00E9 \u00C3\u00A9]"_s);
  row("a macro command is kept as Latin-1", macros, "macro a\nol\xE9 \xC3\xA9\n/macro\n",
      u"[a|ol\u00E9 \u00C3\u00A9]"_s);
  row("a trigger command is decoded as UTF-8", triggers, "trigger \"a\"\n\xC3\xA9\n/trigger\n",
      u"[a|\u00E9]"_s);
  row("a trigger command in Latin-1 becomes a replacement character", triggers,
      "trigger \"a\"\nol\xE9\n/trigger\n", u"[a|ol\uFFFD]"_s);

  // The end of the text.
  row("a block left open at the end is dropped without a word", triggers,
      "trigger \"a\"\nx\n/trigger\ntrigger \"b\"\ny\n", u"[a|x]"_s);
  row("a header as the last line is dropped without a word", triggers, "trigger \"a\"\n", u""_s);
  row("the last end word needs no line break", aliases, "alias \"a\"\nx\n/alias", u"[a|x]"_s);
  row("the last end word may end in a carriage return alone", aliases,
      "alias \"a\"\r\nx\r\n/alias\r", u"[a|x]"_s);

  // Line ends.
  row("lines may end in carriage return and line break", aliases,
      "\r\nalias \"a\"\r\nx\r\n\r\n/alias\r\n", u"[a|x|]"_s);
  row("a lone carriage return is no line end", aliases, "alias \"a\"\nx\ry\n/alias\n",
      u"[a|x\ry]"_s);
  row("only one carriage return belongs to the line end", aliases, "alias \"a\"\nx\r\r\n/alias\n",
      u"[a|x\r]"_s);
  row("a file of carriage returns alone is one bad line", aliases, "\r\ralias \"a\"\r/alias\r",
      u"!"_s);

  // Headers.
  row("a macro header needs no blank", macros, "macroKey_F1\nx\n/macro\n", u"[Key_F1|x]"_s);
  row("a macro header takes one word and ignores the rest", macros, "macro Key_F1 Key_F2\n/macro\n",
      u"[Key_F1]"_s);
  row("any white space may stand in a macro header", macros, "macro \t\v Key_F1\n/macro\n",
      u"[Key_F1]"_s);
  row("a longer keyword is the keyword and a word", macros, "macros x\n/macro\n", u"[s]"_s);
  row("a macro header without a word fails", macros, "macro\nx\n/macro\n", u"!"_s);
  row("a macro header of blanks fails", macros, "macro  \t\nx\n/macro\n", u"!"_s);
  row("an alias header needs no blank", aliases, "alias\"a\"\n/alias\n", u"[a]"_s);
  row("any white space may stand in an alias header", aliases, "alias \t  \"a\"\n/alias\n",
      u"[a]"_s);
  row("what follows the closing quote is ignored", aliases, "alias \"a\" and more\n/alias\n",
      u"[a]"_s);
  row("the closing quote may be missing", aliases, "alias \"a b\n/alias\n", u"[a b]"_s);
  row("blanks inside the quotes are kept", aliases, "alias \"  a \"\n/alias\n", u"[  a ]"_s);
  row("an empty quoted name fails", aliases, "alias \"\"\nx\n/alias\n", u"!"_s);
  row("an alias header without quotes fails", aliases, "alias a\nx\n/alias\n", u"!"_s);
  row("an alias name holding a quote is cut at it", aliases, "alias \"say \"hi\"\"\n/alias\n",
      u"[say ]"_s);
  row("a header in capitals fails", aliases, "Alias \"a\"\n/alias\n", u"!"_s);
  row("a header after a blank fails", aliases, " alias \"a\"\n/alias\n", u"!"_s);
  row("a header of another file fails", aliases, "trigger \"a\"\n/trigger\n", u"!"_s);
  row("a header ends at a NUL", aliases, "alias \"a\0b\"\nx\n/alias\n"_ba, u"[a|x]"_s);
  row("a name is read as Latin-1", aliases, "alias \"\xE9\xC3\xA9\"\n/alias\n",
      u"[\u00E9\u00C3\u00A9]"_s);
  row("a pattern is read as Latin-1", triggers, "trigger \"\xE9\xC3\xA9\"\n/trigger\n",
      u"[\u00E9\u00C3\u00A9]"_s);
  row("a key name is read as Latin-1", macros, "macro \xE9\n/macro\n", u"[\u00E9]"_s);
  row("a no-break space does not end a key name", macros, "macro \xA0x\n/macro\n", u"[\u00A0x]"_s);

  // Bad lines.
  row("hello before the first block fails at once", aliases, "hello\nalias \"a\"\n/alias\n",
      u"!"_s);
  row("hello between blocks keeps the blocks before it", aliases,
      "alias \"a\"\nx\n/alias\nhello\nalias \"b\"\n/alias\n", u"[a|x]!"_s);
  row("a bad last line without a line break fails", aliases, "alias \"a\"\n/alias\nhello",
      u"[a]!"_s);
  row("an end word outside a block fails", aliases, "/alias\n", u"!"_s);
  row("a second end word fails", aliases, "alias \"a\"\n/alias\n/alias\n", u"[a]!"_s);
  row("a line of blanks outside a block fails", aliases, "  \nalias \"a\"\n/alias\n", u"!"_s);
  row("a line that begins with a NUL outside a block fails", aliases,
      "\0\nalias \"a\"\n/alias\n"_ba, u"!"_s);
  row("a byte order mark fails", aliases, "\xEF\xBB\xBF\nalias \"a\"\n/alias\n", u"!"_s);
}

void TestBlockFile::reading() {
  QFETCH(const BlockFormat*, format);
  QFETCH(QByteArray, text);
  QFETCH(QString, expected);
  QCOMPARE(readShape(*format, text), expected);
}

void TestBlockFile::theLineThatEndsTheReadingIsNamed_data() {
  QTest::addColumn<QByteArray>("text");
  QTest::addColumn<Reading::End>("end");
  QTest::addColumn<qsizetype>("line");
  const auto row = [](const char* name, const QByteArray& text, Reading::End end, qsizetype line) {
    QTest::newRow(name) << text << end << line;
  };
  row("a bad first line", "hello", Reading::End::BadLine, 1);
  row("a bad line behind a block", "\nalias \"a\"\r\n\nx\n/alias\n\nhello\n\n",
      Reading::End::BadLine, 7);
  row("the header of an open block", "alias \"a\"\n/alias\nalias \"b\"\nx\n/aliases\n",
      Reading::End::OpenBlock, 3);
}

void TestBlockFile::theLineThatEndsTheReadingIsNamed() {
  QFETCH(QByteArray, text);
  QFETCH(Reading::End, end);
  QFETCH(qsizetype, line);
  const Reading reading = blockfile::read(text, blockfile::aliases, [](Block&&) {});
  QCOMPARE(reading.end, end);
  QCOMPARE(reading.line, line);
}

void TestBlockFile::writing_data() {
  QTest::addColumn<const BlockFormat*>("format");
  QTest::addColumn<QString>("label");
  QTest::addColumn<QStringList>("commands");
  QTest::addColumn<QByteArray>("expected");

  QTest::newRow("a macro") << macros << u"Key_F1"_s << QStringList{u"look"_s, u"score"_s}
                           << QByteArray("\nmacro Key_F1\nlook\nscore\n/macro\n");
  QTest::newRow("a trigger") << triggers << u"{*} tells you: {*}"_s << QStringList{u"say thanks"_s}
                             << QByteArray(
                                    "\ntrigger \"{*} tells you: {*}\"\nsay thanks\n/trigger\n");
  QTest::newRow("an alias") << aliases << u"n"_s << QStringList{u"north"_s}
                            << QByteArray("\nalias \"n\"\nnorth\n/alias\n");
  QTest::newRow("no commands: header and end line only")
      << aliases << u"n"_s << QStringList{} << QByteArray("\nalias \"n\"\n/alias\n");
  QTest::newRow("an empty command is an empty line")
      << aliases << u"n"_s << QStringList{u"x"_s, u""_s}
      << QByteArray("\nalias \"n\"\nx\n\n/alias\n");
  QTest::newRow("Latin-1 characters are one byte each")
      << triggers << u"\u00E9t\u00E9"_s << QStringList{u"\u00FC"_s}
      << QByteArray("\ntrigger \"\xE9t\xE9\"\n\xFC\n/trigger\n");
  QTest::newRow("a character outside Latin-1 is a question mark")
      << aliases << u"\u20AC"_s << QStringList{u"\u4E2D x"_s}
      << QByteArray("\nalias \"?\"\n? x\n/alias\n");
  QTest::newRow("a percent sign is written as it is")
      << aliases << u"%s"_s << QStringList{u"100%d"_s}
      << QByteArray("\nalias \"%s\"\n100%d\n/alias\n");
  QTest::newRow("a quote in a name is written as it is")
      << aliases << u"a\"b"_s << QStringList{} << QByteArray("\nalias \"a\"b\"\n/alias\n");
  QTest::newRow("line breaks in a name are dropped")
      << aliases << u"\na\r\nb\rc\u2028d\u2029"_s << QStringList{u"x"_s}
      << QByteArray("\nalias \"abcd\"\nx\n/alias\n");
  QTest::newRow("line breaks in a pattern are dropped")
      << triggers << u"You are\n hungry\n"_s << QStringList{u"eat"_s}
      << QByteArray("\ntrigger \"You are hungry\"\neat\n/trigger\n");
  QTest::newRow("what ends no line of a file stays in a name")
      << aliases << u"a\vb\fc\u0085d\te"_s << QStringList{}
      << QByteArray(
             "\nalias \"a\vb\fc\x85"
             "d\te\"\n/alias\n");
  QTest::newRow("an end word as a command is written as it is")
      << aliases << u"a"_s << QStringList{u"/alias"_s}
      << QByteArray("\nalias \"a\"\n/alias\n/alias\n");
}

void TestBlockFile::writing() {
  QFETCH(const BlockFormat*, format);
  QFETCH(QString, label);
  QFETCH(QStringList, commands);
  QFETCH(QByteArray, expected);
  QByteArray text = "before";
  blockfile::append(text, *format, label, commands);
  QCOMPARE(text, "before" + expected);
}

void TestBlockFile::roundTrip_data() {
  QTest::addColumn<const BlockFormat*>("format");
  QTest::addColumn<QString>("label");
  QTest::addColumn<QStringList>("commands");
  QTest::addColumn<QString>("expected");

  QTest::newRow("commands, empty ones among them, come back")
      << aliases << u"a b"_s << QStringList{u"x"_s, u""_s, u" y "_s, u""_s} << u"[a b|x|| y |]"_s;
  QTest::newRow("Latin-1 comes back from an alias")
      << aliases << u"\u00E9"_s << QStringList{u"\u00E9\u00FF\u0080"_s}
      << u"[\u00E9|\u00E9\u00FF\u0080]"_s;
  QTest::newRow("a Latin-1 pattern comes back, its Latin-1 command does not")
      << triggers << u"\u00E9"_s << QStringList{u"\u00E9"_s} << u"[\u00E9|\uFFFD]"_s;
  QTest::newRow("a command that is the end word ends its block")
      << aliases << u"a"_s << QStringList{u"x"_s, u"/alias"_s, u"y"_s} << u"[a|x]!"_s;
  QTest::newRow("a name holding a quote comes back cut")
      << aliases << u"a\"b"_s << QStringList{u"x"_s} << u"[a|x]"_s;
  QTest::newRow("an empty name fails") << aliases << u""_s << QStringList{u"x"_s} << u"!"_s;
  QTest::newRow("a key name of one character comes back")
      << macros << u"A"_s << QStringList{u"x"_s} << u"[A|x]"_s;
}

void TestBlockFile::roundTrip() {
  QFETCH(const BlockFormat*, format);
  QFETCH(QString, label);
  QFETCH(QStringList, commands);
  QFETCH(QString, expected);
  QByteArray text;
  blockfile::append(text, *format, label, commands);
  QCOMPARE(readShape(*format, text), expected);
}

void TestBlockFile::noiseReadsAsTheLibrariesReadIt_data() {
  QTest::addColumn<const BlockFormat*>("format");
  QTest::addColumn<QByteArray>("header");
  QTest::newRow("macros") << macros << QByteArray("macro %s");
  QTest::newRow("triggers") << triggers << QByteArray("trigger \"%[^\"]\"");
  QTest::newRow("aliases") << aliases << QByteArray("alias \"%[^\"]\"");
}

void TestBlockFile::noiseReadsAsTheLibrariesReadIt() {
  QFETCH(const BlockFormat*, format);
  QFETCH(QByteArray, header);
  const QByteArray keyword = format->keyword.toByteArray();
  // Header and end lines come often among them, so that many texts hold whole blocks.
  const QByteArrayList pieces{keyword + " \"a b\"\n",
                              keyword + "\"k\"\n",
                              "/" + keyword + "\n",
                              "/" + keyword + "\n",
                              keyword,
                              "\n",
                              "\n",
                              "\r\n",
                              "\r",
                              " ",
                              "\"",
                              QByteArray(1, '\0'),
                              "\xE9",
                              "\xC3\xA9",
                              "north"};
  QRandomGenerator random(4711);
  int blocksRead = 0;
  int failures = 0;
  for (int file = 0; file < 10'000; ++file) {
    QByteArray text;
    for (quint32 left = random.bounded(40U); left > 0; --left)
      text += random.bounded(40) == 0 ? QByteArray(1, static_cast<char>(random.bounded(256)))
                                      : pieces[random.bounded(pieces.size())];
    const QString read = readShape(*format, text);
    QCOMPARE(read, readShapeByTheLibraries(*format, text, header.constData()));
    blocksRead += read.startsWith(u'[');
    failures += read.endsWith(u'!');
  }
  QVERIFY2(blocksRead > 500 && failures > 500 && failures < 10'000, "the noise reaches too little");
}

void TestBlockFile::longLines() {
  constexpr qsizetype length = 3'000'000;
  const QByteArray text = "alias \"" + repeated("n", length) + "\"\n" + repeated("x", length) +
                          "\n/alias\n" + repeated("z", length);
  QCOMPARE(readShape(blockfile::aliases, text),
           u'[' + QString(length, u'n') + u'|' + QString(length, u'x') + u"]!"_s);
}

KELMORA_TEST_MAIN(TestBlockFile)
#include "tst_blockfile.moc"
