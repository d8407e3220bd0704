#include <QTest>

#include "access/HeardClient.h"
#include "support/ScratchMain.h"

/// What a screen reader finds in each dialog, on a real accessibility bus.
class TestSpokenDialogs : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void cleanupTestCase();
  void everyControlHasItsName_data();
  void everyControlHasItsName();

 private:
  [[nodiscard]] Accessible window(const QString& title) const;

  GameServer server_;
  std::unique_ptr<HeardClient> client_;
};

namespace {

using Rows = QStringList;

/// "role: name" of all controls in the order of the tree, which is that of the Tab
/// key; with "label /" before the name where the label is another. The entries of
/// lists are not controls.
Rows controlsOf(const Accessible& dialog) {
  Rows controls;
  for (const Accessible& each : dialog.all()) {
    const QString role = each.role();
    if (!each.is(state::focusable) || !each.is(state::visible) || role.startsWith("list"))
      continue;
    Rows words = each.labels();
    if (!words.contains(each.name()))
      words << each.name();
    controls << (each.isPassword() ? "password " : "") + role + ": " + words.join(" / ");
  }
  return controls;
}

Rows buttons(const char* kind, const QStringList& names) {
  Rows rows;
  for (const QString& name : names)
    rows << "push button: " + QString::fromLatin1(kind).arg(name);
  return rows;
}

Rows editor(const QString& list, const QString& entry, const Rows& fields) {
  return Rows{"text: Commands"} + fields +
         buttons("%1", {"Edit " + entry, "Save " + entry, "Cancel " + entry + " edit"}) +
         Rows{"combo box: " + list} + buttons("%1", {"Add " + entry, "Delete " + entry, "Close"});
}

}  // namespace

void TestSpokenDialogs::initTestCase() {
  client_ = std::make_unique<HeardClient>(server_);
  QVERIFY2(!client_->application().isNull(), client_->log().constData());
}

void TestSpokenDialogs::cleanupTestCase() {
  client_.reset();
}

Accessible TestSpokenDialogs::window(const QString& title) const {
  for (const Accessible& each : client_->application().children())
    if (each.name() == title && each.is(state::showing))
      return each;
  return {};
}

void TestSpokenDialogs::everyControlHasItsName_data() {
  QTest::addColumn<QStringList>("opening");  // buttons, each in the window of the one before
  QTest::addColumn<QStringList>("titles");   // of the windows that they open
  QTest::addColumn<QStringList>("closing");  // buttons of these windows
  QTest::addColumn<QStringList>("controls");
  const QStringList colours{"Black", "Red", "Green", "Yellow", "Blue", "Magenta", "Cyan", "White"};
  const Rows options{"check box: Display ANSI color",
                     "check box: Enable local echo",
                     "check box: Play beeps",
                     "check box: Parse html tags",
                     "check box: Flush input bar",
                     "check box: Display clickable URLs",
                     "check box: Split input by following string:",
                     "text: String to split the input by"};
  const Rows settingsEnd = buttons("%1", {"Apply", "Cancel"});
  QTest::newRow("the general settings")
      << QStringList{"General settings (Ctrl+G)"} << QStringList{"General Settings"}
      << QStringList{"Cancel"}
      << options + buttons("%1, normal color", colours) + buttons("%1, bold color", colours) +
             buttons("%1",
                     {"Font of the output window", "Font of the input bar", "Interface style"}) +
             Rows{"combo box: Use the following server:"} + settingsEnd;
  QTest::newRow("the interface settings")
      << QStringList{"General settings (Ctrl+G)", "Interface style"}
      << QStringList{"General Settings", "Interface Settings"} << QStringList{"Cancel", "Cancel"}
      << Rows{"text: Use the following icon dimensions: / Icon width", "text: Icon height",
              "combo box: Use the following interface style:"} +
             settingsEnd;
  QTest::newRow("the proxy settings") << QStringList{"Proxy settings (Ctrl+P)"}
                                      << QStringList{"Proxy Settings"} << QStringList{"Cancel"}
                                      << Rows{"check box: Use the following proxy server:",
                                              "combo box: Proxy type / Socks5",
                                              "text: Hostname",
                                              "text: Port",
                                              "text: Username",
                                              "password text: Password"} +
                                             settingsEnd;
  QTest::newRow("the editor of macros")
      << QStringList{"Edit macros (Ctrl+M)"} << QStringList{"Macros"} << QStringList{"Close"}
      << editor("Macros", "macro", {});
  QTest::newRow("the question for a key")
      << QStringList{"Edit macros (Ctrl+M)", "Add macro"} << QStringList{"Macros", "Add Macro"}
      << QStringList{"Close", "Okay"} << Rows{"text: Hit a key: / Key", "push button: Okay"};
  QTest::newRow("the editor of aliases")
      << QStringList{"Edit aliases (Ctrl+L)"} << QStringList{"Aliases"} << QStringList{"Close"}
      << editor("Aliases", "alias", {"text: Alias"});
  QTest::newRow("the editor of triggers")
      << QStringList{"Edit triggers (Ctrl+T)"} << QStringList{"Triggers"} << QStringList{"Close"}
      << editor("Triggers", "trigger", {"text: Pattern"});
  QTest::newRow("the help")
      << QStringList{"Kelmora help (Ctrl+H)"} << QStringList{"Kelmora Help"} << QStringList{"Close"}
      << Rows{"label: Client tutorial - A guide to using this client",
              "label: Official site - Kelmora's official website",
              "label: Official wiki - Kelmora's community wiki",
              "text: This client has been released under the following licenses:",
              "push button: Close"};
}

void TestSpokenDialogs::everyControlHasItsName() {
  QFETCH(const QStringList, opening);
  QFETCH(const QStringList, titles);
  QFETCH(const QStringList, closing);
  Accessible above = window(QStringLiteral("Kelmora - The Official Client"));
  QList<Accessible> opened;
  for (qsizetype i = 0; i < opening.size(); ++i) {
    const auto button = above.find("push button", opening[i]);
    QVERIFY2(button, qPrintable(opening[i]));
    button->press();
    QTRY_VERIFY2(!window(titles[i]).isNull(), qPrintable(titles[i]));
    above = window(titles[i]);
    opened << above;
  }
  QCOMPARE(above.role(), QString("dialog"));
  const Rows found = controlsOf(above);
  for (qsizetype i = opened.size(); i-- > 0;) {
    const auto button = opened[i].find("push button", closing[i]);
    QVERIFY2(button, qPrintable(closing[i]));
    button->press();
    QTRY_VERIFY2(window(titles[i]).isNull(), qPrintable(titles[i]));
  }
  QTEST(found, "controls");
}

KELMORA_TEST_MAIN(TestSpokenDialogs)
#include "tst_spokendialogs.moc"
