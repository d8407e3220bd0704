#include <QGuiApplication>
#include <QTest>
#include <algorithm>

#include "settings/Effects.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::settings;

using enum Effect;
using Effects = std::vector<Effect>;

/// What the window does with the options, and when.
class TestEffects : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void happenInThisOrder_data();
  void happenInThisOrder();
  void anImportTakesAllThatTheStartTakes();
};

void TestEffects::happenInThisOrder_data() {
  QTest::addColumn<Occasion>("occasion");
  QTest::addColumn<Effects>("effects");
  QTest::newRow("the start, before the automation files")
      << Occasion::Loaded << Effects{UsedProxy};
  QTest::newRow("the start, behind them") << Occasion::FilesLoaded << Effects{WidgetStyle};
  QTest::newRow("the start, with the widgets")
      << Occasion::WidgetsMade << Effects{Colours, IconSize, InputFont, OutputFont};
  QTest::newRow("an import ends bold and saves nothing")
      << Occasion::Imported
      << Effects{UsedProxy, Colours, BoldOff, WidgetStyle, IconSize, InputFont, OutputFont};
  QTest::newRow("the general settings leave style, icons and proxy")
      << Occasion::GeneralApplied << Effects{Colours, OutputFont, InputFont, Save};
  QTest::newRow("the proxy settings install the proxy or none")
      << Occasion::ProxyApplied << Effects{Save, ProxyOrNone};
  QTest::newRow("the interface settings are saved, then seen")
      << Occasion::InterfaceApplied << Effects{Save, WidgetStyle, IconSize};
}

void TestEffects::happenInThisOrder() {
  QFETCH(const Occasion, occasion);
  QFETCH(const Effects, effects);
  QVERIFY(effectsOf(occasion) == effects);
}

void TestEffects::anImportTakesAllThatTheStartTakes() {
  Effects atStart;
  for (const Occasion step : {Occasion::Loaded, Occasion::FilesLoaded, Occasion::WidgetsMade})
    for (const Effect effect : effectsOf(step))
      atStart.push_back(effect);
  for (const Effect effect : effectsOf(Occasion::Imported))
    if (effect != BoldOff)
      QCOMPARE(std::erase(atStart, effect), std::size_t{1});
  QVERIFY(atStart.empty());
}

KELMORA_VALUE_TEST_MAIN(TestEffects)
#include "tst_effects.moc"
