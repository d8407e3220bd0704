#include <QRandomGenerator>
#include <QTextStream>
#include <cstdio>

#include "automation/core/VariablesFile.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::automation;

using namespace Qt::StringLiterals;

using Variables = QMap<QString, QString>;

namespace {

/// "a=1;b=2", and "!" where the reading failed.
QString shape(const Variables& variables, bool success) {
  QStringList parts;
  for (auto variable = variables.cbegin(); variable != variables.cend(); ++variable)
    parts += variable.key() + u'=' + variable.value();
  return parts.join(u';') + (success ? u""_s : u"!"_s);
}

QString readShape(QByteArrayView text, Variables variables = {}) {
  const bool success = variablesfile::read(text, variables).isSuccess();
  return shape(variables, success);
}

/// The same reading, done with the toolkit's text stream and the C library's sscanf.
QString readShapeByTheLibraries(QByteArray text) {
  QTextStream stream(&text, QIODevice::ReadOnly);
  stream.setEncoding(QStringConverter::Latin1);
  stream.setAutoDetectUnicode(false);
  Variables variables;
  QString decodedLine;
  while (stream.readLineInto(&decodedLine)) {
    const QByteArray line = decodedLine.toLatin1();
    QByteArray name(line.size() + 1, '\0');
    QByteArray value(line.size() + 1, '\0');
    if (std::sscanf(line.constData(), "variable %s \"%[^\"]\"", name.data(), value.data()) == 2) {
      if (variables.contains(QString::fromLatin1(name.constData())))
        return shape(variables, false);
      variables.insert(QString::fromLatin1(name.constData()),
                       QString::fromLatin1(value.constData()));
    } else if (!line.isEmpty()) {
      return shape(variables, false);
    }
  }
  return shape(variables, true);
}

}  // namespace

class TestVariablesFile : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void reading_data();
  void reading();
  void aVariableTheTableHoldsIsASecondDefinition();
  void theBadLineIsNamed();
  void writing_data();
  void writing();
  void roundTrip_data();
  void roundTrip();
  void noiseReadsAsTheLibrariesReadIt();
};

void TestVariablesFile::reading_data() {
  QTest::addColumn<QByteArray>("text");
  QTest::addColumn<QString>("expected");
  const auto row = [](const char* name, const QByteArray& text, const QString& expected) {
    QTest::newRow(name) << text << expected;
  };

  row("an empty file is no variables", "", u""_s);
  row("variables are read", "\nvariable hp \"10\"\n\nvariable sp \"a b, c\"\n",
      u"hp=10;sp=a b, c"_s);
  row("no empty line is needed between them", "variable hp \"10\"\nvariable sp \"5\"\n",
      u"hp=10;sp=5"_s);
  row("a second definition fails and keeps the first",
      "variable hp \"10\"\nvariable hp \"12\"\nvariable sp \"1\"\n", u"hp=10!"_s);
  row("a second definition with the same value fails too",
      "variable hp \"10\"\nvariable hp \"10\"\n", u"hp=10!"_s);
  row("names differ by case", "variable hp \"1\"\nvariable HP \"2\"\n", u"HP=2;hp=1"_s);
  row("an empty value fails at its line",
      "variable a \"1\"\n\nvariable b \"\"\n\nvariable c \"3\"\n", u"a=1!"_s);
  row("a value is cut at a quote", "variable a \"x\"y\"\n", u"a=x"_s);
  row("a value that begins with a quote fails", "variable a \"\"x\"\n", u"!"_s);
  row("a name with a blank fails", "variable a b \"1\"\n", u"!"_s);
  row("a name may hold a quote", "variable a\"b \"1\"\n", u"a\"b=1"_s);
  row("a name that runs into the quoted value takes it whole and fails", "variable a\"1\"\n",
      u"!"_s);
  row("the closing quote may be missing", "variable a \"1\n", u"a=1"_s);
  row("what follows the closing quote is ignored", "variable a \"1\" more\n", u"a=1"_s);
  row("blanks inside the quotes are kept", "variable a \" 1 \"\n", u"a= 1 "_s);
  row("any white space may stand between the parts", "variable \t a \v \"1\"\n", u"a=1"_s);
  row("no blank is needed after the keyword", "variablea \"1\"\n", u"a=1"_s);
  row("a longer keyword is the keyword and a name", "variables \"1\"\n", u"s=1"_s);
  row("a keyword after a blank fails", " variable a \"1\"\n", u"!"_s);
  row("a keyword in capitals fails", "Variable a \"1\"\n", u"!"_s);
  row("a name without a value fails", "variable a\n", u"!"_s);
  row("a value without quotes fails", "variable a 1\n", u"!"_s);
  row("another line fails and keeps what came before",
      "variable a \"1\"\nhello\nvariable b \"2\"\n", u"a=1!"_s);
  row("a line of blanks fails", "variable a \"1\"\n \n", u"a=1!"_s);
  row("lines may end in carriage return and line break",
      "\r\nvariable a \"1\"\r\n\r\nvariable b \"2\"\r\n", u"a=1;b=2"_s);
  row("the last line needs no line break", "variable a \"1\"", u"a=1"_s);
  row("a lone carriage return inside a value is kept", "variable a \"x\ry\"\n", u"a=x\ry"_s);
  row("a value is read as Latin-1", "variable \xE9 \"\xC3\xA9\"\n", u"\u00E9=\u00C3\u00A9"_s);
  row("a value ends at a NUL", "variable a \"1\0002\"\n"_ba, u"a=1"_s);
  row("a line that begins with a NUL fails", "\0variable a \"1\"\n"_ba, u"!"_s);
}

void TestVariablesFile::reading() {
  QFETCH(QByteArray, text);
  QFETCH(QString, expected);
  QCOMPARE(readShape(text), expected);
}

void TestVariablesFile::aVariableTheTableHoldsIsASecondDefinition() {
  QCOMPARE(readShape("variable a \"2\"\nvariable b \"9\"\nvariable c \"3\"\n", {{u"b"_s, u"1"_s}}),
           u"a=2;b=1!"_s);
}

void TestVariablesFile::theBadLineIsNamed() {
  const auto lineOf = [](QByteArrayView text) {
    Variables variables;
    return variablesfile::read(text, variables).line;
  };
  QCOMPARE(lineOf("hello"), 1);
  QCOMPARE(lineOf("\nvariable a \"1\"\r\n\nhello\nand more\n"), 4);
  QCOMPARE(lineOf("variable a \"1\"\nvariable a \"2\"\n"), 2);
}

void TestVariablesFile::writing_data() {
  QTest::addColumn<Variables>("variables");
  QTest::addColumn<QByteArray>("expected");

  QTest::newRow("no variables are an empty file") << Variables{} << QByteArray();
  QTest::newRow("an empty line precedes each variable, names are sorted, capitals first")
      << Variables{{u"hp"_s, u"10"_s}, {u"B"_s, u"x y"_s}, {u"_trigOut0"_s, u"orc"_s}}
      << QByteArray("\nvariable B \"x y\"\n\nvariable _trigOut0 \"orc\"\n\nvariable hp \"10\"\n");
  QTest::newRow("an empty value is written")
      << Variables{{u"a"_s, u""_s}} << QByteArray("\nvariable a \"\"\n");
  QTest::newRow("quotes, blanks and percent signs are written as they are")
      << Variables{{u"a b"_s, u"\"%s\""_s}} << QByteArray("\nvariable a b \"\"%s\"\"\n");
  QTest::newRow("Latin-1 is one byte, anything else a question mark")
      << Variables{{u"\u00E9"_s, u"\u00FF\u0100\u20AC"_s}}
      << QByteArray("\nvariable \xE9 \"\xFF??\"\n");
}

void TestVariablesFile::writing() {
  QFETCH(Variables, variables);
  QFETCH(QByteArray, expected);
  QCOMPARE(variablesfile::toText(variables), expected);
}

void TestVariablesFile::roundTrip_data() {
  QTest::addColumn<Variables>("variables");
  QTest::addColumn<QString>("expected");

  QTest::newRow("names and values come back")
      << Variables{{u"hp"_s, u"10"_s}, {u"\u00E9"_s, u" x, \u00FF "_s}}
      << u"hp=10;\u00E9= x, \u00FF "_s;
  QTest::newRow("a long value comes back whole")
      << Variables{{u"a"_s, QString(5000, u'x')}} << u"a="_s + QString(5000, u'x');
  QTest::newRow("an empty value costs itself and all that follow")
      << Variables{{u"a"_s, u"1"_s}, {u"b"_s, u""_s}, {u"c"_s, u"3"_s}} << u"a=1!"_s;
  QTest::newRow("a value holding a quote comes back cut")
      << Variables{{u"a"_s, u"x\"y"_s}, {u"b"_s, u"2"_s}} << u"a=x;b=2"_s;
  QTest::newRow("a name holding a blank costs itself and all that follow")
      << Variables{{u"a b"_s, u"1"_s}, {u"c"_s, u"3"_s}} << u"!"_s;
}

void TestVariablesFile::roundTrip() {
  QFETCH(Variables, variables);
  QFETCH(QString, expected);
  QCOMPARE(readShape(variablesfile::toText(variables)), expected);
}

void TestVariablesFile::noiseReadsAsTheLibrariesReadIt() {
  const QByteArrayList pieces{"variable a \"1\"\n",
                              "variable b \"2 3\"\n",
                              "variable ",
                              "variable",
                              "a",
                              "hp",
                              " ",
                              "\"",
                              "\"\n",
                              "\n",
                              "\n",
                              "\r\n",
                              "\r",
                              "\xE9",
                              QByteArray(1, '\0')};
  QRandomGenerator random(815);
  int someRead = 0;
  int failures = 0;
  for (int file = 0; file < 10'000; ++file) {
    QByteArray text;
    for (quint32 left = random.bounded(12U); left > 0; --left)
      text += random.bounded(8) == 0 ? QByteArray(1, static_cast<char>(random.bounded(256)))
                                     : pieces[random.bounded(pieces.size())];
    const QString read = readShape(text);
    QCOMPARE(read, readShapeByTheLibraries(text));
    someRead += read.contains(u'=');
    failures += read.endsWith(u'!');
  }
  QVERIFY2(someRead > 500 && failures > 500 && failures < 10'000, "the noise reaches too little");
}

KELMORA_TEST_MAIN(TestVariablesFile)
#include "tst_variablesfile.moc"
