#include <QElapsedTimer>
#include <array>
#include <random>

#include "automation/core/BlockFile.h"
#include "automation/core/LinePattern.h"
#include "automation/core/TriggerPattern.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

bool fires(const QString& pattern, const QByteArray& line) {
  return TriggerPattern(pattern).matches(TriggerLine(line)).has_value();
}

/// The patterns of a file of three triggers, the middle one with this pattern.
QStringList savedAndLoaded(const QString& pattern) {
  QByteArray file;
  for (const QString& each : {QStringLiteral("before"), pattern, QStringLiteral("behind")})
    blockfile::append(file, blockfile::triggers, each, {"smile"});
  QStringList patterns;
  (void)blockfile::read(file, blockfile::triggers,
                        [&patterns](Block&& block) { patterns << block.label; });
  return patterns;
}

QByteArray randomLine(std::mt19937& random) {
  static constexpr std::array<std::string_view, 32> pieces{
      " ",    " ",    " ",        " ",        "  ",           "a",
      "orc",  "You",  "says",     "dies.",    "\"",           "\"",
      "{*}",  "{",    "*}",       "%",        "%s",           "\xc3\xbc",
      "\xc3", "\xfc", "\xe2\x80", "\xf0\x9f", "\xef\xbb\xbf", "&nbsp;&nbsp;&nbsp;&nbsp;",
      "&",    "<b>",  "\x01",     "\t",       "\v",           "1",
      "'",    "\\"};
  QByteArray line;
  for (auto length = random() % 24; length > 0; --length) {
    const std::string_view piece = pieces.at(random() % pieces.size());
    line.append(piece.data(), static_cast<qsizetype>(piece.size()));
    if (random() % 100 == 0)
      line.append('\0');
    if (random() % 1000 == 0)
      line.append(QByteArray(700, 'x'));
  }
  return line;
}

}  // namespace

class TestLinePattern : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void thePatternOfALine_data();
  void thePatternOfALine();
  void aLongLineGivesItsFirstWords();
  void everyPatternFiresOnItsLineBeforeAndAfterLoading();
};

void TestLinePattern::thePatternOfALine_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<QString>("pattern");
  const auto row = [](const char* what, const QByteArray& line, const QString& pattern) {
    QTest::newRow(what) << line << pattern;
  };
  row("a plain line is its own pattern", "The orc dies.", "The orc dies.");
  row("blanks around it are left out", "   The orc dies. ", "The orc dies.");
  row("blanks within it stay", "HP  10   SP", "HP  10   SP");
  row("case stays", "tHe ORC", "tHe ORC");
  row("a per cent sign stands for itself", "You feel 100% better, %s.",
      "You feel 100% better, %s.");
  row("braces and asterisks alone stand for themselves", "{ * } {a} *}", "{ * } {a} *}");
  row("a backslash and an apostrophe stand for themselves", "It's C:\\orc", "It's C:\\orc");
  row("what is said at the beginning is left out", "\"Hello\" says Bob.", "says Bob.");
  row("a line is cut at its quotation marks", "Bob says \"hello\" to you.", "Bob says");
  row("the longest part is between the marks", "Bob: \"Come to the inn!\" (loud)",
      "Come to the inn!");
  row("a wildcard is left out", "{*} tells you: {*}", "tells you:");
  row("as many wildcards as make plain text are left out as well",
      "old orc" + QByteArray("{*}").repeated(11), "old orc");
  row("a word with an umlaut is left out as a whole",
      "Gr\xc3\xbc\xc3\x9f"
      "e aus K\xc3\xb6ln",
      "aus");
  row("so is one in another encoding",
      "Gr\xfc\xdf"
      "e aus K\xf6ln",
      "aus");
  row("typographic quotation marks belong to no word", "\xe2\x80\x9cHello,\xe2\x80\x9d says Bob",
      "says Bob");
  row("the words next to a word with an umlaut stay",
      "Das \xc3\xbc"
      "ble Ding",
      "Ding");
  row("words at a dash are whole", "An old\xe2\x80\x94very old\xe2\x80\x94orc", "very old");
  row("a tab is left out", "Name:&nbsp;&nbsp;&nbsp;&nbsp;Bob the Great", "Bob the Great");
  row("an entity alone stands for itself", "Bob&nbsp;&amp; Al", "Bob&nbsp;&amp; Al");
  row("tags are what triggers see", "The <b>orc</b> dies.", "The <b>orc</b> dies.");
  row("control characters are left out",
      "The orc\x01"
      "dies now.",
      "dies now.");
  row("letters tell more than a ruler", "=========================\" Bob \"", "Bob");
  row("a whole line may be a ruler", "==+==", "==+==");
  row("a whole line may be short", "> ", ">");
  row("two letters of a line tell nothing", "\"Hello\" he: \"Hi\" ok", "Hello");
  row("no pattern where only two letters are left", "\xc3\x84pfel ok", "");
  row("no pattern for quotation marks", "\"\" \"", "");
  row("no pattern for blanks", "   ", "");
  row("no pattern for an empty line", "", "");
  row("no pattern for a line of umlauts", "\xc3\xa4\xc3\xb6\xc3\xbc", "");
}

void TestLinePattern::thePatternOfALine() {
  QFETCH(const QByteArray, line);
  QFETCH(const QString, pattern);
  QCOMPARE(patternFor(line), pattern);
  if (pattern.isEmpty())
    return;
  QVERIFY(fires(pattern, line));
  QCOMPARE(savedAndLoaded(pattern), QStringList({"before", pattern, "behind"}));
}

void TestLinePattern::aLongLineGivesItsFirstWords() {
  const QByteArray line = QByteArray("The orc dies. ").repeated(10'000);
  const QString pattern = patternFor(line);
  QVERIFY(pattern.size() > 450 && pattern.size() <= 500);
  QVERIFY(line.startsWith(pattern.toLatin1()));
  QVERIFY(pattern.endsWith("orc") || pattern.endsWith("dies.") || pattern.endsWith("The"));
  QVERIFY(fires(pattern, line));
}

void TestLinePattern::everyPatternFiresOnItsLineBeforeAndAfterLoading() {
  std::mt19937 random(20);  // NOLINT(*-msc51-cpp,cert-msc32-c): the same lines in every run
  int offered = 0;
  for (int turn = 0; turn < 50'000; ++turn) {
    const QByteArray line = randomLine(random);
    const QString pattern = patternFor(line);
    if (pattern.isEmpty())
      continue;
    ++offered;
    QVERIFY2(fires(pattern, line), line.toPercentEncoding().constData());
    const QStringList loaded = savedAndLoaded(pattern);
    QVERIFY2(loaded == QStringList({"before", pattern, "behind"}),
             line.toPercentEncoding().constData());
    QVERIFY2(fires(loaded.at(1), line), line.toPercentEncoding().constData());
  }
  QVERIFY2(offered > 20'000, QByteArray::number(offered).constData());
}

KELMORA_TEST_MAIN(TestLinePattern)
#include "tst_linepattern.moc"
