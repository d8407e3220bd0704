#include <QRandomGenerator>
#include <QTest>

#include "script/VariableTable.h"
#include "support/ScratchMain.h"

using Entries = VariableTable::Entries;

class TestVariableTable : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void substitutes_data();
  void substitutes();
  void keepsAndForgets();
  void ordersNamesByCodeUnits();
  void replacesAsOnePassOverTheNamesWould();
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
  row("an empty value leaves nothing", {{"a", ""}}, "<{a}>", "<>");
  row("there is no escape", {{"a", "x"}}, "\\{a} {{a}}", "\\x {x}");
  row("without a brace nothing changes", {{"a", "x"}}, "a", "a");
  row("an empty text stays empty", {{"a", "x"}}, "", "");
}

void TestVariableTable::substitutes() {
  QFETCH(const Entries, variables);
  QFETCH(const QString, text);
  VariableTable table;
  table.map() = variables;
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

void TestVariableTable::replacesAsOnePassOverTheNamesWould() {
  QRandomGenerator random(3);
  const QString letters = QStringLiteral("{}{}{}ab");
  const auto word = [&](int longest) {
    QString text;
    for (int left = random.bounded(longest + 1); left > 0; --left)
      text += letters[random.bounded(int(letters.size()))];
    return text;
  };
  for (int round = 0; round < 20'000; ++round) {
    VariableTable table;
    for (int left = random.bounded(6); left > 0; --left)
      table.set(word(3), word(4));
    const QString text = word(16);
    QString expected = text;
    for (auto entry = table.entries().cbegin(); entry != table.entries().cend(); ++entry)
      expected.replace(u'{' + entry.key() + u'}', entry.value());
    QCOMPARE(table.substituteVariables(text), expected);
  }
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
