#include <QTest>

#include "script/ScriptFixture.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

class TestLoops : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void setsTheFlag_data();
  void setsTheFlag();
  void theFlagStartsClear();
  void theFlagIsSharedByAllScripts();
  void runsBodies_data();
  void runsBodies();
  void repeatsAtMost512Times();
  void aConditionLoopThatNeverEndsIsStopped();
  void aConditionLoopThatEndsInItsLastRunIsNoError();
  void aConditionLoopEndsWhenItsBodyClearsTheFlag();
  void nestedLoopsHaveTheirOwnLimits();
  void pausesInBodiesHoldNothingBack_data();
  void pausesInBodiesHoldNothingBack();
  void aPauseInAnAliasThatIsABodyParksTheRestOfThatAlias();
};

void TestLoops::setsTheFlag_data() {
  QTest::addColumn<QString>("comparison");
  QTest::addColumn<bool>("flag");
  QTest::newRow("equal texts") << "/isequal {a}, yes" << true;
  QTest::newRow("a variable on the right") << "/isequal yes, {a}" << true;
  QTest::newRow("both are trimmed") << "/isequal  yes ,  yes " << true;
  QTest::newRow("they are trimmed before variables are replaced") << "/isequal {blank}, x" << false;
  QTest::newRow("a missing variable stays as text") << "/isequal {none}, {none}" << true;
  QTest::newRow("equality is of text") << "/isequal 5, 5.0" << false;
  QTest::newRow("equality is case-sensitive") << "/isequal YES, {a}" << false;
  QTest::newRow("the second may hold commas") << "/isequal a, a, b" << false;
  QTest::newRow("not equal") << "/isnotequal 5, 5.0" << true;
  QTest::newRow("not unequal") << "/isnotequal {a}, yes" << false;
  QTest::newRow("less") << "/islessthan 9, 10" << true;
  QTest::newRow("not less when equal") << "/islessthan 10, 10" << false;
  QTest::newRow("text reads as 0") << "/islessthan abc, 1" << true;
  QTest::newRow("greater") << "/isgreaterthan 10, 9" << true;
  QTest::newRow("not greater when equal") << "/isgreaterthan 10, 10" << false;
  QTest::newRow("less or equal when equal") << "/islessthanorequal 10, 10.0" << true;
  QTest::newRow("not less or equal") << "/islessthanorequal 10, 9" << false;
  QTest::newRow("greater or equal when equal") << "/isgreaterthanorequal 5, 5.0" << true;
  QTest::newRow("not greater or equal") << "/isgreaterthanorequal 4.9, 5" << false;
  QTest::newRow("no number stands in no order") << "/isgreaterthanorequal nan, nan" << false;
  // Each command with a variable as its first and as its second argument, and with
  // numbers that only differ beyond single precision.
  struct Row {
    const char* command;
    bool less;
    bool equal;
    bool greater;
  };
  for (const Row& row :
       {Row{"/islessthan", true, false, false}, Row{"/isgreaterthan", false, false, true},
        Row{"/islessthanorequal", true, true, false},
        Row{"/isgreaterthanorequal", false, true, true}, Row{"/isequal", false, true, false},
        Row{"/isnotequal", true, false, true}}) {
    const QLatin1StringView command(row.command);
    QTest::addRow("%s replaces a smaller first", row.command) << command + " {one}, 2" << row.less;
    QTest::addRow("%s replaces a greater first", row.command)
        << command + " {one}, 0" << row.greater;
    QTest::addRow("%s replaces an equal first", row.command) << command + " {one}, 1" << row.equal;
    QTest::addRow("%s replaces a greater second", row.command)
        << command + " -1, {two}" << row.less;
    QTest::addRow("%s replaces a smaller second", row.command)
        << command + " 3, {two}" << row.greater;
    QTest::addRow("%s replaces an equal second", row.command) << command + " 2, {two}" << row.equal;
    if (command.endsWith(QLatin1StringView("than")) ||
        command.endsWith(QLatin1StringView("orequal"))) {
      QTest::addRow("%s is of single precision", row.command)
          << command + " 16777216, 16777217" << row.equal;
      QTest::addRow("%s is so on the left too", row.command)
          << command + " 16777217, 16777216" << row.equal;
    }
  }
}

void TestLoops::setsTheFlag() {
  QFETCH(const QString, comparison);
  QFETCH(const bool, flag);
  ScriptFixture script;
  script.variables.set("a", "yes");
  script.variables.set("blank", " x ");
  script.variables.set("one", "1");
  script.variables.set("two", "2");
  // Whether the flag was clear or set before.
  for (const char* before : {"/isequal 0, 1", "/isequal 1, 1"}) {
    QCOMPARE(script.logOf({before, comparison, "/cond set", "end"}),
             flag ? (QStringList{"> set", "> end"}) : QStringList{"> end"});
  }
}

void TestLoops::theFlagStartsClear() {
  ScriptFixture script;
  QCOMPARE(script.logOf({"/cond x", "/condloop y"}), QStringList());
}

void TestLoops::theFlagIsSharedByAllScripts() {
  ScriptFixture script;
  script.type("/isequal 1, 1");
  QCOMPARE(script.logOf({"/cond x"}), QStringList{"> x"});
  QCOMPARE(script.logOf({"/cond x"}), QStringList{"> x"});
  script.aliases["clear"] = QStringList{"/isequal 1, 2"};
  QCOMPARE(script.logOf({"clear", "/cond x"}), QStringList());
}

void TestLoops::runsBodies_data() {
  QTest::addColumn<QStringList>("actions");
  QTest::addColumn<QStringList>("log");
  using List = QStringList;
  QTest::newRow("/cond runs its body when the flag is set")
      << List{"/isequal {a}, yes", "/cond north"} << List{"> north"};
  QTest::newRow("/cond takes commas for its body")
      << List{"/isequal 1,1", "/cond  say a, b "} << List{"> say a, b"};
  QTest::newRow("/cond runs a command")
      << List{"/isequal 1,1", "/cond /cond /echo {a}, 00FF00"} << List{"[#00FF00] yes"};
  QTest::newRow("/cond sends a doubled slash once less")
      << List{"/isequal 1,1", "/cond //who"} << List{"> /who"};
  QTest::newRow("/cond reports the errors of its body")
      << List{"/isequal 1,1", "/cond /set"} << List{"## /set takes two arguments"};
  QTest::newRow("a body is text for the server, variables and all")
      << List{"/repeat 1, say {a}"} << List{"> say {a}"};
  QTest::newRow("/repeat runs its body so many times")
      << List{"/repeat 3, say hi"} << List{"> say hi", "> say hi", "> say hi"};
  QTest::newRow("/repeat cuts off a fraction") << List{"/repeat 2.9, x"} << List{"> x", "> x"};
  QTest::newRow("/repeat runs nothing for a negative count")
      << List{"/repeat -1, x", "end"} << List{"> end"};
  QTest::newRow("/repeat runs nothing for text") << List{"/repeat abc, x", "end"} << List{"> end"};
  QTest::newRow("/repeat runs nothing beyond 32 bits")
      << List{"/repeat 1e10, x", "end"} << List{"> end"};
  QTest::newRow("/repeat replaces variables in the count")
      << List{"/repeat {n}, x"} << List{"> x", "> x", "> x", "> x"};
  QTest::newRow("/repeat takes commas for its body") << List{"/repeat 1,  a, b "} << List{"> a, b"};
  QTest::newRow("a nested command replaces variables at each run")
      << List{"/repeat 3, /add n, {n}", "/echo {n}"} << List{"[#FFFFFF] 32"};
  QTest::newRow("loops nest") << List{"/repeat 2, /repeat 2, x", "end"}
                              << List{"> x", "> x", "> x", "> x", "> end"};
  QTest::newRow("a condition in a loop")
      << List{"/isequal 1,1", "/repeat 2, /cond x"} << List{"> x", "> x"};
  QTest::newRow("a blank body that survives the scan sends an empty line")
      << List{"/isequal 1,1", QStringLiteral("/cond \u00c2\u00a0")} << List{"> "};
}

void TestLoops::runsBodies() {
  QFETCH(const QStringList, actions);
  ScriptFixture script;
  script.variables.set("a", "yes");
  script.variables.set("n", "4");
  QTEST(script.logOf(actions), "log");
}

void TestLoops::repeatsAtMost512Times() {
  ScriptFixture script;
  QCOMPARE(script.logOf({"/repeat 512, x"}), QStringList(512, "> x"));
  QCOMPARE(script.logOf({"/repeat 1000, x", "end"}), QStringList(512, "> x") << "> end");
}

void TestLoops::aConditionLoopThatNeverEndsIsStopped() {
  ScriptFixture script;
  QCOMPARE(script.logOf({"/isequal 1, 1", "/condloop x", "end"}),
           QStringList(513, "> x") << "## /condloop has reached maximum evaluation"
                                   << "> end");
  // The flag is still set.
  QCOMPARE(script.logOf({"/cond y"}), QStringList{"> y"});
}

void TestLoops::aConditionLoopThatEndsInItsLastRunIsNoError() {
  ScriptFixture script;
  script.aliases["step"] = QStringList{"/add n, 1", "/islessthan {n}, 513", "x"};
  script.run({"/set n, 0", "/isequal 1, 1"});
  QCOMPARE(script.logOf({"/condloop step"}), QStringList(513, "> x"));
  QCOMPARE(script.variables.value("n"), "513");
}

void TestLoops::aConditionLoopEndsWhenItsBodyClearsTheFlag() {
  ScriptFixture script;
  script.aliases["step"] = QStringList{"/add n, 1", "/islessthan {n}, 3", "/echo {n}"};
  QCOMPARE(script.logOf({"/set n, 0", "/isequal 1, 1", "/condloop step", "/cond never"}),
           (QStringList{"[#FFFFFF] 1", "[#FFFFFF] 2", "[#FFFFFF] 3"}));
}

void TestLoops::nestedLoopsHaveTheirOwnLimits() {
  ScriptFixture script;
  script.host.keepsLines = false;
  script.run({"/repeat 600, /repeat 600, x"});
  QCOMPARE(script.host.sentCount, 512 * 512);
  QCOMPARE(script.host.errors(), QStringList());
  script.run({"/isequal 1, 1", "/condloop /condloop x"});
  QCOMPARE(script.host.sentCount, 512 * 512 + 513 * 513);
  QCOMPARE(script.host.errors(), QStringList(514, "## /condloop has reached maximum evaluation"));
}

void TestLoops::pausesInBodiesHoldNothingBack_data() {
  QTest::addColumn<QStringList>("actions");
  QTest::newRow("in /cond") << QStringList{"/isequal 1, 1", "/cond /pause t, 100", "end"};
  QTest::newRow("in /cond in /cond")
      << QStringList{"/isequal 1, 1", "/cond /cond /pause t, 100", "end"};
  QTest::newRow("in /repeat") << QStringList{"/repeat 2, /pause t, 100", "end"};
  QTest::newRow("in a single /repeat") << QStringList{"/repeat 1, /pause t, 100", "end"};
  QTest::newRow("in /condloop") << QStringList{"/isequal 1, 1", "/condloop stop", "end"};
  QTest::newRow("in /cond in /repeat")
      << QStringList{"/isequal 1, 1", "/repeat 2, /cond /pause t, 100", "end"};
}

void TestLoops::pausesInBodiesHoldNothingBack() {
  QFETCH(const QStringList, actions);
  ScriptFixture script;
  script.aliases["stop"] = QStringList{"/isequal 1, 2", "/repeat 1, /pause t, 100"};
  QCOMPARE(script.logOf(actions), QStringList{"> end"});
  QVERIFY(script.timers.byId().isEmpty());
}

void TestLoops::aPauseInAnAliasThatIsABodyParksTheRestOfThatAlias() {
  ScriptFixture script;
  script.aliases["go"] = QStringList{"x", "/pause t, 30", "y"};
  QCOMPARE(script.logOf({"/repeat 2, go", "end"}),
           (QStringList{"> x", "> x", "## Duplicate timer id: t", "> end"}));
  QTRY_VERIFY(script.timers.byId().isEmpty());
  QTest::qWait(60);
  QCOMPARE(script.host.noted("> y"), QStringList{"> y"});
}

KELMORA_TEST_MAIN(TestLoops)
#include "tst_loops.moc"
