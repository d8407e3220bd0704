#include <QTest>

#include "automation/core/KeyNames.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

class TestKeyNames : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void namesAndCodesGoBothWays_data();
  void namesAndCodesGoBothWays();
  void everyNameIsADifferentKey();
  void namesOfOtherCodes_data();
  void namesOfOtherCodes();
  void codesOfOtherNames_data();
  void codesOfOtherNames();
};

void TestKeyNames::namesAndCodesGoBothWays_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<int>("code");
  for (int number = 1; number <= 12; ++number) {
    const QString name = QStringLiteral("Key_F%1").arg(number);
    QTest::addRow("%s", qPrintable(name)) << name << 0x01000030 + number - 1;
  }
  QTest::newRow("keypad 0 is Insert") << "NUMPAD0" << 0x01000006;
  QTest::newRow("keypad 1 is End") << "NUMPAD1" << 0x01000011;
  QTest::newRow("keypad 2 is Down") << "NUMPAD2" << 0x01000015;
  QTest::newRow("keypad 3 is Page Down") << "NUMPAD3" << 0x01000017;
  QTest::newRow("keypad 4 is Left") << "NUMPAD4" << 0x01000012;
  QTest::newRow("keypad 5 is Clear") << "NUMPAD5" << 0x0100000B;
  QTest::newRow("keypad 6 is Right") << "NUMPAD6" << 0x01000014;
  QTest::newRow("keypad 7 is Home") << "NUMPAD7" << 0x01000010;
  QTest::newRow("keypad 8 is Up") << "NUMPAD8" << 0x01000013;
  QTest::newRow("keypad 9 is Page Up") << "NUMPAD9" << 0x01000016;
}

void TestKeyNames::namesAndCodesGoBothWays() {
  QFETCH(const QString, name);
  QFETCH(const int, code);
  QCOMPARE(keyCodeToName(code), name);
  QCOMPARE(keyNameToCode(name), code);
}

void TestKeyNames::everyNameIsADifferentKey() {
  int named = 0;
  for (int code = 0x01000000; code < 0x01001000; ++code) {
    const QString name = keyCodeToName(code);
    if (name.size() == 1)
      continue;
    ++named;
    QCOMPARE(keyNameToCode(name), code);
  }
  QCOMPARE(named, 22);
}

void TestKeyNames::namesOfOtherCodes_data() {
  QTest::addColumn<int>("code");
  QTest::addColumn<QString>("name");
  QTest::newRow("65 is A") << 65 << "A";
  QTest::newRow("0x31 is 1") << 0x31 << "1";
  QTest::newRow("a blank is a blank") << 32 << " ";
  QTest::newRow("233 is e with an acute accent") << 233 << QString(QChar(233));
  QTest::newRow("0 is the character of value 0") << 0 << QString(QChar(0));
  QTest::newRow("a code above 255 is one character") << 0x20ac << QString(QChar(0x20ac));
  QTest::newRow("of Escape the low 16 bits remain") << 0x01000000 << QString(QChar(0));
  QTest::newRow("of F13 the low 16 bits remain") << 0x0100003C << QString("<");
  QTest::newRow("a negative code keeps its low 16 bits") << -23 << QString(QChar(0xFFE9));
  QTest::newRow("the smallest code") << std::numeric_limits<int>::min() << QString(QChar(0));
  QTest::newRow("the largest code") << std::numeric_limits<int>::max() << QString(QChar(0xFFFF));
}

void TestKeyNames::namesOfOtherCodes() {
  QFETCH(const int, code);
  QFETCH(const QString, name);
  QCOMPARE(keyCodeToName(code), name);
}

void TestKeyNames::codesOfOtherNames_data() {
  QTest::addColumn<QString>("name");
  QTest::addColumn<int>("code");
  QTest::newRow("an empty name is 0") << "" << 0;
  QTest::newRow("a null name is 0") << QString() << 0;
  QTest::newRow("one letter is its value") << "A" << 65;
  QTest::newRow("a name in another case is its first letter") << "key_f1" << 107;
  QTest::newRow("an unknown function key is the letter K") << "Key_F13" << 75;
  QTest::newRow("a name with a letter too many is its first letter") << "Key_F1x" << 75;
  QTest::newRow("a name with a blank before it is a blank") << " Key_F1" << 32;
  QTest::newRow("an unknown keypad key is the letter N") << "NUMPAD10" << 78;
  QTest::newRow("character 127 is the last that is positive") << QString(QChar(127)) << 127;
  QTest::newRow("character 128 is the first that is negative") << QString(QChar(128)) << -128;
  QTest::newRow("character 233 is -23") << QString(QChar(233)) << -23;
  QTest::newRow("character 255 is -1") << QString(QChar(255)) << -1;
  QTest::newRow("character 256 is 0") << QString(QChar(256)) << 0;
  QTest::newRow("a character above 255 before others is 0") << QString(QChar(0x20ac)) + "A" << 0;
  QTest::newRow("the character of value 0 is 0") << QString(QChar(0)) << 0;
}

void TestKeyNames::codesOfOtherNames() {
  QFETCH(const QString, name);
  QFETCH(const int, code);
  QCOMPARE(keyNameToCode(name), code);
}

KELMORA_TEST_MAIN(TestKeyNames)
#include "tst_keynames.moc"
