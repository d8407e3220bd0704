#include <QTest>
#include <limits>

#include "support/ScratchMain.h"
#include "terminal/core/Vitals.h"

using namespace kelmora;
using namespace kelmora::terminal;

namespace {

using Bar = std::optional<int>;
constexpr Bar skipped = std::nullopt;
constexpr int lowest = std::numeric_limits<int>::min();

}  // namespace

Q_DECLARE_METATYPE(VitalPercentages)

class TstVitals : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void readsPrompts_data();
  void readsPrompts();
  void leavesOtherLinesAlone_data();
  void leavesOtherLinesAlone();
};

void TstVitals::readsPrompts_data() {
  QTest::addColumn<QByteArray>("line");
  QTest::addColumn<VitalPercentages>("bars");
  const auto row = [](const char* name, const char* line, Bar hp, Bar sp, Bar ep) {
    QTest::newRow(name) << QByteArray(line) << VitalPercentages{hp, sp, ep};
  };
  row("percentages are cut, not rounded", "hp: [ 2 / 3 ], sp: [ 199 / 200 ], ep: [ 1 / 3 ]", 66, 99,
      33);
  row("the bars are hit, spell and endurance points",
      "hp: [ 50 / 200 ], sp: [ 10 / 10 ], ep: [ 0 / 80 ]", 25, 100, 0);
  row("lower case needs no blanks", "hp: [10/20], sp: [1/2], ep: [3/4]", 50, 50, 75);
  row("lower case needs no blanks anywhere", "hp:[10/20],sp:[1/2],ep:[3/4]", 50, 50, 75);
  row("lower case takes any run of blanks", "hp:\t[  10  /\t20   ],\t sp: [ 1 / 2 ], ep: [ 3 / 4 ]",
      50, 50, 75);
  row("upper case without blanks", "HP: [10/20], SP: [1/2], EP: [3/4]", 50, 50, 75);
  row("upper case takes blanks before a number", "HP: [ 10/ 20], SP: [1/2], EP: [3/4]", 50, 50, 75);
  row("upper case takes blanks where its format has one", "HP:[10/20],SP:  [1/2],EP:[3/4]", 50, 50,
      75);
  row("what follows the last bracket is ignored", "HP: [10/20], SP: [1/2], EP: [3/4] > look", 50,
      50, 75);
  row("the last bracket may be missing", "HP: [10/20], SP: [1/2], EP: [3/4", 50, 50, 75);
  row("a current value above the maximum is above 100", "hp: [ 30 / 20 ], sp: [1/2], ep: [3/4]",
      150, 50, 75);
  row("a negative current value is 0", "hp: [ -5 / 20 ], sp: [-1/-2], ep: [-3/0]", 0, 0, 0);
  row("a maximum of 0 skips its bar alone", "hp: [ 5 / 0 ], sp: [0/0], ep: [3/4]", skipped, skipped,
      75);
  row("a negative maximum gives a negative percentage", "hp: [ 5 / -10 ], sp: [1/2], ep: [3/4]",
      -50, 50, 75);
  row("products wrap at 32 bits",
      "hp: [ 21474837 / 1 ], sp: [ 2147483647 / 10 ], ep: [ 42949673 / 1 ]", lowest + 52, -10, 4);
  row("the one quotient that does not fit wraps",
      "hp: [ 1073741824 / -1 ], sp: [ 536870912 / -1 ], ep: [ 1 / -1 ]", 0, lowest, -100);
  row("numbers beyond 64 bits are clamped first",
      "hp: [ 99999999999999999999 / 5 ], sp: [1/2], ep: [3/4]", 0, 50, 75);
}

void TstVitals::readsPrompts() {
  QFETCH(QByteArray, line);
  QFETCH(VitalPercentages, bars);
  const auto read = parseVitals(line.constData());
  QVERIFY(read.has_value());
  for (std::size_t bar = 0; bar < bars.size(); ++bar) {
    QCOMPARE(read->at(bar).has_value(), bars.at(bar).has_value());
    QCOMPARE(read->at(bar).value_or(0), bars.at(bar).value_or(0));
  }
}

void TstVitals::leavesOtherLinesAlone_data() {
  QTest::addColumn<QByteArray>("line");
  const auto row = [](const char* name, const char* line) {
    QTest::newRow(name) << QByteArray(line);
  };
  row("an empty line", "");
  row("ordinary text", "You are hungry.");
  row("a prompt after a blank", " hp: [ 1 / 2 ], sp: [ 1 / 2 ], ep: [ 1 / 2 ]");
  row("a prompt after other text", "> HP: [1/2], SP: [1/2], EP: [1/2]");
  row("a prompt cut by the end of a read", "hp: [ 1 / 2 ], sp: [ 1 / 2 ], ep: [ 1 /");
  row("the rest of a cut prompt", " 2 ], sp: [ 1 / 2 ], ep: [ 1 / 2 ]");
  row("five numbers", "HP: [1/2], SP: [1/2], EP: [1]");
  row("upper case with blanks where its format has none",
      "HP: [ 5 / 10 ], SP: [ 1 / 2 ], EP: [ 1 / 2 ]");
  row("upper case with a blank before the bracket", "HP: [5/10 ], SP: [1/2], EP: [1/2]");
  row("mixed case", "hp: [1/2], SP: [1/2], EP: [1/2]");
  row("a tab as HTML text", "hp:&nbsp;&nbsp;&nbsp;&nbsp;[1/2], sp: [1/2], ep: [1/2]");
}

void TstVitals::leavesOtherLinesAlone() {
  QFETCH(QByteArray, line);
  QVERIFY(!parseVitals(line.constData()));
}

KELMORA_TEST_MAIN(TstVitals)
#include "tst_vitals.moc"
