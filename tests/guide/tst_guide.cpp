#include <QApplication>

#include "GuidePlay.h"
#include "support/ScratchMain.h"

/// Plays what the guide tells its reader to do, out of its own pages.
class TestGuide : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyBlockBelongsToAStep_data() { pages(); }
  void everyBlockBelongsToAStep();
  void theFirstStepsLeadThere();
  void recipes_data() { sectionsOf("recipes.md"); }
  void recipes() { playSection("recipes.md"); }
  void surprises_data() { sectionsOf("surprises.md"); }
  void surprises() { playSection("surprises.md"); }

 private:
  static GuidePage page(const QString& name) {
    return GuidePage(QStringLiteral(KELMORA_GUIDE "/") + name);
  }
  static void pages() {
    QTest::addColumn<QString>("name");
    for (const char* name : {"first-steps.md", "recipes.md", "surprises.md"})
      QTest::newRow(name) << QString(name);
  }
  static void sectionsOf(const QString& name) {
    QTest::addColumn<QString>("title");
    const GuidePage read = page(name);
    for (const GuideSection& section : read.sections())
      QTest::newRow(qPrintable(section.title)) << section.title;
  }
  static void playSection(const QString& name);
};

void TestGuide::everyBlockBelongsToAStep() {
  QFETCH(const QString, name);
  const GuidePage read = page(name);
  QCOMPARE(read.faults(), QStringList());
  QVERIFY(!read.sections().isEmpty());
}

void TestGuide::theFirstStepsLeadThere() {
  GuidePlay play;
  QVERIFY(play.isReady());
  const GuidePage read = page("first-steps.md");
  for (const GuideSection& section : read.sections())
    play.play(section.steps);
}

void TestGuide::playSection(const QString& name) {
  QFETCH(const QString, title);
  GuidePlay play;
  QVERIFY(play.isReady());
  play.enterAs("Robin");
  const GuidePage read = page(name);
  for (const GuideSection& section : read.sections()) {
    if (section.title != title || QTest::currentTestFailed())
      continue;
    QVERIFY2(!section.steps.isEmpty(), "nothing of it can be played");
    play.play(section.steps);
  }
}

KELMORA_GUI_TEST_MAIN(TestGuide)
#include "tst_guide.moc"
