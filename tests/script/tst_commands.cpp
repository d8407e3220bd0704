#include <QTest>

#include "script/Commands.h"
#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

using Entries = VariableTable::Entries;

class TestCommands : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void refusesAWrongForm_data();
  void refusesAWrongForm();
  void changesVariables_data();
  void changesVariables();
  void prints_data();
  void prints();
  void anUnpauseTakesItsIdAsItStands_data();
  void anUnpauseTakesItsIdAsItStands();
  void growingAVariableForEverStaysBounded();
  void aCutTextIsToldOnceInAnEvent_data();
  void aCutTextIsToldOnceInAnEvent();
  void aBodyThatIsCutIsTold();
};

void TestCommands::refusesAWrongForm_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QString>("error");
  const auto row = [](const QString& action, const QString& error) {
    QTest::addRow("%s", qPrintable(QStringLiteral("\"%1\" is refused").arg(action)))
        << action << error;
  };
  for (const char* word : {"/set", "/add", "/subtract", "/multiply", "/divide", "/isequal",
                           "/isnotequal", "/islessthan", "/isgreaterthan", "/islessthanorequal",
                           "/isgreaterthanorequal", "/repeat", "/pause"}) {
    for (const char* rest : {"", " ", " a", " a,", " ,b", " , "})
      row(QLatin1String(word) + QLatin1String(rest),
          QLatin1String(word) + QStringLiteral(" takes two arguments"));
  }
  for (const char* word : {"/delete", "/cond", "/condloop", "/unpause"}) {
    for (const char* rest : {"", " ", "  \t "})
      row(QLatin1String(word) + QLatin1String(rest),
          QLatin1String(word) + QStringLiteral(" takes one argument"));
  }
  for (const char* rest : {"", " ", "   "})
    row(QStringLiteral("/echo") + QLatin1String(rest),
        QStringLiteral("/echo takes at least one argument"));
  QTest::newRow("a first argument that is too long is refused")
      << "/set " + QString(1024, u'x') + ",1"
      << "/set takes two arguments";
}

void TestCommands::refusesAWrongForm() {
  QFETCH(const QString, action);
  QFETCH(const QString, error);
  ScriptFixture script;
  script.variables.set("a", "1");
  script.run({"/isequal 1, 1"});
  QCOMPARE(script.type(action), Pause());
  QCOMPARE(script.host.log, QStringList{"## " + error});
  QCOMPARE(script.variables.entries(), (Entries{{"a", "1"}}));
  QVERIFY(script.timers.byId().isEmpty());
  // The condition flag kept its value.
  QCOMPARE(script.logOf({"/cond still"}), QStringList{"> still"});
}

void TestCommands::changesVariables_data() {
  QTest::addColumn<Entries>("before");
  QTest::addColumn<QString>("action");
  QTest::addColumn<Entries>("after");
  QTest::addColumn<QStringList>("log");
  using Log = QStringList;
  const Entries none;
  QTest::newRow("/set creates a variable") << none << "/set a,1" << Entries{{"a", "1"}} << Log{};
  QTest::newRow("/set overwrites a variable")
      << Entries{{"a", "1"}} << "/set a,2" << Entries{{"a", "2"}} << Log{};
  QTest::newRow("/set trims both") << none << "/set  x  ,  5 " << Entries{{"x", "5"}} << Log{};
  QTest::newRow("/set keeps commas in the value")
      << none << "/set a,b,c" << Entries{{"a", "b,c"}} << Log{};
  QTest::newRow("/set replaces variables in the value")
      << Entries{{"max", "100"}} << "/set hp, {max}" << Entries{{"hp", "100"}, {"max", "100"}}
      << Log{};
  QTest::newRow("/set keeps a name of no variable")
      << none << "/set hp, {max}" << Entries{{"hp", "{max}"}} << Log{};
  QTest::newRow("/set does not replace variables in the name")
      << Entries{{"a", "b"}} << "/set {a}, 1" << Entries{{"a", "b"}, {"{a}", "1"}} << Log{};
  QTest::newRow("/set trims before it replaces")
      << Entries{{"a", " x "}} << "/set b, {a} " << Entries{{"a", " x "}, {"b", " x "}} << Log{};
  QTest::newRow("/set stores an empty value") << none << "/set a, " << Entries{{"a", ""}} << Log{};
  QTest::newRow("/set loses a letter outside ASCII")
      << none << QStringLiteral("/set a, caf\u00e9") << Entries{{"a", QStringLiteral("caf\ufffd")}}
      << Log{};
  QTest::newRow("/set takes a value of 1023 bytes")
      << none << "/set a," + QString(1023, u'x') << Entries{{"a", QString(1023, u'x')}} << Log{};
  QTest::newRow("/set cuts a value at 1023 bytes and says so")
      << none << "/set a," + QString(1024, u'x') << Entries{{"a", QString(1023, u'x')}}
      << Log{"## Text cut at 1023 bytes: /set"};
  QTest::newRow("/delete cuts a name at 1023 bytes and says so")
      << Entries{{QString(1023, u'x'), "1"}} << "/delete " + QString(1500, u'x') << none
      << Log{"## Text cut at 1023 bytes: /delete"};
  QTest::newRow("/subtract replaces variables in the operand")
      << Entries{{"m", "3"}, {"n", "4"}} << "/subtract n, {m}" << Entries{{"m", "3"}, {"n", "1"}}
      << Log{};
  QTest::newRow("/multiply replaces variables in the operand")
      << Entries{{"m", "3"}, {"n", "4"}} << "/multiply n, {m}"
      << Entries{{"m", "3"}, {"n", "12.000000"}} << Log{};
  QTest::newRow("/divide replaces variables in the operand")
      << Entries{{"m", "4"}, {"n", "4"}} << "/divide n, {m}"
      << Entries{{"m", "4"}, {"n", "1.000000"}} << Log{};
  QTest::newRow("/add trims both")
      << Entries{{"s", "a"}} << "/add  s ,  b " << Entries{{"s", "ab"}} << Log{};
  QTest::newRow("/add wants a name, even an empty operand")
      << Entries{{"s", "a"}} << "/add s, " << Entries{{"s", "a"}} << Log{};
  QTest::newRow("/delete removes a variable")
      << Entries{{"a", "1"}, {"b", "2"}} << "/delete a" << Entries{{"b", "2"}} << Log{};
  QTest::newRow("/delete trims the name") << Entries{{"a", "1"}} << "/delete  a  " << none << Log{};
  QTest::newRow("/delete takes the whole rest as the name")
      << Entries{{"a b, c", "1"}} << "/delete a b, c" << none << Log{};
  QTest::newRow("/delete reports a name of no variable")
      << none << "/delete nothing" << none << Log{"## No such variable to delete: nothing"};
  QTest::newRow("/delete does not replace variables in the name")
      << Entries{{"a", "b"}, {"b", "1"}} << "/delete {a}" << Entries{{"a", "b"}, {"b", "1"}}
      << Log{"## No such variable to delete: {a}"};
  QTest::newRow("/add adds") << Entries{{"n", "4"}} << "/add n, 5" << Entries{{"n", "9"}} << Log{};
  QTest::newRow("/add wraps around")
      << Entries{{"n", "2147483647"}} << "/add n, 1" << Entries{{"n", "-2147483648"}} << Log{};
  QTest::newRow("/add appends text")
      << Entries{{"s", "abc"}} << "/add s, def" << Entries{{"s", "abcdef"}} << Log{};
  QTest::newRow("/add appends text to a number")
      << Entries{{"n", "5"}} << "/add n, abc" << Entries{{"n", "5abc"}} << Log{};
  QTest::newRow("/add replaces variables in the operand")
      << Entries{{"m", "3"}, {"n", "4"}} << "/add n, {m}" << Entries{{"m", "3"}, {"n", "7"}}
      << Log{};
  QTest::newRow("/add a real number")
      << Entries{{"x", "1"}} << "/add x, 0.5" << Entries{{"x", "1.5"}} << Log{};
  QTest::newRow("/add reports a name of no variable")
      << none << "/add n, 1" << none << Log{"## No such variable: n"};
  QTest::newRow("/add does not replace variables in the name")
      << Entries{{"a", "n"}, {"n", "1"}} << "/add {a}, 1" << Entries{{"a", "n"}, {"n", "1"}}
      << Log{"## No such variable: {a}"};
  QTest::newRow("/subtract subtracts")
      << Entries{{"x", "10"}} << "/subtract x, 1" << Entries{{"x", "9"}} << Log{};
  QTest::newRow("/subtract leaves text alone")
      << Entries{{"x", "abc"}} << "/subtract x, 1" << Entries{{"x", "abc"}} << Log{};
  QTest::newRow("/subtract reports a name of no variable")
      << none << "/subtract n, 1" << none << Log{"## No such variable: n"};
  QTest::newRow("/multiply multiplies")
      << Entries{{"x", "3"}} << "/multiply x, 2" << Entries{{"x", "6.000000"}} << Log{};
  QTest::newRow("/multiply leaves text alone")
      << Entries{{"x", "3"}} << "/multiply x, abc" << Entries{{"x", "3"}} << Log{};
  QTest::newRow("/multiply reports a name of no variable")
      << none << "/multiply n, 1" << none << Log{"## No such variable: n"};
  QTest::newRow("/divide divides")
      << Entries{{"x", "10"}} << "/divide x, 3" << Entries{{"x", "3.333333"}} << Log{};
  QTest::newRow("/divide by zero divides by one")
      << Entries{{"n", "7"}} << "/divide n, 0" << Entries{{"n", "7.000000"}} << Log{};
  QTest::newRow("/divide leaves text alone")
      << Entries{{"x", "abc"}} << "/divide x, 3" << Entries{{"x", "abc"}} << Log{};
  QTest::newRow("/divide reports a name of no variable")
      << none << "/divide n, 1" << none << Log{"## No such variable: n"};
}

void TestCommands::changesVariables() {
  QFETCH(const Entries, before);
  QFETCH(const QString, action);
  ScriptFixture script;
  script.variables.load(before);
  QCOMPARE(script.type(action), Pause());
  QTEST(script.variables.entries(), "after");
  QTEST(script.host.log, "log");
}

void TestCommands::prints_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QStringList>("log");
  using Log = QStringList;
  const Log all{"++ Global variables:", "++  B : 2", "++  a : 1"};
  QTest::newRow("/variables lists them, upper case first") << "/variables" << all;
  QTest::newRow("/variables ignores what follows") << "/variables a, b {c}" << all;
  QTest::newRow("/echo prints white") << "/echo Hello there" << Log{"[#FFFFFF] Hello there"};
  QTest::newRow("/echo prints in a colour") << "/echo Hello, FF8000" << Log{"[#FF8000] Hello"};
  QTest::newRow("/echo trims both") << "/echo   Hello  ,  FF8000  " << Log{"[#FF8000] Hello"};
  QTest::newRow("/echo takes what follows a comma for the colour") << "/echo a, b" << Log{"[#b] a"};
  QTest::newRow("/echo takes only the first comma") << "/echo a, b, c" << Log{"[#b, c] a"};
  QTest::newRow("/echo with nothing after the comma prints the line")
      << "/echo a," << Log{"[#FFFFFF] a,"};
  QTest::newRow("/echo with nothing before the comma prints the line")
      << "/echo ,FF8000" << Log{"[#FFFFFF] ,FF8000"};
  QTest::newRow("/echo with a blank colour") << "/echo a, " << Log{"[#] a"};
  QTest::newRow("/echo replaces variables in the text")
      << "/echo {a} and {B}" << Log{"[#FFFFFF] 1 and 2"};
  QTest::newRow("/echo does not replace variables in the colour")
      << "/echo x, {a}" << Log{"[#{a}] x"};
  QTest::newRow("/echo prints a text of 1023 bytes")
      << "/echo " + QString(1023, u'x') << Log{"[#FFFFFF] " + QString(1023, u'x')};
  const QString cut = QStringLiteral("## Text cut at 1023 bytes: /echo");
  QTest::newRow("/echo cuts a text at 1023 bytes and says so")
      << "/echo " + QString(1024, u'x') << Log{cut, "[#FFFFFF] " + QString(1023, u'x')};
  QTest::newRow("/echo with a text too long for a colour prints the line's start")
      << "/echo " + QString(1024, u'x') + ",FF8000" << Log{cut, "[#FFFFFF] " + QString(1023, u'x')};
  QTest::newRow("/echo counts the bytes before it replaces variables")
      << "/echo " + QString(1020, u'x') + "{a}" << Log{"[#FFFFFF] " + QString(1020, u'x') + "1"};
}

void TestCommands::prints() {
  QFETCH(const QString, action);
  ScriptFixture script;
  script.variables.set("a", "1");
  script.variables.set("B", "2");
  QCOMPARE(script.type(action), Pause());
  QTEST(script.host.log, "log");
}

void TestCommands::anUnpauseTakesItsIdAsItStands_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QString>("line");
  QTest::newRow("blanks before it are skipped") << "/unpause   t"
                                                << "++ Deleted timer: t";
  QTest::newRow("blanks after it are kept") << "/unpause t "
                                            << "## No such pending timer: t ";
  QTest::newRow("its case counts") << "/unpause T"
                                   << "## No such pending timer: T";
  QTest::newRow("variables are not replaced") << "/unpause {a}"
                                              << "## No such pending timer: {a}";
  QTest::newRow("a comma belongs to it") << "/unpause t,u"
                                         << "## No such pending timer: t,u";
}

void TestCommands::anUnpauseTakesItsIdAsItStands() {
  QFETCH(const QString, action);
  QFETCH(const QString, line);
  ScriptFixture script;
  script.variables.set("a", "t");
  script.run({"/pause t, 60000"});
  QCOMPARE(script.logOf({action}), QStringList{line});
}

void TestCommands::growingAVariableForEverStaysBounded() {
  ScriptFixture script;
  script.host.keepsLines = false;
  script.run({"/set s, x", "/set v, y", "/repeat 60, /add s, {s}", "/repeat 60, /set v, {v}{v}",
              "/echo {s}{v}"});
  QCOMPARE(script.variables.value("s").size(), VariableTable::maximumLength);
  QCOMPARE(script.variables.value("v").size(), VariableTable::maximumLength);
  // Only the first loss of an event is told; /set and /echo cut later.
  QCOMPARE(script.host.errors(), QStringList{"## Text cut at 65536 characters: /add"});
}

void TestCommands::aCutTextIsToldOnceInAnEvent_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QString>("line");
  const QString longest = QStringLiteral("## Text cut at 65536 characters: ");
  QTest::newRow("a value that is set") << "/set w, {v}x" << longest + "/set";
  QTest::newRow("a value that grows") << "/add v, x" << longest + "/add";
  QTest::newRow("an operand") << "/multiply v, {v}x" << longest + "/multiply";
  QTest::newRow("the first of two texts that are compared")
      << "/isequal {v}x, x" << longest + "/isequal";
  QTest::newRow("the second of them") << "/isequal x, {v}x" << longest + "/isequal";
  QTest::newRow("a loop's count") << "/repeat {v}x, x" << longest + "/repeat";
  QTest::newRow("an argument") << "/set a, " + QString(1024, u'x')
                               << "## Text cut at 1023 bytes: /set";
  QTest::newRow("a timer's delay")
      << "/pause t, " + QString(1024, u'1') << "## Text cut at 1023 bytes: /pause";
  QTest::newRow("a timer's id") << "/unpause " + QString(1024, u't')
                                << "## Text cut at 1023 bytes: /unpause";
}

void TestCommands::aCutTextIsToldOnceInAnEvent() {
  QFETCH(const QString, action);
  QFETCH(const QString, line);
  ScriptFixture script;
  script.variables.set("v", QString(VariableTable::maximumLength, u'v'));
  script.aliases["it"] = QStringList{action};
  const auto losses = [&] { return script.host.noted("## Text cut"); };
  script.run({"/repeat 3, it", "it"});
  QCOMPARE(losses(), QStringList{line});
  script.run({"it"});
  QCOMPARE(losses(), (QStringList{line, line}));
  // All runs that one read from the server starts belong to one event.
  const Losses::Event read(script.interpreter.losses());
  script.run({"it"});
  script.run({"it"});
  QCOMPARE(losses(), (QStringList{line, line, line}));
}

void TestCommands::aBodyThatIsCutIsTold() {
  ScriptFixture script;
  QCOMPARE(script.logOf({"/isequal 1, 1", "/cond " + QString(1030, u'x')}),
           (QStringList{"## Text cut at 1023 bytes: /cond", "> " + QString(1023, u'x')}));
  QCOMPARE(script.logOf({"/repeat 1," + QString(1030, u'x')}),
           (QStringList{"## Text cut at 1023 bytes: /repeat", "> " + QString(1023, u'x')}));
}

KELMORA_TEST_MAIN(TestCommands)
#include "tst_commands.moc"
