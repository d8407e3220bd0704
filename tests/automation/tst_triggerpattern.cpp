#include <QTest>
#include <clocale>

#include "LiteralMatcher.h"
#include "RandomTriggers.h"
#include "automation/core/TriggerPattern.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

using Words = std::optional<QStringList>;

QByteArray bytes(const char* text, qsizetype size) {
  return QByteArray(text, size);
}

}  // namespace

Q_DECLARE_METATYPE(Words)

class TestTriggerPattern : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { std::setlocale(LC_ALL, "C"); }
  void plainText_data();
  void plainText();
  void templates_data();
  void templates();
  void aWordIsCutAt1023Bytes();
  void anOverlongWordIsMatchedWhole_data();
  void anOverlongWordIsMatchedWhole();
  void aWordCutInsideACharacterEndsInAReplacement();
  void theRequiredBytes_data();
  void theRequiredBytes();
  void randomPatternsMatchAsTheCLibraryHasIt();
};

void TestTriggerPattern::plainText_data() {
  QTest::addColumn<QString>("pattern");
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<bool>("fires");
  const QString eleven = QString("{*} ").repeated(10) + "{*}";
  const auto row = [](const char* name, const QString& pattern, const QByteArray& line,
                      bool fires) { QTest::newRow(name) << pattern << line << fires; };
  row("plain text is found inside the line", "You are hungry", "Ugh. You are hungry.", true);
  row("plain text at the start is found", "Ugh", "Ugh. You are hungry.", true);
  row("plain text at the end is found", "hungry.", "Ugh. You are hungry.", true);
  row("another case is other text", "you are hungry", "You are hungry", false);
  row("blanks in plain text are exact", "You are", "You  are", false);
  row("a line shorter than the text does not match", "hungry", "hung", false);
  row("an empty line holds no text", "a", "", false);
  row("the empty pattern occurs in every line", "", "any", true);
  row("the empty pattern occurs in the empty line", "", "", true);
  row("a per cent sign in plain text is itself", "100%", "at 100% now", true);
  row("a per cent sign in plain text is not doubled", "100%", "at 100", false);
  row("conversions in plain text are themselves", "%s %d", "x", false);
  row("a Latin-1 character is one byte", QString(QChar(0xe9)), "caf\xe9", true);
  row("a Latin-1 character is not found in UTF-8", QString(QChar(0xe9)), "caf\xc3\xa9", false);
  row("a character outside Latin-1 is a question mark", QString(QChar(0x20ac)), "what?", true);
  row("plain text is found behind a NUL byte", "orc", bytes("a\0orc", 5), true);
  row("plain text with a NUL is found whole", QString(QChar(0)) + "b", bytes("a\0b", 3), true);
  row("plain text with a NUL is not cut there", QString("a") + QChar(0) + "b", "a", false);
  row("half a wildcard is plain text", "{*", "a {* b", true);
  row("eleven wildcards are plain text", eleven, "a b c d e f g h i j k", false);
  row("eleven wildcards are found as they are written", eleven, "say " + eleven.toLatin1() + "!",
      true);
  row("text with eleven wildcards is found as it is written", eleven + "%",
      "say " + eleven.toLatin1() + "%", true);
}

void TestTriggerPattern::plainText() {
  QFETCH(const QString, pattern);
  QFETCH(const QByteArray, line);
  QFETCH(const bool, fires);
  QCOMPARE(TriggerPattern(pattern).matches(TriggerLine(line)),
           fires ? Words(QStringList()) : Words());
  QCOMPARE(literal::matches(pattern, line).has_value(), fires);
}

void TestTriggerPattern::templates_data() {
  QTest::addColumn<QString>("pattern");
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<Words>("words");
  const auto fires = [](const char* name, const QString& pattern, const QByteArray& line,
                        const QStringList& words) {
    QTest::newRow(name) << pattern << line << Words(words);
  };
  const auto no = [](const char* name, const QString& pattern, const QByteArray& line) {
    QTest::newRow(name) << pattern << line << Words();
  };
  const QString acute(QChar(0xe9));
  const QString ten = QString("{*} ").repeated(9) + "{*}";

  fires("each wildcard takes one word", "{*} tells you: {*}", "Bob tells you: hello there",
        {"Bob", "hello"});
  fires("the tail reaches the end of the line", "{*} arrives.", "Bob arrives.", {"Bob"});
  no("text behind the tail fails it", "{*} arrives.", "Bob arrives. (twice)");
  no("a wildcard takes one word only", "{*} arrives.", "The goblin arrives.");
  no("a literal does not skip blanks of the line", "HP {*}", "  HP 40");
  fires("a last wildcard leaves the rest of the line alone", "HP {*}", "HP 40 SP 30", {"40"});
  no("a template is anchored at the line's start", "HP {*}", "My HP 40");
  no("an empty line holds no word", "{*}", "");
  no("a line of blanks holds no word", "{*}", " \t ");
  no("too few words are no match", "{*} {*}", "one");
  no("literals are case-sensitive", "hp {*}", "HP 40");
  fires("exactly ten wildcards are a template", ten, "a b c d e f g h i j k",
        {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"});
  no("ten wildcards need ten words", ten, "a b c d e f g h i");

  fires("a wildcard skips blanks before its word", "{*}", " \t\v\f\r Bob", {"Bob"});
  fires("a wildcard skips blanks behind a literal", "HP:{*}", "HP:   40", {"40"});
  fires("a blank of the pattern is any run of blanks", "a b {*}", "a \t  b c", {"c"});
  fires("a blank of the pattern is no blank at all", "a b {*}", "abc", {"c"});
  fires("a run of blanks in the pattern is one blank or none", "a \t b{*}", "ab c", {"c"});
  fires("a blank before the first wildcard means nothing", " {*}", "Bob", {"Bob"});
  no("a literal right behind a wildcard is swallowed by the word", "{*}!", "Bob!");
  no("a literal between two wildcards is swallowed by the word", "{*}, {*}", "Bob, Ann");
  fires("two wildcards without a blank are two words", "{*}{*}", "Bob Ann", {"Bob", "Ann"});
  no("two wildcards need two words", "{*}{*}", "Bob");
  fires("a non-breaking space is no blank", "{*}",
        "a\xa0"
        "b c",
        {QString("a") + QChar(0xfffd) + "b"});

  fires("a per cent sign before a wildcard is itself", "{*} 100% {*}", "Bob 100% sure",
        {"Bob", "sure"});
  no("a per cent sign before a wildcard must be there", "{*} 100% {*}", "Bob 100 sure");
  fires("a per cent sign right before a wildcard is itself", "at %{*}", "at %40", {"40"});
  fires("a per cent sign skips blanks, as the scanner does", "at%{*}", "at  %40", {"40"});
  fires("a conversion of the player's own is plain text", "%d {*}", "%d 40", {"40"});
  no("a conversion of the player's own reads no number", "%d {*}", "12 40");
  no("a tail with a per cent sign never passes", "{*} has 100%", "Bob has 100%");
  no("a tail with a per cent sign never passes, doubled in the line neither", "{*} has 100%",
     "Bob has 100%%");
  fires("a tail that ends in %s is taken to end there", "{*} has %s", "Bob says no", {"Bob"});
  no("behind a %s in the tail the rest is the tail", "{*} has %sure", "Bob has %sure");
  fires("behind a %s in the tail the rest fits the last place of the word", "{*} has %sure",
        "x yxure", {"x"});

  no("the tail's blanks are exact", "{*} arrives.", "Bob  arrives.");
  no("the tail's blanks cannot be missing", "{*} .", "Bob.");
  fires("a blank tail is one blank at the end", "{*} ", "Bob ", {"Bob"});
  no("a blank tail does not fit a bare word", "{*} ", "Bob");
  no("the tail is case-sensitive", "{*} arrives.", "Bob Arrives.");
  fires("the last word is looked for from the line's end", "{*} b", "a xa b", {"a"});
  no("a word that comes again in the tail fails it", "{*} arrives.", "a arrives.");
  no("a word that comes again behind itself fails it", "{*} ab", "a ab");
  fires("of an overlapping word the last place counts", "{*} x", "aa aaa x", {"aa"});
  fires("what lies between the word and its last place is not looked at", "{*} arrives.",
        "Bob and his friend Bob arrives.", {"Bob"});
  fires("the tail is checked behind the last word alone", "{*} and {*} arrive.",
        "Bob and Ann arrive.", {"Bob", "Ann"});

  fires("words are read as UTF-8", "{*} x", "caf\xc3\xa9 x", {QString("caf") + acute});
  fires("bytes that are no UTF-8 become replacement characters", "{*}", "\xe9",
        {QString(QChar(0xfffd))});
  fires("a literal outside ASCII is a Latin-1 byte", acute + "{*}", "\xe9 x", {"x"});
  no("a literal outside ASCII is not found as UTF-8", acute + "{*}", "\xc3\xa9 x");
  fires("a tail outside ASCII is compared as characters", "{*} " + acute, "Bob \xc3\xa9", {"Bob"});
  no("a tail outside ASCII is not a bare byte of the line", "{*} " + acute, "Bob \xe9");
  no("a tail outside ASCII is not the replacement of a bare byte", "{*} " + acute, "Bob \xff");
  fires("a character outside Latin-1 is a question mark", QString(QChar(0x20ac)) + " {*}", "? x",
        {"x"});
  fires("a character outside Latin-1 in the tail is a question mark",
        QString("{*} ") + QChar(0x20ac), "Bob ?", {"Bob"});
  no("a character outside Latin-1 in the tail is not itself", QString("{*} ") + QChar(0x20ac),
     "Bob \xe2\x82\xac");
  fires("a character beyond the first plane is two question marks", QString("{*} ") + "\U0001F600",
        "Bob ??", {"Bob"});

  fires("the scan stops at a NUL byte", "{*}", bytes("Bob\0Ann", 7), {"Bob"});
  no("no word lies behind a NUL byte", "{*} {*}", bytes("Bob \0Ann", 8));
  no("the tail sees the line behind a NUL byte", "{*} x", bytes("Bob x\0", 6));
  fires("the word may lie behind a NUL byte for the tail", "{*} x", bytes("Bob\0Bob x", 9),
        {"Bob"});
  fires("a tail may hold a NUL", QString("{*}") + QChar(0) + "x", bytes("Bob\0x", 5), {"Bob"});
  no("a NUL before a wildcard ends the pattern", QString("{*}") + QChar(0) + "{*}", "Bob Ann");
}

void TestTriggerPattern::templates() {
  QFETCH(const QString, pattern);
  QFETCH(const QByteArray, line);
  QFETCH(const Words, words);
  QCOMPARE(TriggerPattern(pattern).matches(TriggerLine(line)), words);
  QCOMPARE(literal::matches(pattern, line), words);
}

void TestTriggerPattern::aWordIsCutAt1023Bytes() {
  const TriggerPattern word("{*}");
  for (const qsizetype length : {1022, 1023, 1024, 5000}) {
    const auto words = word.matches(TriggerLine(QByteArray(length, 'x')));
    QVERIFY(words);
    QCOMPARE(words->at(0).size(), std::min<qsizetype>(length, 1023));
  }
}

void TestTriggerPattern::anOverlongWordIsMatchedWhole_data() {
  QTest::addColumn<QString>("pattern");
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<Words>("words");
  const QByteArray longWord(2000, 'x');
  const QString kept(1023, 'x');
  const auto fires = [](const char* name, const char* pattern, const QByteArray& line,
                        const QStringList& words) {
    QTest::newRow(name) << QString(pattern) << line << Words(words);
  };
  const auto no = [](const char* name, const char* pattern, const QByteArray& line) {
    QTest::newRow(name) << QString(pattern) << line << Words();
  };
  fires("the next word is the next one of the line", "{*} {*}", longWord + " orc", {kept, "orc"});
  fires("also where both are too long", "{*} {*} {*}", longWord + " yy " + longWord,
        {kept, "yy", kept});
  no("a rest of it is no word of its own", "{*} {*}", longWord);
  no("a literal right behind the wildcard is swallowed by the word", "{*}y{*}",
     QByteArray(1023, 'x') + "yz");
  no("as one right behind the last wildcard is", "{*}y", QByteArray(1023, 'x') + "y");
  fires("a tail fits behind the whole word", "{*} arrives.", longWord + " arrives.", {kept});
  no("a tail does not fit behind a part of it", "{*} arrives.", longWord + " arrives. " + longWord);
}

void TestTriggerPattern::anOverlongWordIsMatchedWhole() {
  templates();
}

void TestTriggerPattern::aWordCutInsideACharacterEndsInAReplacement() {
  const QByteArray line = QByteArray(1022, 'x') + "\xc3\xa9";
  const auto words = TriggerPattern("{*}").matches(TriggerLine(line));
  QVERIFY(words);
  QCOMPARE(words->at(0), QString(1022, 'x') + QChar(0xfffd));
  // The tail is looked for behind the whole word, not behind the part that is kept.
  QVERIFY(TriggerPattern("{*} y").matches(TriggerLine(line + " y")));
}

void TestTriggerPattern::theRequiredBytes_data() {
  QTest::addColumn<QString>("pattern");
  QTest::addColumn<QByteArray>("required");
  QTest::newRow("all of a plain pattern") << "a long b" << QByteArray("a long b");
  QTest::newRow("nothing of a wildcard alone") << "{*}" << QByteArray();
  QTest::newRow("nothing of blanks before wildcards") << " {*} {*}" << QByteArray();
  QTest::newRow("the longest run between blanks") << "a tells you: {*}" << QByteArray("tells");
  QTest::newRow("the tail with its blanks") << "tells {*} to go." << QByteArray(" to go.");
  QTest::newRow("of the tail its ASCII")
      << QString("{*} to caf") + QChar(0xe9) + "s." << QByteArray(" to caf");
  QTest::newRow("a per cent sign starts a run") << "ab%cd {*}" << QByteArray("%cd");
}

void TestTriggerPattern::theRequiredBytes() {
  QFETCH(const QString, pattern);
  QTEST(TriggerPattern(pattern).requiredBytes(), "required");
}

void TestTriggerPattern::randomPatternsMatchAsTheCLibraryHasIt() {
  constexpr int patterns = 400'000;
  constexpr int linesPerPattern = 4;
  RandomTriggers random(4711);
  int plainMatches = 0;
  int templateMatches = 0;
  int tailMatches = 0;
  for (int round = 0; round < patterns; ++round) {
    const QString text = random.pattern();
    const TriggerPattern pattern(text);
    for (int count = 0; count < linesPerPattern; ++count) {
      const QByteArray line = random.line(text);
      const Words expected = literal::matches(text, line);
      const Words words = pattern.matches(TriggerLine(line));
      if (words != expected)
        QFAIL(qPrintable("pattern " + text + " (" + text.toUtf8().toHex() + "), line " +
                         line.toHex()));
      if (!words)
        continue;
      QVERIFY(line.contains(pattern.requiredBytes()));
      ++(words->isEmpty() ? plainMatches : templateMatches);
      if (!words->isEmpty() && !text.endsWith("{*}"))
        ++tailMatches;
    }
  }
  qInfo("%d pairs: %d matches of plain text, %d of templates, %d of those with a tail",
        patterns * linesPerPattern, plainMatches, templateMatches, tailMatches);
  QVERIFY(plainMatches > 200'000);
  QVERIFY(templateMatches > 150'000);
  QVERIFY(tailMatches > 60'000);
}

KELMORA_TEST_MAIN(TestTriggerPattern)
#include "tst_triggerpattern.moc"
