#include <QTest>
#include <algorithm>
#include <random>

#include "automation/core/ByteSearch.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

namespace {

using Numbers = std::vector<quint32>;

Numbers found(const ByteSearch& search, QByteArrayView text) {
  Numbers numbers;
  search.find(text, numbers);
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

}  // namespace

class TestByteSearch : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void withoutNeedlesNothingIsFound();
  void anEmptyNeedleIsNeverFound();
  void equalNeedlesAreFoundTogether();
  void aNeedleThatOccursOftenIsFoundOnce();
  void needlesInsideNeedlesAreFound();
  void highBytesAndNulAreBytesLikeOthers();
  void whatWasFoundBeforeIsKept();
  void longNeedlesAreFoundAtEitherEnd();
  void randomNeedlesAreFoundWhereTheyOccur();
  void manyNeedlesAreFoundWhereTheyOccur_data();
  void manyNeedlesAreFoundWhereTheyOccur();
};

void TestByteSearch::withoutNeedlesNothingIsFound() {
  QVERIFY(found(ByteSearch({}), "any text").empty());
  QVERIFY(found(ByteSearch({}), "").empty());
}

void TestByteSearch::anEmptyNeedleIsNeverFound() {
  const ByteSearch search({"", "a", ""});
  QCOMPARE(found(search, "cat"), Numbers({1}));
  QVERIFY(found(search, "").empty());
}

void TestByteSearch::equalNeedlesAreFoundTogether() {
  QCOMPARE(found(ByteSearch({"orc", "elf", "orc"}), "an orc"), Numbers({0, 2}));
}

void TestByteSearch::aNeedleThatOccursOftenIsFoundOnce() {
  QCOMPARE(found(ByteSearch({"a", "aa"}), "aaaaaaaa"), Numbers({0, 1}));
}

void TestByteSearch::needlesInsideNeedlesAreFound() {
  const ByteSearch search({"hers", "he", "she", "his", "er"});
  QCOMPARE(found(search, "ushers"), Numbers({0, 1, 2, 4}));
  QCOMPARE(found(search, "shis"), Numbers({3}));
  QVERIFY(found(search, "HERS").empty());
}

void TestByteSearch::highBytesAndNulAreBytesLikeOthers() {
  const ByteSearch search({QByteArray("\xff\x00\x80", 3), QByteArray("\0", 1), "\xc3\xa9"});
  QCOMPARE(found(search, QByteArrayView("x\xff\x00\x80y", 5)), Numbers({0, 1}));
  QCOMPARE(found(search, "caf\xc3\xa9"), Numbers({2}));
}

void TestByteSearch::whatWasFoundBeforeIsKept() {
  Numbers numbers{7};
  ByteSearch({"a"}).find("cat", numbers);
  QCOMPARE(numbers, Numbers({7, 0}));
}

void TestByteSearch::longNeedlesAreFoundAtEitherEnd() {
  QByteArray needle;
  for (int i = 0; i < 300; ++i)
    needle += static_cast<char>('!' + i % 90);
  const ByteSearch search({needle, needle.left(290)});
  QCOMPARE(found(search, needle), Numbers({0, 1}));
  QCOMPARE(found(search, "before " + needle), Numbers({0, 1}));
  QCOMPARE(found(search, needle.left(290) + " behind"), Numbers({1}));
  QVERIFY(found(search, needle.left(289)).empty());
  QVERIFY(found(search, needle.mid(1)).empty());
}

void TestByteSearch::randomNeedlesAreFoundWhereTheyOccur() {
  std::mt19937 random(41);
  const auto below = [&](quint32 limit) { return random() % limit; };
  const auto text = [&](quint32 longest) {
    QByteArray bytes(static_cast<qsizetype>(below(longest + 1)), '\0');
    for (char& byte : bytes)
      byte = static_cast<char>("abc\xe9"[below(4)]);
    return bytes;
  };
  int hits = 0;
  for (int round = 0; round < 20000; ++round) {
    std::vector<QByteArray> needles(below(20));
    // Where no needle is shorter than two bytes, the search can leap.
    const auto shortest = static_cast<qsizetype>(below(6));
    for (QByteArray& needle : needles)
      do
        needle = text(6);
      while (needle.size() < shortest);
    const ByteSearch search(needles);
    const QByteArray line = text(60);
    Numbers expected;
    for (quint32 number = 0; number < needles.size(); ++number)
      if (!needles[number].isEmpty() && line.contains(needles[number]))
        expected.push_back(number);
    hits += static_cast<int>(expected.size());
    QCOMPARE(found(search, line), expected);
  }
  QVERIFY(hits > 20000);
}

void TestByteSearch::manyNeedlesAreFoundWhereTheyOccur_data() {
  QTest::addColumn<int>("letters");
  QTest::addColumn<int>("bytes");
  QTest::addColumn<int>("longest");
  // The table of steps has a row for each state. Needles that do not begin alike have a
  // state for each byte, and there is one more at the start. It has a column for each
  // letter, and one for all other bytes.
  constexpr int rows = (1 << 20) / 256;
  QTest::newRow("the largest table of all steps") << 255 << rows - 1 << rows;
  QTest::newRow("a row too many for a table") << 255 << rows << rows;
  QTest::newRow("far too many steps for a table") << 100 << 200'000 << 12;
  QTest::newRow("all but one letter") << 255 << 2000 << 12;
  QTest::newRow("all letters") << 256 << 2000 << 12;
  QTest::newRow("a few letters") << 3 << 2000 << 12;
}

void TestByteSearch::manyNeedlesAreFoundWhereTheyOccur() {
  QFETCH(const int, letters);
  QFETCH(const int, bytes);
  QFETCH(const int, longest);
  std::mt19937 random(43);
  const auto below = [&](quint32 limit) { return random() % limit; };
  const auto text = [&](qsizetype length) {
    QByteArray made(length, '\0');
    for (char& byte : made)
      byte = static_cast<char>(below(static_cast<quint32>(letters)));
    return made;
  };
  // The first needle holds every letter.
  std::vector<QByteArray> needles{QByteArray(letters, '\0')};
  for (int letter = 0; letter < letters; ++letter)
    needles.front()[letter] = static_cast<char>(letter);
  qsizetype left = bytes - letters;
  while (left > 0) {
    needles.push_back(text(std::min<qsizetype>(left, longest)));
    left -= needles.back().size();
  }
  if (needles.size() == 2)
    needles.back().front() = '\1';
  const ByteSearch search(needles);
  int hits = 0;
  for (int round = 0; round < 300; ++round) {
    QByteArray line = text(30);
    for (int inserted = 0; inserted < 3; ++inserted)
      line.insert(static_cast<qsizetype>(below(static_cast<quint32>(line.size() + 1))),
                  needles[below(static_cast<quint32>(needles.size()))]);
    Numbers expected;
    for (quint32 number = 0; number < needles.size(); ++number)
      if (line.contains(needles[number]))
        expected.push_back(number);
    hits += static_cast<int>(expected.size());
    QCOMPARE(found(search, line), expected);
  }
  QVERIFY(hits > 300);
}

KELMORA_TEST_MAIN(TestByteSearch)
#include "tst_bytesearch.moc"
