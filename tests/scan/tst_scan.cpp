#include <QTest>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "scan/Format.h"
#include "scan/Integer.h"
#include "support/ProcessorClock.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::scan;

namespace {

using Fields = QVariantList;

Fields fieldsOf(const scan::Result& result, const QList<bool>& isNumber) {
  Fields fields;
  for (qsizetype k = 0; k < result.count(); ++k)
    fields << (isNumber.at(k) ? QVariant(result.number(k)) : QVariant(result.text(k)));
  return fields;
}

/// One format written twice: as this code takes it, and for the C library, with a width
/// at each text field.
struct RandomFormat {
  QByteArray ours;
  QByteArray reference;
  QList<bool> isNumber;
  /// A text that matches the format. It is then changed at random.
  QByteArray example;
};

class Generator {
 public:
  explicit Generator(quint32 seed) : engine_(seed) {}

  /// A random number from 0 to limit - 1.
  int pick(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }

  QByteArray bytesOf(QByteArrayView alphabet, int longest) {
    QByteArray bytes;
    for (int left = pick(longest + 1); left > 0; --left)
      bytes += alphabet[pick(static_cast<int>(alphabet.size()))];
    return bytes;
  }

  RandomFormat format(int limit) {
    RandomFormat made;
    for (int steps = 1 + pick(8); steps > 0 && made.isNumber.size() < 10; --steps)
      addStep(made, QByteArray::number(limit));
    return made;
  }

  QByteArray input(const RandomFormat& format) {
    QByteArray text = format.example;
    for (int damages = pick(3); damages > 0 && !text.isEmpty(); --damages) {
      const int at = pick(static_cast<int>(text.size()));
      switch (pick(4)) {
        case 0:
          text.remove(at, 1 + pick(3));
          break;
        case 1:
          text.insert(at, bytesOf(QByteArrayView::fromArray(" \t\n\v,%]-+09ab\xE9"), 3));
          break;
        case 2:
          text.truncate(at);
          break;
        default:
          text.insert(at, QByteArray(pick(40), ' '));
      }
    }
    return text;
  }

 private:
  void addStep(RandomFormat& made, const QByteArray& width) {
    switch (pick(8)) {
      case 0: {
        const QByteArray blanks = bytesOf(" \t\n", 2) + ' ';
        addSame(made, blanks, bytesOf(" \t\n\v\f\r", 3));
        break;
      }
      case 1: {
        made.ours += "%d";
        made.reference += "%d";
        made.isNumber << true;
        static constexpr std::array<const char*, 4> signs{"", "-", "+", " "};
        made.example += signs[static_cast<std::size_t>(pick(4))] +
                        bytesOf("0123456789", pick(8) == 0 ? 25 : 4) + bytesOf("17", 1);
        break;
      }
      case 2:
        made.ours += "%s";
        made.reference += '%' + width + 's';
        made.isNumber << false;
        made.example += bytesOf(" \t", 1) + word() + bytesOf(" \n", 1);
        break;
      case 3: {
        static constexpr std::array<const char*, 5> sets{"[^,]", "[^\n]", "[^\"]", "[^]x]",
                                                         "[^ ab]"};
        const QByteArray set = sets[static_cast<std::size_t>(pick(5))];
        made.ours += '%' + set;
        made.reference += '%' + width + set;
        made.isNumber << false;
        made.example += word() + (pick(2) == 0 ? QByteArray() : set.mid(2, 1));
        break;
      }
      case 4:
        addSame(made, "%*s", word() + ' ');
        break;
      case 5:
        addSame(made, "%%", bytesOf(" ", 1) + '%');
        break;
      default: {
        // glibc does not skip the blanks of the text where a blank of the format comes
        // before a byte above 127. So no such byte comes behind a blank here.
        const bool afterBlank = !made.ours.isEmpty() && scan::isSpace(made.ours.back());
        const QByteArray literal =
            bytesOf(afterBlank ? QByteArrayView("ab,:]\"[") : QByteArrayView("ab,:]\"[\xE9\xFF"),
                    1) +
            (pick(2) == 0 ? "a" : "");
        addSame(made, literal, literal);
      }
    }
  }

  static void addSame(RandomFormat& made, const QByteArray& format, const QByteArray& example) {
    made.ours += format;
    made.reference += format;
    made.example += example;
  }

  QByteArray word() {
    if (pick(400) == 0)
      return QByteArray(1020 + pick(8), 'w');
    return bytesOf("abxyz019%[^\xE9\xFF", 6) + 'w';
  }

  std::mt19937 engine_;
};

Fields referenceFields(const RandomFormat& format, const QByteArray& input) {
  struct alignas(int) Buffer {
    std::array<char, 1100> bytes;
  };
  static std::array<Buffer, 10> buffers;
  const auto at = [](std::size_t k) { return buffers[k].bytes.data(); };
  const int count = std::sscanf(input.constData(), format.reference.constData(), at(0), at(1),
                                at(2), at(3), at(4), at(5), at(6), at(7), at(8), at(9));
  Fields fields;
  for (int k = 0; k < count; ++k) {
    const char* bytes = at(static_cast<std::size_t>(k));
    if (format.isNumber.at(k)) {
      int number = 0;
      memcpy(&number, bytes, sizeof number);
      fields << number;
    } else {
      fields << QByteArray(bytes);
    }
  }
  return fields;
}

}  // namespace

class TstScan : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { std::setlocale(LC_ALL, "C"); }
  void assignsFields_data();
  void assignsFields();
  void refusesFormats_data();
  void refusesFormats();
  void countsItsFields();
  void cutsLongFields();
  void aFieldThatIsNotThereIsEmpty();
  void takesLinearTime();
  void readsIntegers_data();
  void readsIntegers();
  void agreesWithTheCLibrary();
  void integersAgreeWithTheCLibrary();
};

void TstScan::assignsFields_data() {
  QTest::addColumn<QByteArray>("format");
  QTest::addColumn<QByteArray>("input");
  QTest::addColumn<Fields>("fields");
  const auto row = [](const char* name, const QByteArray& format, const QByteArray& input,
                      const Fields& fields) { QTest::newRow(name) << format << input << fields; };
  const auto bytes = [](const char* text) { return QVariant(QByteArray(text)); };

  row("two words are a key and a value", "%s %s", "port 5000 rest", {bytes("port"), bytes("5000")});
  row("a key alone is one field", "%s %s", "port   ", {bytes("port")});
  row("an empty line has no field", "%s %s", "", {});
  row("a line of blanks has no field", "%s %s", " \t\v\f\r\n ", {});
  row("a host and a port", "%s %d", "mud.example 5000", {bytes("mud.example"), 5000});
  row("a port that is no number is left out", "%s %d", "mud.example x", {bytes("mud.example")});
  row("a blank matches no blank", "macro %s", "macroKey_F1", {bytes("Key_F1")});
  row("a blank matches a run of every kind of blank", "macro %s", "macro \t\v\f\r\nKey_F1",
      {bytes("Key_F1")});
  row("a keyword that does not start the line stops the scan", "macro %s", " macro Key_F1", {});
  row("a keyword is case-sensitive", "macro %s", "Macro Key_F1", {});
  row("a quoted text ends at the next quote", "trigger \"%[^\"]\"", "trigger \"a b\" c\"",
      {bytes("a b")});
  row("the quote that ends a text may be missing", "trigger \"%[^\"]\"", "trigger \"a b",
      {bytes("a b")});
  row("an empty quoted text is no field", "trigger \"%[^\"]\"", "trigger \"\"", {});
  row("a set does not skip blanks", "%[^,]", "  a,b", {bytes("  a")});
  row("a variable has a name and a value", "variable %s \"%[^\"]\"", "variable hp \"1 0\"",
      {bytes("hp"), bytes("1 0")});
  row("a name without a value is one field", "variable %s \"%[^\"]\"", "variable hp \"\"",
      {bytes("hp")});
  row("a name takes the quote that touches it", "variable %s \"%[^\"]\"", "variable hp\"1\"",
      {bytes("hp\"1\"")});
  row("a skipped word is not a field", "%*s %[^\n]", "/delete  a b ", {bytes("a b ")});
  row("a word alone leaves nothing after it", "%*s %[^\n]", "/delete ", {});
  row("a skipped word skips the blanks before it", "%*s %[^\n]", "  /delete a", {bytes("a")});
  row("the rest of a line ends at a line feed", "%*s %[^\n]", "/echo a\nb", {bytes("a")});
  row("two arguments part at the first comma", "%*s %[^,],%[^\n]", "/set a ,b,c",
      {bytes("a "), bytes("b,c")});
  row("a second argument of nothing is not there", "%*s %[^,],%[^\n]", "/set a,", {bytes("a")});
  row("a first argument of nothing ends the scan", "%*s %[^,],%[^\n]", "/set ,b", {});
  row("the comma is needed", "%*s %[^,],%[^\n]", "/set a b", {bytes("a b")});
  row("a double percent sign is one", "100%% %s", "100% sure", {bytes("sure")});
  row("a double percent sign skips blanks before it", "a%%%s", "a  %b", {bytes("b")});
  row("another byte is no percent sign", "%%%s", "5%", {});
  row("a word runs to the next blank", "%s tells you: %s", "Bob tells you: hello there",
      {bytes("Bob"), bytes("hello")});
  row("bytes above 127 are ordinary", "%s \xE9%s", "\xC3\xA0\xFF \xE9\xA0",
      {bytes("\xC3\xA0\xFF"), bytes("\xA0")});
  row("a blank before a byte above 127 skips as any other", "a \xE9%s", "a \t\xE9z", {bytes("z")});
  row("the input ends at its first NUL", "%s %s", QByteArray("ab\0 cd", 6), {bytes("ab")});
  row("the format ends at its first NUL", QByteArray("%s\0%s", 5), "a b", {bytes("a")});
  row("a closing bracket that comes first is a member of the set", "%[^]]%s", "ab]cd",
      {bytes("ab"), bytes("]cd")});
  row("numbers take signs", "%d %d %d", "-5 +6 7", {-5, 6, 7});
  row("numbers need no blank between them", "%d%d", "5-6", {5, -6});
  row("a sign alone is no number", "%d", "- 5", {});
  row("two signs are no number", "%d", "+-5", {});
  row("a number ends at the first other byte", "%d%s", "12ab", {12, bytes("ab")});
  row("the largest number stays", "%d", "2147483647", {2147483647});
  row("one more wraps to the smallest", "%d", "2147483648", {std::numeric_limits<int>::min()});
  row("the low 32 bits of a 64-bit number are kept", "%d", "4294967301", {5});
  row("a number above 64 bits becomes minus one", "%d", "9223372036854775808", {-1});
  row("the largest 64-bit number becomes minus one", "%d", "9223372036854775807", {-1});
  row("a number below 64 bits becomes zero", "%d", "-9223372036854775809", {0});
  row("the smallest 64-bit number becomes zero", "%d", "-9223372036854775808", {0});
  row("the smallest but one becomes one", "%d", "-9223372036854775807", {1});
  row("a skipped number is no field", "%*d %d", "1 2", {2});
  row("an empty format assigns nothing", "", "abc", {});
}

void TstScan::assignsFields() {
  QFETCH(QByteArray, format);
  QFETCH(QByteArray, input);
  QFETCH(Fields, fields);
  const auto compiled = scan::Format::compile(format);
  QVERIFY(compiled);
  const scan::Result result = compiled->scan(input);
  QCOMPARE(result.count(), fields.size());
  for (qsizetype k = 0; k < fields.size(); ++k) {
    if (fields.at(k).typeId() == QMetaType::Int)
      QCOMPARE(result.number(k), fields.at(k).toInt());
    else
      QCOMPARE(result.text(k), fields.at(k).toByteArray());
  }
  QCOMPARE(result.complete(), result.count() == compiled->fieldCount());
}

void TstScan::refusesFormats_data() {
  QTest::addColumn<QByteArray>("format");
  for (const char* format : {"%", "a%", "%*", "%x", "%c", "%n", "%i", "%ld", "%5s", "%1023s",
                             "%[a]", "%[^", "%[^]", "%[^a", "%[^a-z]", "%*%", "% d", "%m", "%\xE9"})
    QTest::addRow("\"%s\" is refused", format) << QByteArray(format);
}

void TstScan::refusesFormats() {
  QFETCH(QByteArray, format);
  QVERIFY(!scan::Format::compile(format));
  QVERIFY(!scan::Format::compile("%s " + format));
  QVERIFY(!scan::Format::compile("%s", 0));
}

void TstScan::countsItsFields() {
  const auto count = [](const char* format) { return scan::Format::compile(format)->fieldCount(); };
  QCOMPARE(count(""), 0);
  QCOMPARE(count("a %% b"), 0);
  QCOMPARE(count("%*s %*d %*[^x]"), 0);
  QCOMPARE(count("%s %d%[^x]%*s"), 3);
  QVERIFY(scan::Format::compile("abc")->scan("x").complete());
  QVERIFY(!scan::Format::compile("%s%s")->scan("a").complete());
  QVERIFY(scan::Format::compile("%s%s")->scan("a b").complete());
}

void TstScan::cutsLongFields() {
  const QByteArray word(2000, 'w');
  const scan::Result words = scan::Format::compile("%s%s")->scan(word);
  QCOMPARE(words.text(0), word.first(1023));
  QCOMPARE(words.text(1), word.first(2000 - 1023));

  const scan::Result arguments =
      scan::Format::compile("%*s %[^,],%[^\n]")->scan("/set " + word + ",b");
  QCOMPARE(arguments.count(), 1);
  QCOMPARE(arguments.text(0).size(), 1023);
  QCOMPARE(scan::Format::compile("%*s %s")->scan(word + " b").text(0), QByteArray("b"));

  const scan::Result shortFields = scan::Format::compile("%s%[^x]", 3)->scan("abcdefghx");
  QCOMPARE(shortFields.text(0), QByteArray("abc"));
  QCOMPARE(shortFields.text(1), QByteArray("def"));
}

void TstScan::aFieldThatIsNotThereIsEmpty() {
  const scan::Result result = scan::Format::compile("%s %d")->scan("a 5");
  QCOMPARE(result.text(-1), QByteArray());
  QCOMPARE(result.text(1), QByteArray());
  QCOMPARE(result.text(2), QByteArray());
  QCOMPARE(result.number(0), 0);
  QCOMPARE(result.number(2), 0);
}

void TstScan::takesLinearTime() {
  const QByteArray blanks(qsizetype{32} * 1024 * 1024, ' ');
  const QByteArray digits(qsizetype{32} * 1024 * 1024, '9');
  ProcessorClock timer;
  timer.start();
  QCOMPARE(scan::Format::compile("%s %s %d %% %s")->scan(blanks).count(), 0);
  QCOMPARE(scan::Format::compile("%d")->scan(digits).number(0), -1);
  QCOMPARE(scan::Format::compile("%*s %s")->scan(digits).count(), 0);
  QCOMPARE(scan::toInt(digits), -1);
  QVERIFY2(timer.elapsed() < 20000, "scanning is not linear");
}

void TstScan::readsIntegers_data() {
  QTest::addColumn<QByteArray>("text");
  QTest::addColumn<int>("value");
  QTest::newRow("leading digits count") << QByteArray("1.5s") << 1;
  QTest::newRow("a text without digits is 0") << QByteArray("abc") << 0;
  QTest::newRow("an empty text is 0") << QByteArray() << 0;
  QTest::newRow("blanks and a sign may lead") << QByteArray(" \t\n\v\f\r-12") << -12;
  QTest::newRow("a plus sign may lead") << QByteArray("+12") << 12;
  QTest::newRow("a blank after the sign is 0") << QByteArray("- 12") << 0;
  QTest::newRow("a NUL ends the text") << QByteArray("1\0002", 3) << 1;
  QTest::newRow("32 bits wrap") << QByteArray("2147483648") << std::numeric_limits<int>::min();
  QTest::newRow("far too large is minus one") << QByteArray("99999999999999999999") << -1;
  QTest::newRow("far too small is zero") << QByteArray("-99999999999999999999") << 0;
}

void TstScan::readsIntegers() {
  QFETCH(QByteArray, text);
  QFETCH(int, value);
  QCOMPARE(scan::toInt(text), value);
}

void TstScan::agreesWithTheCLibrary() {
#ifndef __GLIBC__
  QSKIP("C libraries differ in numbers beyond their range and in blanks before %%");
#endif
  constexpr quint32 seed = 20240607;
  constexpr int formats = 250000;
  constexpr int inputsOfEach = 5;
  Generator random(seed);
  qint64 pairs = 0;
  qint64 complete = 0;
  for (int k = 0; k < formats; ++k) {
    static constexpr std::array<int, 4> limits{1, 3, 7, 1023};
    const int limit = limits[static_cast<std::size_t>(random.pick(4))];
    const RandomFormat format = random.format(limit);
    const auto compiled = scan::Format::compile(format.ours, limit);
    QVERIFY2(compiled, format.ours.constData());
    for (int j = 0; j < inputsOfEach; ++j, ++pairs) {
      const QByteArray input = random.input(format);
      const scan::Result result = compiled->scan(input);
      const Fields ours = fieldsOf(result, format.isNumber);
      const Fields reference = referenceFields(format, input);
      complete += result.complete() ? 1 : 0;
      if (ours != reference)
        QFAIL(qPrintable(QStringLiteral("format %1, input %2: %3 fields, the C library has %4")
                             .arg(QString::fromLatin1(format.reference.toPercentEncoding()),
                                  QString::fromLatin1(input.toPercentEncoding()))
                             .arg(ours.size())
                             .arg(reference.size())));
    }
  }
  qInfo("%lld pairs of format and input, %lld of them complete, seed %u",
        static_cast<long long>(pairs), static_cast<long long>(complete), seed);
  QVERIFY(pairs >= 1000000);
  // Many texts match their format to its end, and many do not.
  QVERIFY(complete > pairs / 10 && complete < pairs - pairs / 10);
}

void TstScan::integersAgreeWithTheCLibrary() {
#ifndef __GLIBC__
  QSKIP("C libraries differ in numbers beyond their range and in blanks before %%");
#endif
  constexpr quint32 seed = 20240608;
  Generator random(seed);
  for (int k = 0; k < 200000; ++k) {
    const QByteArray text = random.bytesOf(" \t", 1) + random.bytesOf("+-", 1) +
                            random.bytesOf("0123456789", 22) + random.bytesOf(" a5", 1);
    // What atoi does with numbers that are too large is undefined. With glibc it is the
    // result of strtol, cut to 32 bits.
    const auto reference =
        static_cast<int>(static_cast<quint32>(std::strtol(text.constData(), nullptr, 10)));
    if (sizeof(long) == 8)
      QCOMPARE(scan::toInt(text), reference);
  }
}

KELMORA_TEST_MAIN(TstScan)
#include "tst_scan.moc"
