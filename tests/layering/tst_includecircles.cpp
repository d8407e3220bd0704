#include <QTest>

#include "layering/IncludeCircles.h"
#include "support/ScratchMain.h"

using Texts = QMap<QString, QString>;

/// Of each two classes one can be read, built and tested without the other.
class TestIncludeCircles : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void theProjectHasNone();
  void everyIncludeIsThere();
  void findsCirclesOfHeaders_data();
  void findsCirclesOfHeaders();
  void findsCirclesOfUnits_data();
  void findsCirclesOfUnits();
};

namespace {

SourceTree treeOf(const Texts& texts) {
  SourceTree tree;
  for (auto text = texts.begin(); text != texts.end(); ++text)
    tree[text.key()] = sourceFile(*text);
  return tree;
}

QStringList joined(const QList<Circle>& circles) {
  QStringList lines;
  for (const Circle& circle : circles)
    lines << circle.join(QStringLiteral(" "));
  return lines;
}

}  // namespace

void TestIncludeCircles::theProjectHasNone() {
  QCOMPARE(joined(headerCircles(projectSources())).join(u'\n'), QString());
  QCOMPARE(joined(unitCircles(projectSources())).join(u'\n'), QString());
}

void TestIncludeCircles::everyIncludeIsThere() {
  // One that is written in another way would not be followed.
  const SourceTree tree = projectSources();
  QVERIFY(tree.contains(QStringLiteral("script/Commands.h")));
  QVERIFY(tree.contains(QStringLiteral("demo/DemoWorld.h")));
  for (auto file = tree.begin(); file != tree.end(); ++file)
    for (const QString& include : file->includes)
      if (!include.endsWith(QLatin1String(".moc")))
        QVERIFY2(tree.contains(include), qPrintable(file.key() + " includes " + include));
}

void TestIncludeCircles::findsCirclesOfHeaders_data() {
  QTest::addColumn<Texts>("texts");
  QTest::addColumn<QStringList>("circles");
  QTest::newRow("a straight way") << Texts{{"r/A.h", "#include \"r/B.h\"\n#include \"r/C.h\"\n"},
                                           {"r/B.h", "#include \"r/C.h\"\n"},
                                           {"r/C.h", "#include <QString>\n"}}
                                  << QStringList();
  QTest::newRow("a header that includes itself")
      << Texts{{"r/A.h", "#include \"r/A.h\"\n"}} << QStringList{"r/A.h"};
  QTest::newRow("two headers") << Texts{{"r/A.h", "#include \"s/B.h\"\n"},
                                        {"s/B.h", "#pragma once\n#include \"r/A.h\"\n"}}
                               << QStringList{"r/A.h s/B.h"};
  QTest::newRow("three headers, and one that leads to them")
      << Texts{{"r/A.h", "#include \"r/B.h\"\n"},
               {"r/B.h", "#include \"r/C.h\"\n"},
               {"r/C.h", "#include \"r/A.h\"\n"},
               {"r/D.h", "#include \"r/A.h\"\n"}}
      << QStringList{"r/A.h r/B.h r/C.h"};
  QTest::newRow("two circles") << Texts{{"r/A.h", "#include \"r/B.h\"\n#include \"r/C.h\"\n"},
                                        {"r/B.h", "#include \"r/A.h\"\n"},
                                        {"r/C.h", "#include \"r/D.h\"\n"},
                                        {"r/D.h", "#include \"r/C.h\"\n"}}
                               << QStringList{"r/A.h r/B.h", "r/C.h r/D.h"};
  QTest::newRow("sources are none of it") << Texts{{"r/A.h", ""},
                                                   {"r/A.cpp", "#include \"r/B.h\"\n"},
                                                   {"r/B.h", "#include \"r/A.h\"\n"}}
                                          << QStringList();
}

void TestIncludeCircles::findsCirclesOfHeaders() {
  QFETCH(const Texts, texts);
  QTEST(joined(headerCircles(treeOf(texts))), "circles");
}

void TestIncludeCircles::findsCirclesOfUnits_data() {
  QTest::addColumn<Texts>("texts");
  QTest::addColumn<QStringList>("circles");
  const QString includesA = "#include \"r/A.h\"\n";
  const QString includesB = "#include \"r/B.h\"\n";
  QTest::newRow("a header and its own source")
      << Texts{{"r/A.h", ""}, {"r/A.cpp", includesA}} << QStringList();
  QTest::newRow("one unit needs the other")
      << Texts{{"r/A.h", ""}, {"r/A.cpp", includesA + includesB}, {"r/B.h", ""}} << QStringList();
  QTest::newRow("a header and a source")
      << Texts{{"r/A.h", includesB}, {"r/B.h", ""}, {"r/B.cpp", includesB + includesA}}
      << QStringList{"r/A r/B"};
  QTest::newRow("two sources") << Texts{{"r/A.h", "class B;\n"},
                                        {"r/A.cpp", includesA + includesB},
                                        {"r/B.h", "class A;\n"},
                                        {"r/B.cpp", includesB + includesA}}
                               << QStringList{"r/A r/B"};
  QTest::newRow("a second source with members of the class")
      << Texts{{"r/A.h", ""},
               {"r/AMore.cpp", includesA + includesB + "void A::more() {\n}\n"},
               {"r/B.h", includesA}}
      << QStringList{"r/A r/B"};
  QTest::newRow("a second source with its constructor")
      << Texts{{"r/A.h", ""},
               {"r/Making.cpp", includesA + includesB + "A::A(int a)\n    : a_(a) {}\n"},
               {"r/B.h", includesA}}
      << QStringList{"r/A r/B"};
  QTest::newRow("a source that only uses both")
      << Texts{{"r/A.h", ""},
               {"r/main.cpp", includesA + includesB + "int main() {\n  A::run();\n}\n"},
               {"r/B.h", includesA}}
      << QStringList();
}

void TestIncludeCircles::findsCirclesOfUnits() {
  QFETCH(const Texts, texts);
  QTEST(joined(unitCircles(treeOf(texts))), "circles");
}

KELMORA_TEST_MAIN(TestIncludeCircles)
#include "tst_includecircles.moc"
