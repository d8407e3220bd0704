#include "EveryWindow.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMetaProperty>
#include <QScrollBar>
#include <QSet>

#include "automation/editors/AliasWidget.h"
#include "automation/editors/KeyPressWidget.h"
#include "automation/editors/MacroWidget.h"
#include "automation/editors/TriggerWidget.h"
#include "dialogs/StyleWidget.h"
#include "support/Settled.h"
#include "terminal/view/OutputWidget.h"

namespace {

/// Properties that hold text, but none to be read by a player.
const QSet<QByteArray> noWords{"objectName", "styleSheet", "inputMask", "windowFilePath"};
/// What is in a field: the same as its text, in other forms.
const QSet<QByteArray> otherForms{"html",         "plainText",   "markdown", "displayText",
                                  "selectedText", "currentText", "iconText"};

void addTexts(const QObject& object, QList<ShownText>& texts) {
  const QMetaObject& type = *object.metaObject();
  const auto add = [&](const QByteArray& property, const QString& text) {
    if (!text.isEmpty())
      texts << ShownText{QString::fromLatin1(type.className()) + u'.' + property, text};
  };
  for (int index = 0; index < type.propertyCount(); ++index) {
    const QMetaProperty property = type.property(index);
    if (property.metaType().id() == QMetaType::QString && !noWords.contains(property.name()) &&
        !otherForms.contains(property.name()))
      add(property.name(), property.read(&object).toString());
  }
  if (const auto* box = qobject_cast<const QComboBox*>(&object))
    for (int index = 0; index < box->count(); ++index)
      add("item", box->itemText(index));
}

/// Scrolls the pane back and lets more text come, which opens its second view.
void divide(OutputWidget& pane) {
  for (int line = 0; line < 200; ++line)
    pane.echoSentText(QStringLiteral("line\r\n"));
  settled(pane).verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepSub);
  pane.echoSentText(QStringLiteral("line\r\n"));
  pane.settle();
}

}  // namespace

EveryWindow::EveryWindow() {
  window_ = std::make_unique<MainWidget>(profile_);
  profile_.macros.append({.key = Qt::Key_F1, .commands = {QStringLiteral("look")}});
  profile_.triggers.append({.pattern = QStringLiteral("rat"), .commands = {}});
  profile_.aliases.append({.name = QStringLiteral("hi"), .commands = {}});
  window_->show();
  divide(pane());
  pane().find();
  for (const auto open :
       {&MainWidget::configureSettings, &MainWidget::proxySettings, &MainWidget::editMacros,
        &MainWidget::editTriggers, &MainWidget::editAliases, &MainWidget::showHelp})
    (window_.get()->*open)();
  dialog<StyleWidget>().showDialog();
  dialog<KeyPressWidget>().show();
  QCoreApplication::processEvents();
}

void EveryWindow::makeMistakesInEditors() const {
  auto& macros = dialog<MacroWidget>();
  macros.showEditor();
  macros.addMacro();
  macros.deleteMacro();
  auto& triggers = dialog<TriggerWidget>();
  triggers.showEditor();
  triggers.addTrigger();
  triggers.addTrigger();
  triggers.findChild<QLineEdit*>()->clear();
  triggers.saveTrigger();
  triggers.deleteTrigger();
  auto& aliases = dialog<AliasWidget>();
  aliases.showEditor();
  aliases.addAlias();
  aliases.addAlias();
  aliases.findChild<QLineEdit*>()->clear();
  aliases.saveAlias();
  aliases.deleteAlias();
}

OutputWidget& EveryWindow::pane() const {
  return *window_->findChild<OutputWidget*>();
}

QList<ShownText> textsOf(const QWidget& window) {
  QList<ShownText> texts;
  addTexts(window, texts);
  for (const QAction* action : window.findChildren<QAction*>())
    addTexts(*action, texts);
  for (const QWidget* widget : window.findChildren<QWidget*>())
    if (widget->window() == &window)
      addTexts(*widget, texts);
  return texts;
}
