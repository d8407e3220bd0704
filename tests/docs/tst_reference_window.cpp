#include <QAction>
#include <QApplication>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSet>
#include <QToolBar>

#include "Markdown.h"
#include "Tree.h"
#include "app/MainWidget.h"
#include "app/Profile.h"
#include "automation/editors/AliasWidget.h"
#include "automation/editors/KeyPressInput.h"
#include "automation/editors/KeyPressWidget.h"
#include "automation/editors/MacroWidget.h"
#include "automation/editors/TriggerWidget.h"
#include "dialogs/ConfigureWidget.h"
#include "dialogs/HelpWidget.h"
#include "dialogs/ProxyWidget.h"
#include "dialogs/StyleWidget.h"
#include "script/ActionTimer.h"
#include "support/Controls.h"
#include "support/OwnStore.h"
#include "support/ScratchMain.h"
#include "support/Settled.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

/// The tables of the reference that tell of the window as it is seen from outside.
class TestReferenceWindow : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void connectionErrors();
  void slotsOfTheWindow();
  void classes();
  void toolbar();
  void bars();
};

void TestReferenceWindow::connectionErrors() {
  const auto rows = page("connection.md").checkedTable("## States");
  QVERIFY(!rows.isEmpty());
  const auto errors = QMetaEnum::fromType<QAbstractSocket::SocketError>();
  for (const QStringList& row : rows) {
    const OwnStore store;
    app::Profile profile(store.place());
    MainWidget window(profile);
    const QByteArray name = codeIn(row.at(0)).toLatin1();
    const int error =
        name.isEmpty() ? QAbstractSocket::NetworkError : errors.keyToValue(name.constData());
    QVERIFY2(name.isEmpty() || error >= 0, qPrintable(row.join('|')));
    window.displaySocketError(static_cast<QAbstractSocket::SocketError>(error));
    const QString line = codeIn(row.at(1)).replace("NUMBER", QString::number(error));
    QCOMPARE(settled(*window.findChild<OutputWidget*>()).toPlainText(), line);
  }
}

void TestReferenceWindow::slotsOfTheWindow() {
  QStringList inPage;
  for (const QStringList& row : page("window.md").checkedTable("## Slots of MainWidget")) {
    QCOMPARE(row.at(0).toInt(), int(inPage.size()));
    inPage << codeIn(row.at(1));
  }
  QCOMPARE(inPage, methodsOf(MainWidget::staticMetaObject));
}

void TestReferenceWindow::classes() {
  QMap<QString, const QMetaObject*> inCode;
  for (const QMetaObject* meta :
       {&MainWidget::staticMetaObject, &OutputWidget::staticMetaObject,
        &InputWidget::staticMetaObject, &ConfigureWidget::staticMetaObject,
        &ProxyWidget::staticMetaObject, &StyleWidget::staticMetaObject,
        &HelpWidget::staticMetaObject, &MacroWidget::staticMetaObject,
        &TriggerWidget::staticMetaObject, &AliasWidget::staticMetaObject,
        &KeyPressWidget::staticMetaObject, &KeyPressInput::staticMetaObject,
        &ActionTimer::staticMetaObject})
    inCode.insert(meta->className(), meta);

  // All there are: a class with slots says Q_OBJECT, and one that shows outside
  // is in no namespace.
  QSet<QString> declared;
  static const QRegularExpression declaration(QStringLiteral("^class (\\w+)[^;{]*\\{\\s*Q_OBJECT"),
                                              QRegularExpression::MultilineOption);
  static const QRegularExpression endOfNamespace(QStringLiteral("// namespace [\\w:]+\\s*$"));
  for (const QString& path : filesIn("src", "*.h")) {
    const QString text = textOf(path);
    const auto match = declaration.match(text);
    if (match.hasMatch() && !text.contains(endOfNamespace))
      declared << match.captured(1);
  }
  const QStringList names = inCode.keys();
  QCOMPARE(QSet<QString>(names.begin(), names.end()), declared);

  QStringList inPage;
  for (const QStringList& row : page("window.md").checkedTable("## Classes")) {
    const QString name = codeIn(row.at(0));
    inPage << name;
    QVERIFY2(inCode.contains(name), qPrintable(name));
    const QMetaObject& meta = *inCode.value(name);
    QCOMPARE(codeIn(row.at(1)), QString::fromLatin1(meta.superClass()->className()));
    if (name != "MainWidget")
      QCOMPARE(codesIn(row.at(2)), methodsOf(meta));
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
      QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
  }
  inPage.sort();
  QCOMPARE(inPage, names);
}

void TestReferenceWindow::toolbar() {
  const OwnStore store;
  app::Profile profile(store.place());
  MainWidget window(profile);
  const auto rows = page("window.md").checkedTable("## Toolbar");
  QList<QStringList> inCode;
  for (const QAction* action : window.findChild<QToolBar*>()->actions()) {
    if (action->isSeparator()) {
      inCode.last().last() = "line";
      continue;
    }
    QCOMPARE(action->statusTip(), action->text());
    inCode << QStringList{'`' + action->text() + '`', '`' + action->shortcut().toString() + '`',
                          action->isEnabled() ? "enabled" : "disabled", ""};
    const QStringList row = rows.value(inCode.size() - 1);
    const QIcon icon(QStringLiteral(":/icons/%1.png").arg(codeIn(row.value(0))));
    QCOMPARE(action->icon().pixmap(48).toImage(), icon.pixmap(48).toImage());
    const QByteArray slot = codeIn(row.value(3)).toLatin1();
    QVERIFY2(MainWidget::staticMetaObject.indexOfSlot(slot.constData()) >= 0, slot.constData());
  }
  QList<QStringList> inPage;
  for (const QStringList& row : rows)
    inPage << QStringList{row.at(1), row.at(2), row.at(4), row.at(5)};
  QCOMPARE(inPage, inCode);
}

void TestReferenceWindow::bars() {
  const OwnStore store;
  app::Profile profile(store.place());
  MainWidget window(profile);
  QList<QStringList> inCode;
  for (const QProgressBar* bar : window.findChild<QToolBar*>()->findChildren<QProgressBar*>()) {
    QStringList row{bar->accessibleName().toLower(), '`' + bar->objectName() + '`'};
    for (const int length : {bar->x(), bar->y(), bar->width(), bar->height()})
      row << QString::number(length);
    inCode << row + QStringList{'`' + bar->styleSheet() + '`'};
  }
  QCOMPARE(page("window.md").checkedTable("## Layout"), inCode);
}

KELMORA_GUI_TEST_MAIN(TestReferenceWindow)
#include "tst_reference_window.moc"
