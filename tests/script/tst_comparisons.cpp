#include <QTest>

#include "script/Comparisons.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

using script::Comparison;

class TestComparisons : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void compares_data();
  void compares();
};

void TestComparisons::compares_data() {
  QTest::addColumn<QString>("first");
  QTest::addColumn<QString>("second");
  // Equal, NotEqual, Less, Greater, LessOrEqual, GreaterOrEqual
  QTest::addColumn<QString>("answers");
  QTest::newRow("the same text") << "abc"
                                 << "abc"
                                 << "10 0011";
  QTest::newRow("texts that differ in case") << "abc"
                                             << "ABC"
                                             << "01 0011";
  QTest::newRow("a text and its start") << "abc"
                                        << "ab"
                                        << "01 0011";
  QTest::newRow("two empty texts") << ""
                                   << ""
                                   << "10 0011";
  QTest::newRow("one number written in two ways") << "5"
                                                  << "5.0"
                                                  << "01 0011";
  QTest::newRow("a larger number") << "10"
                                   << "9"
                                   << "01 0101";
  QTest::newRow("a smaller number") << "9"
                                    << "10"
                                    << "01 1010";
  QTest::newRow("the same number") << "10"
                                   << "10"
                                   << "10 0011";
  QTest::newRow("negative numbers") << "-2"
                                    << "-1"
                                    << "01 1010";
  QTest::newRow("numbers with an exponent") << "1e2"
                                            << "99.5"
                                            << "01 0101";
  QTest::newRow("numbers with blanks around them") << " 3 "
                                                   << "3"
                                                   << "01 0011";
  QTest::newRow("text counts as 0") << "abc"
                                    << "1"
                                    << "01 1010";
  QTest::newRow("text on the right counts as 0") << "1"
                                                 << "abc"
                                                 << "01 0101";
  QTest::newRow("the empty text counts as 0") << ""
                                              << "0"
                                              << "01 0011";
  QTest::newRow("a number with a unit counts as 0") << "5hp"
                                                    << "1"
                                                    << "01 1010";
  QTest::newRow("single precision cannot tell these apart") << "16777216"
                                                            << "16777217"
                                                            << "01 0011";
  QTest::newRow("nor these, the larger one on the left") << "16777217"
                                                         << "16777216"
                                                         << "01 0011";
  QTest::newRow("nor these fractions") << "0.1"
                                       << "0.100000001"
                                       << "01 0011";
  QTest::newRow("it can tell the next number") << "16777218"
                                               << "16777216"
                                               << "01 0101";
  QTest::newRow("a negative zero is zero") << "-0"
                                           << "0"
                                           << "01 0011";
  QTest::newRow("a number too large is infinite") << "1e39"
                                                  << "1e38"
                                                  << "01 0101";
  QTest::newRow("two numbers too large are equally infinite") << "1e39"
                                                              << "1e400"
                                                              << "01 0011";
  QTest::newRow("infinity is above all") << "inf"
                                         << "3e38"
                                         << "01 0101";
  QTest::newRow("no number on the left has no order") << "nan"
                                                      << "1"
                                                      << "01 0000";
  QTest::newRow("no number on the right has no order") << "1"
                                                       << "nan"
                                                       << "01 0000";
  QTest::newRow("no number on both sides is the same text") << "nan"
                                                            << "nan"
                                                            << "10 0000";
}

void TestComparisons::compares() {
  QFETCH(const QString, first);
  QFETCH(const QString, second);
  const auto answer = [&](Comparison comparison) {
    return script::compare(comparison, first, second) ? u'1' : u'0';
  };
  QString answers;
  answers += answer(Comparison::Equal);
  answers += answer(Comparison::NotEqual);
  answers += u' ';
  answers += answer(Comparison::Less);
  answers += answer(Comparison::Greater);
  answers += answer(Comparison::LessOrEqual);
  answers += answer(Comparison::GreaterOrEqual);
  QTEST(answers, "answers");
}

KELMORA_TEST_MAIN(TestComparisons)
#include "tst_comparisons.moc"
