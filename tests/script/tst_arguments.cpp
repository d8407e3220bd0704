#include <QRandomGenerator>
#include <QTest>
#include <array>
#include <cstdio>

#include "script/Arguments.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

class TestArguments : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void one_data();
  void one();
  void two_data();
  void two();
  void cutsOneArgumentAt1023Bytes();
  void refusesAFirstArgumentOver1023Bytes();
  void cutsASecondArgumentAt1023Bytes();
  void splitsAsTheCLibraryDoes();
};

namespace {

// What the functions below return if the action could not be split.
const QString refused = QStringLiteral("(refused)");

QString oneOf(const QString& action) {
  const auto arguments = script::splitOneArgument(action);
  return arguments ? arguments->first : refused;
}

QString twoOf(const QString& action) {
  const auto arguments = script::splitTwoArguments(action);
  return arguments ? arguments->first + u'|' + arguments->second : refused;
}

}  // namespace

void TestArguments::one_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QString>("argument");
  QTest::newRow("the rest of the line") << "/delete hp"
                                        << "hp";
  QTest::newRow("blanks before it are skipped") << "/delete  \t hp"
                                                << "hp";
  QTest::newRow("blanks after it are kept") << "/delete hp  "
                                            << "hp  ";
  QTest::newRow("blanks and commas inside it are kept") << "/cond say a, b"
                                                        << "say a, b";
  QTest::newRow("a word alone has none") << "/delete" << refused;
  QTest::newRow("a word and blanks have none") << "/delete   \t" << refused;
  QTest::newRow("it ends at a line break") << "/delete a\nb"
                                           << "a";
  QTest::newRow("a line break before it is a blank") << "/delete \n\n a"
                                                     << "a";
  QTest::newRow("it ends at a NUL") << QStringLiteral("/delete a") + QChar(0) + "b"
                                    << "a";
  QTest::newRow("a NUL before it ends the line")
      << QStringLiteral("/delete ") + QChar(0) + "b" << refused;
  QTest::newRow("a carriage return belongs to it") << "/delete a\rb"
                                                   << "a\rb";
  QTest::newRow("the word ends at any blank") << "/delete\thp x"
                                              << "hp x";
  QTest::newRow("blanks before the word are skipped") << "  /delete hp"
                                                      << "hp";
  QTest::newRow("a no-break space is no blank") << QStringLiteral("/delete\u00a0hp x") << "x";
  QTest::newRow("a letter above ASCII becomes a replacement character")
      << QStringLiteral("/delete caf\u00e9") << QStringLiteral("caf\ufffd");
  QTest::newRow("a character above Latin-1 becomes a question mark")
      << QStringLiteral("/delete \u20ac5") << "?5";
  QTest::newRow("two Latin-1 characters that form UTF-8 become its character")
      << QStringLiteral("/delete \u00c3\u00a9") << QStringLiteral("\u00e9");
}

void TestArguments::one() {
  QFETCH(const QString, action);
  QTEST(oneOf(action), "argument");
}

void TestArguments::two_data() {
  QTest::addColumn<QString>("action");
  QTest::addColumn<QString>("arguments");
  QTest::newRow("two parts") << "/set a,b"
                             << "a|b";
  QTest::newRow("blanks around the comma are kept") << "/set  a , b "
                                                    << "a | b ";
  QTest::newRow("only the first comma divides") << "/set a,b,c"
                                                << "a|b,c";
  QTest::newRow("no comma") << "/set a" << refused;
  QTest::newRow("nothing after the comma") << "/set a," << refused;
  QTest::newRow("nothing before the comma") << "/set ,b" << refused;
  QTest::newRow("only blanks before the comma") << "/set   ,b" << refused;
  QTest::newRow("a blank after the comma is something") << "/set a, "
                                                        << "a| ";
  QTest::newRow("a comma may follow the comma") << "/set a,,b"
                                                << "a|,b";
  QTest::newRow("nothing at all") << "/set" << refused;
  QTest::newRow("the first may hold a line break") << "/set a\nb,c"
                                                   << "a\nb|c";
  QTest::newRow("the second ends at a line break") << "/set a,b\nc"
                                                   << "a|b";
  QTest::newRow("a line break after the comma leaves nothing") << "/set a,\nb" << refused;
  QTest::newRow("a NUL ends the line") << QStringLiteral("/set a,b") + QChar(0) + "c"
                                       << "a|b";
  QTest::newRow("a comma in the word is not one") << "/set,a b" << refused;
  QTest::newRow("each part is read as UTF-8 by itself")
      << QStringLiteral("/set \u00c3,\u00a9") << QStringLiteral("\ufffd|\ufffd");
}

void TestArguments::two() {
  QFETCH(const QString, action);
  QTEST(twoOf(action), "arguments");
}

void TestArguments::cutsOneArgumentAt1023Bytes() {
  const QString fits(1023, u'x');
  QCOMPARE(oneOf("/delete " + fits), fits);
  QCOMPARE(oneOf("/delete " + fits + "y"), fits);
  QCOMPARE(oneOf("/delete " + fits + "yz"), fits);
  QVERIFY(!script::splitOneArgument("/delete " + fits)->wasCut);
  QVERIFY(!script::splitOneArgument("/delete " + fits + "\nmore")->wasCut);
  QVERIFY(script::splitOneArgument("/delete " + fits + "y")->wasCut);
}

void TestArguments::refusesAFirstArgumentOver1023Bytes() {
  const QString fits(1023, u'x');
  QCOMPARE(twoOf("/set " + fits + ",v"), fits + "|v");
  QVERIFY(!script::splitTwoArguments("/set " + fits + ",v")->wasCut);
  QCOMPARE(twoOf("/set " + fits + "x,v"), refused);
  QCOMPARE(twoOf("/set " + fits + "xyz,v"), refused);
}

void TestArguments::cutsASecondArgumentAt1023Bytes() {
  const QString fits(1023, u'x');
  QCOMPARE(twoOf("/set a," + fits), "a|" + fits);
  QCOMPARE(twoOf("/set a," + fits + "y"), "a|" + fits);
  QCOMPARE(twoOf("/set a," + fits + "yz"), "a|" + fits);
  QVERIFY(!script::splitTwoArguments("/set a," + fits)->wasCut);
  QVERIFY(script::splitTwoArguments("/set a," + fits + "y")->wasCut);
}

void TestArguments::splitsAsTheCLibraryDoes() {
  QRandomGenerator random(5);
  const QByteArray alphabet("ab,, \t\n\r\v\f\xc3\xa9\xff\xa0\0/", 17);
  for (int round = 0; round < 50'000; ++round) {
    QByteArray line("/w");
    const int longest = round % 50 == 0 ? 2500 : 24;
    for (int left = random.bounded(longest); left > 0; --left)
      line += round % 50 == 0 && random.bounded(900) != 0
                  ? 'x'
                  : alphabet[random.bounded(int(alphabet.size()))];
    std::array<char, 1024> first{};
    std::array<char, 1024> second{};
    const bool one = std::sscanf(line.constData(), "%*s %1023[^\n]", first.data()) == 1;
    QCOMPARE(oneOf(QString::fromLatin1(line)), one ? QString::fromUtf8(first.data()) : refused);
    const bool two =
        std::sscanf(line.constData(), "%*s %1023[^,],%1023[^\n]", first.data(), second.data()) == 2;
    QCOMPARE(
        twoOf(QString::fromLatin1(line)),
        two ? QString::fromUtf8(first.data()) + u'|' + QString::fromUtf8(second.data()) : refused);
  }
}

KELMORA_TEST_MAIN(TestArguments)
#include "tst_arguments.moc"
