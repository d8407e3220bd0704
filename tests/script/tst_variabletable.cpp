#include <QRandomGenerator>
#include <QTest>
#include <limits>

#include "script/VariableTable.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

using Entries = VariableTable::Entries;

class TestVariableTable : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void substitutes_data();
  void substitutes();
  void keepsAndForgets();
  void ordersNamesByCodeUnits();
  void loadsWhatItIsGiven();
  void replacesAsOnePassOverTheNamesWould_data();
  void replacesAsOnePassOverTheNamesWould();
  void aTextCutOnTheWayIsCutAsByThePassOverTheNames();
  void whatATextDoesNotNameCostsNothing();
  void aNameInALongTextCostsThePassesOverIt();
  void nothingIsReadBehindTheText();
  void manyBracesTakeTimeByTheirNumber_data();
  void manyBracesTakeTimeByTheirNumber();
  void longNamesTakeTimeByTheirLength_data();
  void longNamesTakeTimeByTheirLength();
  void moreThanTheAllowedWorkIsNotDone();
  void tellsWhetherItCut();
  void cutsAValueThatIsTooLong();
  void staysBoundedWhereValuesDoubleOneAnother();
  void keepsTheStartOfATextThatGrowsTooLong();
};

void TestVariableTable::substitutes_data() {
  QTest::addColumn<Entries>("variables");
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("result");
  const auto row = [](const char* name, const Entries& variables, const char* text,
                      const char* result) {
    QTest::newRow(name) << variables << QString::fromUtf8(text) << QString::fromUtf8(result);
  };
  row("a name in braces becomes its value", {{"hp", "10"}}, "I have {hp}", "I have 10");
  row("every occurrence is replaced", {{"a", "x"}}, "{a}{a} {a}", "xx x");
  row("a name of no variable stays", {{"a", "x"}}, "{b}", "{b}");
  row("names are case-sensitive", {{"hp", "10"}}, "{HP}", "{HP}");
  row("blanks inside the braces count", {{"a", "x"}}, "{ a }", "{ a }");
  row("a name with a blank is a name", {{"my hp", "3"}}, "{my hp}", "3");
  row("the empty name is a name", {{"", "e"}}, "{}", "e");
  row("a value is replaced again by a later name", {{"a", "{b}"}, {"b", "x"}}, "{a}", "x");
  row("a value is not replaced by an earlier name", {{"a", "x"}, {"b", "{a}"}}, "{b}", "{a}");
  row("a value is not replaced by its own name", {{"a", "{a}"}}, "{a}", "{a}");
  row("replaced text joins what stands around it", {{"a", "b"}, {"b", "x"}}, "{{a}}", "x");
  row("upper case comes first", {{"B", "{a}"}, {"a", "x"}}, "{B}", "x");
  row("braces in a name count like any character", {{"a{b", "x"}}, "{a{b}", "x");
  row("a value's opening brace and the text's closing one make a name", {{"a", "{b"}, {"b", "x"}},
      "{a}}", "x");
  row("a value between the text's own braces makes a name", {{"a", "b"}, {"bc", "x"}}, "{{a}c}",
      "x");
  row("so do two values side by side", {{"a", "{c"}, {"b", "}"}, {"c", "x"}}, "{a}{b}", "x");
  row("what joins to an earlier name stays", {{"a", "x"}, {"b", "a"}}, "{{b}}", "{a}");
  row("an empty value joins what stood apart", {{"a", ""}, {"bc", "x"}}, "{b{a}c}", "x");
  row("an empty value at the end joins nothing", {{"a", ""}, {"b", "x"}}, "{b{a}", "{b");
  row("of names in one another both may be replaced", {{"a", "1"}, {"b{a}", "2"}}, "{b{a}}",
      "{b1}");
  row("of names in one another the earlier goes first", {{"a{b}", "1"}, {"b", "2"}}, "{a{b}}", "1");
  row("names that begin alike are told apart", {{"a", "1"}, {"a}", "2"}, {"a}b", "3"}},
      "{a} {a}} {a}b}", "1 1} 1b}");
  row("a later name that ends in a brace is found behind an earlier one that is none",
      {{"a}", "2"}, {"a}b", "3"}}, "{a} {a}} {a}b}", "{a} 2 3");
  row("names of braces alone", {{"{", "1"}, {"}", "2"}, {"{}", "3"}}, "{{} {}} {{}}", "1 2 1}");
  row("the empty name comes first", {{"", "a"}, {"a", "x"}}, "{{}}", "x");
  row("an empty value leaves nothing", {{"a", ""}}, "<{a}>", "<>");
  row("there is no escape", {{"a", "x"}}, "\\{a} {{a}}", "\\x {x}");
  row("without a brace nothing changes", {{"a", "x"}}, "a", "a");
  row("an empty text stays empty", {{"a", "x"}}, "", "");
}

void TestVariableTable::substitutes() {
  QFETCH(const Entries, variables);
  QFETCH(const QString, text);
  VariableTable table;
  table.load(variables);
  QTEST(table.substituteVariables(text), "result");
}

void TestVariableTable::keepsAndForgets() {
  VariableTable table;
  QVERIFY(!table.contains("a"));
  QCOMPARE(table.value("a"), QString());
  table.set("a", "1");
  table.set("a", "2");
  QVERIFY(table.contains("a"));
  QCOMPARE(table.value("a"), "2");
  QCOMPARE(table.size(), 1);
  QVERIFY(table.remove("a"));
  QVERIFY(!table.remove("a"));
  QVERIFY(table.entries().isEmpty());
}

void TestVariableTable::ordersNamesByCodeUnits() {
  VariableTable table;
  for (const char* name : {"a", "B", "aa", "_", "A"})
    table.set(name, "");
  QCOMPARE(table.entries().keys(), (QStringList{"A", "B", "_", "a", "aa"}));
}

void TestVariableTable::loadsWhatItIsGiven() {
  VariableTable table;
  table.set("old", "1");
  table.load({{"a", "1"}, {"a longer name", "2"}});
  QCOMPARE(table.entries(), (Entries{{"a", "1"}, {"a longer name", "2"}}));
  QCOMPARE(table.substituteVariables("{old}{a}{a longer name}"), "{old}12");
}

namespace {

class Words {
 public:
  Words(quint32 seed, const QString& letters) : random_(seed), letters_(letters) {}

  QString word(int longest) {
    QString text;
    for (int left = below(longest + 1); left > 0; --left)
      text += letters_[below(int(letters_.size()))];
    return text;
  }
  int below(int limit) { return random_.bounded(limit); }

 private:
  QRandomGenerator random_;
  QString letters_;
};

QString replacedOneByOne(const Entries& variables, QString text) {
  for (auto entry = variables.cbegin(); entry != variables.cend(); ++entry)
    text.replace(u'{' + entry.key() + u'}', entry.value());
  return text;
}

}  // namespace

void TestVariableTable::replacesAsOnePassOverTheNamesWould_data() {
  QTest::addColumn<QString>("letters");
  QTest::addColumn<int>("variables");
  QTest::addColumn<int>("longestName");
  QTest::addColumn<int>("longestValue");
  QTest::addColumn<int>("longestText");
  QTest::newRow("few short names") << "{}{}{}ab" << 6 << 3 << 4 << 16;
  QTest::newRow("braces alone") << "{}" << 6 << 4 << 5 << 16;
  QTest::newRow("names of a letter, well formed for the most part")
      << "{a}{b}{c}abc" << 5 << 1 << 6 << 30;
  QTest::newRow("many names") << "{}{}{}{}abcd" << 40 << 3 << 6 << 40;
  QTest::newRow("long names of few letters") << "{}}a" << 20 << 9 << 9 << 60;
  QTest::newRow("letters in the order of code units")
      << QStringLiteral("{}{}{}zA\u00e9\u20ac\U0001F600") << 8 << 2 << 5 << 20;
}

void TestVariableTable::replacesAsOnePassOverTheNamesWould() {
  QFETCH(const QString, letters);
  QFETCH(const int, variables);
  QFETCH(const int, longestName);
  QFETCH(const int, longestValue);
  QFETCH(const int, longestText);
  Words words(3, letters);
  int replaced = 0;
  for (int round = 0; round < 20'000; ++round) {
    VariableTable table;
    for (int left = words.below(variables); left > 0; --left) {
      const QString name = words.word(longestName);
      table.set(name, words.word(longestValue));
    }
    const QString text = words.word(longestText);
    const QString expected = replacedOneByOne(table.entries(), text);
    if (expected.size() > VariableTable::maximumLength)
      continue;
    replaced += expected == text ? 0 : 1;
    QCOMPARE(table.substituteVariables(text), expected);
  }
  QVERIFY2(replaced > 2000, qPrintable(QString::number(replaced)));
}

void TestVariableTable::aTextCutOnTheWayIsCutAsByThePassOverTheNames() {
  constexpr qsizetype longest = 12;
  Words words(4, QStringLiteral("{}{}{}ab"));
  int cut = 0;
  for (int round = 0; round < 20'000; ++round) {
    Entries variables;
    for (int left = words.below(6); left > 0; --left) {
      const QString name = words.word(2);
      variables.insert(name, words.word(8));
    }
    const QString text = words.word(longest);
    QString expected = text;
    bool isCut = false;
    for (auto entry = variables.cbegin(); entry != variables.cend(); ++entry) {
      expected.replace(u'{' + entry.key() + u'}', entry.value());
      isCut = isCut || expected.size() > longest;
      expected.truncate(longest);
    }
    const script::Substitution result(variables, 2, {.longestText = longest, .work = 1'000'000},
                                      text);
    QCOMPARE(result.text(), expected);
    QCOMPARE(result.wasCut(), isCut);
    cut += isCut ? 1 : 0;
  }
  QVERIFY2(cut > 1000, qPrintable(QString::number(cut)));
}

void TestVariableTable::whatATextDoesNotNameCostsNothing() {
  constexpr qint64 plenty = 1'000'000;
  VariableTable few;
  few.load({{"v1", "1"}, {"v2", "{v3}"}, {"v3", "3"}});
  VariableTable many = few;
  for (int number = 10'000; number < 20'000; ++number)
    many.set(QStringLiteral("v%1").arg(number), "{v1}{v2}");
  for (const QString& text : {QStringLiteral("{v1}{v2} and {v3}"), QStringLiteral("{none} {v}"),
                              QStringLiteral("nothing at all")}) {
    const auto little = few.substitution(text, plenty);
    const auto all = many.substitution(text, plenty);
    QCOMPARE(all.text(), little.text());
    // Names are longer in the large table, so a little more of the text is read
    // behind each brace. Nothing else costs more.
    QVERIFY(all.work() <= 2 * little.work());
    QVERIFY(all.work() < 1000);
  }
}

void TestVariableTable::aNameInALongTextCostsThePassesOverIt() {
  VariableTable table;
  table.set("a", "1");
  table.set("b", "2");
  const QString filling(10'000, u'x');
  constexpr qint64 plenty = 1'000'000;
  // The text is read once for its braces, then twice for each name in it: to find
  // the name, and to write the new text.
  const auto workOf = [&](const QString& text) { return table.substitution(text, plenty).work(); };
  const auto isAbout = [](qint64 work, qint64 expected) {
    return work >= expected && work < expected + 1000;
  };
  QVERIFY(isAbout(workOf(filling), 10'000));
  QVERIFY(isAbout(workOf(filling + "{a}"), 30'000));
  QVERIFY(isAbout(workOf("{b}" + filling + "{a}"), 50'000));
  // A value that was put in is read for names, too.
  table.set("a", QString(10'000, u'y'));
  QVERIFY(isAbout(workOf("{a}"), 20'000));
}

void TestVariableTable::nothingIsReadBehindTheText() {
  VariableTable table;
  table.set("a long name", "1");
  table.set("", "2");
  const QString whole = QStringLiteral("{a long name}{}");
  for (qsizetype length = 1; length < 12; ++length) {
    const QString start = QString::fromRawData(whole.constData(), length);
    const auto result = table.substitution(start, 1'000'000);
    QCOMPARE(result.text(), whole.first(length));
    // The text was read once for its braces; there is no closing one.
    QCOMPARE(result.work(), length);
  }
}

void TestVariableTable::manyBracesTakeTimeByTheirNumber_data() {
  QTest::addColumn<QString>("letters");
  QTest::newRow("opening ones") << "{";
  QTest::newRow("closing ones") << "}";
  QTest::newRow("pairs") << "{}";
  QTest::newRow("pairs turned around") << "}{";
  QTest::newRow("names of no variable") << "{b}";
}

void TestVariableTable::manyBracesTakeTimeByTheirNumber() {
  QFETCH(const QString, letters);
  VariableTable table;
  for (int number = 0; number < 1000; ++number)
    table.set(QStringLiteral("a%1").arg(number), "1");
  const QString text = letters.repeated(60'000 / letters.size());
  const auto result = table.substitution(text, std::numeric_limits<qint64>::max());
  QCOMPARE(result.text(), text);
  QVERIFY2(result.work() <= 80 * text.size(), qPrintable(QString::number(result.work())));
}

void TestVariableTable::longNamesTakeTimeByTheirLength_data() {
  QTest::addColumn<QString>("text");
  QTest::newRow("no closing brace") << QString(60'000, u'{');
  QTest::newRow("closing ones out of reach") << QString(60'000, u'{') + QString(5'000, u'}');
  QTest::newRow("closing ones in reach") << QString(QString(500, u'{') + u'}').repeated(120);
}

void TestVariableTable::longNamesTakeTimeByTheirLength() {
  QFETCH(const QString, text);
  VariableTable table;
  for (int length = 1; length <= 900; ++length)
    table.set(QString(length, u'{') + u'-', "x");
  constexpr qint64 work = 20'000'000;
  const ProcessorClock clock;
  qint64 done = 0;
  while (done < work)
    done += table.substitution(text, work - done).work();
  // That much work counts as some 80,000 of the 5,000,000 steps of a run.
  QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
}

void TestVariableTable::moreThanTheAllowedWorkIsNotDone() {
  // The value of each variable names the next one, at a thousand places.
  VariableTable table;
  for (int number = 100; number < 999; ++number)
    table.set(QString::number(number), QStringLiteral("{%1}").arg(number + 1));
  table.set("999", "end");
  // With a name made of braces, many places look as if a name could begin there.
  table.set(QString(200, u'}'), "x");
  const QString text = QStringLiteral("{100}").repeated(1000);
  constexpr qint64 allowed = 1'000'000;
  const auto broken = table.substitution(text, allowed);
  QVERIFY(broken.work() > allowed);
  QVERIFY(broken.work() < allowed + 20 * text.size());
  const auto whole = table.substitution(text, std::numeric_limits<qint64>::max());
  QCOMPARE(whole.text(), QStringLiteral("end").repeated(1000));
  const auto exact = table.substitution(text, whole.work());
  QCOMPARE(exact.text(), whole.text());
}

void TestVariableTable::tellsWhetherItCut() {
  constexpr qsizetype most = VariableTable::maximumLength;
  VariableTable table;
  QVERIFY(table.set("a", QString(most, u'x')));
  QVERIFY(!table.set("b", QString(most + 1, u'x')));
  constexpr qint64 plenty = 100'000'000;
  QVERIFY(!table.substitution("{a}", plenty).wasCut());
  QVERIFY(!table.substitution("x", plenty).wasCut());
  QVERIFY(table.substitution("{a}x", plenty).wasCut());
  QVERIFY(table.substitution("x{a}", plenty).wasCut());
  QVERIFY(table.substitution("{a}{a}", plenty).wasCut());
  // A value that was loaded from a file may be too long.
  table.load({{"a", QString(3 * most, u'x')}, {"b", "{a}"}});
  QVERIFY(table.substitution("{a}", plenty).wasCut());
  QCOMPARE(table.substituteVariables("{a}").size(), most);
}

void TestVariableTable::cutsAValueThatIsTooLong() {
  constexpr qsizetype most = VariableTable::maximumLength;
  VariableTable table;
  table.set("fits", QString(most, u'x'));
  table.set("long", QString(most + 1, u'x'));
  QCOMPARE(table.value("fits").size(), most);
  QCOMPARE(table.value("long").size(), most);
}

void TestVariableTable::staysBoundedWhereValuesDoubleOneAnother() {
  VariableTable table;
  for (int depth = 0; depth < 64; ++depth) {
    const QString next = QStringLiteral("{v%1}").arg(depth + 1, 2, 10, QChar(u'0'));
    table.set(QStringLiteral("v%1").arg(depth, 2, 10, QChar(u'0')), next + next);
  }
  table.set("v64", "a longer end");
  const QString result = table.substituteVariables("{v00}");
  QCOMPARE(result.size(), VariableTable::maximumLength);
}

void TestVariableTable::keepsTheStartOfATextThatGrowsTooLong() {
  constexpr qsizetype most = VariableTable::maximumLength;
  VariableTable table;
  table.set("a", QString(most - 3, u'a'));
  QCOMPARE(table.substituteVariables("1{a}23"), u'1' + QString(most - 3, u'a') + "23");
  QCOMPARE(table.substituteVariables("1{a}23456"), u'1' + QString(most - 3, u'a') + "23");
  QCOMPARE(table.substituteVariables("1{a}{a}"), u'1' + QString(most - 1, u'a'));
}

KELMORA_TEST_MAIN(TestVariableTable)
#include "tst_variabletable.moc"
