#include <QRandomGenerator>
#include <QTest>
#include <limits>

#include "script/Arithmetic.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

using script::Operation;

class TestArithmetic : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void calculates_data();
  void calculates();
  void wholeSumsWrapAround();
  void countsLoops_data();
  void countsLoops();
};

namespace {

const QString unchanged = QStringLiteral("(unchanged)");

QString resultOf(Operation operation, const QString& value, const QString& operand) {
  return script::calculate(operation, value, operand).value_or(unchanged);
}

}  // namespace

void TestArithmetic::calculates_data() {
  QTest::addColumn<QString>("value");
  QTest::addColumn<QString>("operand");
  QTest::addColumn<QString>("sum");
  QTest::addColumn<QString>("difference");
  QTest::addColumn<QString>("product");
  QTest::addColumn<QString>("quotient");
  const QString same = unchanged;
  QTest::newRow("two whole numbers") << "10"
                                     << "3"
                                     << "13"
                                     << "7"
                                     << "30.000000"
                                     << "3.333333";
  QTest::newRow("a whole number by one") << "10"
                                         << "1"
                                         << "11"
                                         << "9"
                                         << "10.000000"
                                         << "10.000000";
  QTest::newRow("a whole number and a real one") << "1"
                                                 << "0.5"
                                                 << "1.5"
                                                 << "0.5"
                                                 << "0.500000"
                                                 << "2.000000";
  QTest::newRow("two real numbers") << "1.5"
                                    << "0.25"
                                    << "1.75"
                                    << "1.25"
                                    << "0.375000"
                                    << "6.000000";
  QTest::newRow("a real number that is whole is real") << "6.000000"
                                                       << "2"
                                                       << "8"
                                                       << "4"
                                                       << "12.000000"
                                                       << "3.000000";
  QTest::newRow("negative numbers") << "-7"
                                    << "2"
                                    << "-5"
                                    << "-9"
                                    << "-14.000000"
                                    << "-3.500000";
  QTest::newRow("a plus sign") << "+7"
                               << "+2"
                               << "9"
                               << "5"
                               << "14.000000"
                               << "3.500000";
  QTest::newRow("blanks around a number") << " 7 "
                                          << "2"
                                          << "9"
                                          << "5"
                                          << "14.000000"
                                          << "3.500000";
  QTest::newRow("a whole zero divides as one") << "7"
                                               << "0"
                                               << "7"
                                               << "7"
                                               << "0.000000"
                                               << "7.000000";
  QTest::newRow("a real zero divides as one") << "7"
                                              << "0.0"
                                              << "7"
                                              << "7"
                                              << "0.000000"
                                              << "7.000000";
  // How a negative zero is written is the toolkit's own affair.
  QTest::newRow("a negative zero divides as one")
      << "7"
      << "-0.0"
      << "7"
      << "7" << QString::number(-0.0, 'f', 6) << "7.000000";
  QTest::newRow("a whole negative zero is zero") << "-0"
                                                 << "3"
                                                 << "3"
                                                 << "-3"
                                                 << "0.000000"
                                                 << "0.000000";
  QTest::newRow("beside a real number it is not")
      << "-0"
      << "0.5"
      << "0.5"
      << "-0.5" << QString::number(-0.0, 'f', 6) << QString::number(-0.0, 'f', 6);
  QTest::newRow("the largest number wraps") << "2147483647"
                                            << "1"
                                            << "-2147483648"
                                            << "2147483646"
                                            << "2147483648.000000"
                                            << "2147483648.000000";
  QTest::newRow("the smallest number wraps") << "-2147483648"
                                             << "1"
                                             << "-2147483647"
                                             << "2147483647"
                                             << "-2147483648.000000"
                                             << "-2147483648.000000";
  QTest::newRow("the smallest number by minus one") << "-2147483648"
                                                    << "-1"
                                                    << "2147483647"
                                                    << "-2147483647"
                                                    << "2147483648.000000"
                                                    << "2147483648.000000";
  QTest::newRow("beyond 32 bits a number is real") << "2147483648"
                                                   << "1"
                                                   << "2.14748e+09"
                                                   << "2.14748e+09"
                                                   << "2147483648.000000"
                                                   << "2147483648.000000";
  QTest::newRow("six digits are written") << "0.1"
                                          << "1234567"
                                          << "1.23457e+06"
                                          << "-1.23457e+06"
                                          << "123456.703125"
                                          << "0.000000";
  QTest::newRow("single precision shows") << "16777217"
                                          << "1.0"
                                          << "1.67772e+07"
                                          << "1.67772e+07"
                                          << "16777216.000000"
                                          << "16777216.000000";
  QTest::newRow("single precision overflows to infinity") << "3e38"
                                                          << "3e38"
                                                          << "inf"
                                                          << "0"
                                                          << "inf"
                                                          << "1.000000";
  QTest::newRow("and to the negative one") << "-3e38"
                                           << "3e38"
                                           << "0"
                                           << "-inf"
                                           << "-inf"
                                           << "-1.000000";
  QTest::newRow("a small part is lost in single precision") << "16777216.0"
                                                            << "1"
                                                            << "1.67772e+07"
                                                            << "1.67772e+07"
                                                            << "16777216.000000"
                                                            << "16777216.000000";
  QTest::newRow("sums show that they are of single precision") << "0.1"
                                                               << "0.0999999"
                                                               << "0.2"
                                                               << "1.04308e-07"
                                                               << "0.010000"
                                                               << "1.000001";
  QTest::newRow("text on the left") << "abc"
                                    << "def"
                                    << "abcdef" << same << same << same;
  QTest::newRow("text on the right") << "5"
                                     << "abc"
                                     << "5abc" << same << same << same;
  QTest::newRow("text before a number") << "abc"
                                        << "5"
                                        << "abc5" << same << same << same;
  QTest::newRow("an empty value") << ""
                                  << "5"
                                  << "5" << same << same << same;
  QTest::newRow("an empty operand") << "5"
                                    << ""
                                    << "5" << same << same << same;
  QTest::newRow("a number with a unit is text") << "5hp"
                                                << "1"
                                                << "5hp1" << same << same << same;
  QTest::newRow("a name that is no variable is text") << "5"
                                                      << "{n}"
                                                      << "5{n}" << same << same << same;
  QTest::newRow("hexadecimal is text") << "0x10"
                                       << "1"
                                       << "0x101" << same << same << same;
  QTest::newRow("grouped digits are text") << "1,000"
                                           << "1"
                                           << "1,0001" << same << same << same;
  QTest::newRow("a number too large for single precision is text")
      << "1e39"
      << "1"
      << "1e391" << same << same << same;
  QTest::newRow("a number too large for any precision is text") << "1"
                                                                << "1e400"
                                                                << "11e400" << same << same << same;
  QTest::newRow("infinity is a number") << "inf"
                                        << "1"
                                        << "inf"
                                        << "inf"
                                        << "inf"
                                        << "inf";
  QTest::newRow("no number is a number") << "nan"
                                         << "1"
                                         << "nan"
                                         << "nan"
                                         << "nan"
                                         << "nan";
  QTest::newRow("a product can overflow to infinity")
      << "3e38"
      << "10.0"
      << "3e+38"
      << "3e+38"
      << "inf"
      << "30000001069098037760363920625477091328.000000";
}

void TestArithmetic::calculates() {
  QFETCH(const QString, value);
  QFETCH(const QString, operand);
  QTEST(resultOf(Operation::Add, value, operand), "sum");
  QTEST(resultOf(Operation::Subtract, value, operand), "difference");
  QTEST(resultOf(Operation::Multiply, value, operand), "product");
  QTEST(resultOf(Operation::Divide, value, operand), "quotient");
}

void TestArithmetic::wholeSumsWrapAround() {
  QRandomGenerator random(7);
  const auto wrapped = [](qint64 sum) {
    constexpr qint64 span = qint64{1} << 32;
    while (sum > std::numeric_limits<qint32>::max())
      sum -= span;
    while (sum < std::numeric_limits<qint32>::min())
      sum += span;
    return QString::number(sum);
  };
  for (int round = 0; round < 20'000; ++round) {
    const auto a = static_cast<qint32>(random.generate());
    const auto b = static_cast<qint32>(random.generate());
    QCOMPARE(resultOf(Operation::Add, QString::number(a), QString::number(b)),
             wrapped(qint64{a} + b));
    QCOMPARE(resultOf(Operation::Subtract, QString::number(a), QString::number(b)),
             wrapped(qint64{a} - b));
  }
}

void TestArithmetic::countsLoops_data() {
  QTest::addColumn<QString>("count");
  QTest::addColumn<int>("runs");
  QTest::newRow("a number below the limit") << "3" << 3;
  QTest::newRow("the limit") << "512" << 512;
  QTest::newRow("a number above the limit") << "1000" << 512;
  QTest::newRow("a fraction is cut off") << "2.9" << 2;
  QTest::newRow("less than one is none") << "0.9" << 0;
  QTest::newRow("zero is none") << "0" << 0;
  QTest::newRow("a negative number is none") << "-1" << 0;
  QTest::newRow("a number with an exponent counts") << "1e1" << 10;
  QTest::newRow("text is none") << "abc" << 0;
  QTest::newRow("empty text is none") << "" << 0;
  QTest::newRow("a number with a unit is none") << "3x" << 0;
  QTest::newRow("the largest below 32 bits in single precision") << "2147483520" << 512;
  QTest::newRow("a number that single precision rounds out of 32 bits") << "2147483647" << 0;
  QTest::newRow("a number outside 32 bits is none") << "1e10" << 0;
  QTest::newRow("a number far below 32 bits is none") << "-1e10" << 0;
  QTest::newRow("infinity is none") << "inf" << 0;
  QTest::newRow("no number is none") << "nan" << 0;
}

void TestArithmetic::countsLoops() {
  QFETCH(const QString, count);
  QTEST(script::loopCount(count, 512), "runs");
}

KELMORA_TEST_MAIN(TestArithmetic)
#include "tst_arithmetic.moc"
