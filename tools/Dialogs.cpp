#include "Dialogs.h"

#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "Hands.h"
#include "Studio.h"

namespace kelmora::tools {

namespace {

/// The button is called as the dialog has it in its own language.
void click(Studio& studio, const QDialog& dialog, const QString& text) {
  QPushButton* button = buttonOf(dialog, wordsOf(dialog, text));
  if (button == nullptr || !button->isEnabled())
    return studio.fail(QStringLiteral("no button can be pressed that is called ") + text);
  button->click();
}

/// Keeps a picture of the box that comes when something is done.
void keepBox(Studio& studio, const QString& name, const std::function<void()>& act) {
  meanwhile([&](QDialog& box) { studio.keep(name, box); }, act);
}

void edit(Studio& studio, QDialog& dialog, const QString& word, const Entry& entry) {
  click(studio, dialog, QStringLiteral("Edit ") + word);
  dialog.findChild<QPlainTextEdit*>()->setPlainText(entry.commands);
  dialog.findChild<QPlainTextEdit*>()->moveCursor(QTextCursor::End);
  if (auto* label = dialog.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly))
    label->setText(entry.label);
  studio.keep((word == QLatin1String("alias") ? QStringLiteral("aliases") : word + u's') +
                  QStringLiteral(".png"),
              dialog);
  click(studio, dialog, QStringLiteral("Save ") + word);
}

void keepEntry(Studio& studio, QDialog& dialog, const QString& word, const Entry& entry) {
  click(studio, dialog, QStringLiteral("Add ") + word);
  edit(studio, dialog, word, entry);
}

}  // namespace

void keepGeneralSettings(Studio& studio) {
  studio.withDialog(
      QStringLiteral("General Settings"), [&] { studio.window().configureSettings(); },
      [&](QDialog& dialog) { studio.keep(QStringLiteral("general-settings.png"), dialog); });
}

void keepInterfaceSettings(Studio& studio) {
  studio.withDialog(
      QStringLiteral("General Settings"), [&] { studio.window().configureSettings(); },
      [&](QDialog& general) {
        studio.withDialog(
            QStringLiteral("Interface Settings"),
            [&] { click(studio, general, QStringLiteral("Interface style")); },
            [&](QDialog& dialog) {
              studio.keep(QStringLiteral("interface-settings.png"), dialog);
            });
      });
}

void keepProxySettings(Studio& studio) {
  studio.withDialog(
      QStringLiteral("Proxy Settings"), [&] { studio.window().proxySettings(); },
      [&](QDialog& dialog) { studio.keep(QStringLiteral("proxy-settings.png"), dialog); });
}

void keepHelp(Studio& studio) {
  studio.withDialog(
      QStringLiteral("Kelmora Help"), [&] { studio.window().showHelp(); },
      [&](QDialog& dialog) { studio.keep(QStringLiteral("help.png"), dialog); });
}

void keepAliases(Studio& studio, const Entry& entry) {
  studio.withDialog(
      QStringLiteral("Aliases"), [&] { studio.window().editAliases(); },
      [&](QDialog& dialog) { keepEntry(studio, dialog, QStringLiteral("alias"), entry); });
}

void keepTriggers(Studio& studio, const Entry& entry) {
  studio.withDialog(
      QStringLiteral("Triggers"), [&] { studio.window().editTriggers(); },
      [&](QDialog& dialog) { keepEntry(studio, dialog, QStringLiteral("trigger"), entry); });
}

void keepMacros(Studio& studio, const QString& commands) {
  const auto answer = [&](QDialog& asked) {
    press(*asked.findChild<QLineEdit*>(), Qt::Key_F2);
    studio.keep(QStringLiteral("key.png"), asked);
    click(studio, asked, QStringLiteral("Okay"));
  };
  studio.withDialog(
      QStringLiteral("Macros"), [&] { studio.window().editMacros(); },
      [&](QDialog& dialog) {
        meanwhile(answer, [&] { click(studio, dialog, QStringLiteral("Add macro")); });
        edit(studio, dialog, QStringLiteral("macro"), {{}, commands});
      });
}

void keepDeleteQuestion(Studio& studio) {
  const auto answer = [&](QDialog& asked) {
    studio.keep(QStringLiteral("delete-alias.png"), asked);
  };
  studio.withDialog(
      QStringLiteral("Aliases"), [&] { studio.window().editAliases(); },
      [&](QDialog& dialog) {
        meanwhile(answer, [&] { click(studio, dialog, QStringLiteral("Delete alias")); });
      });
}

void keepRefusals(Studio& studio) {
  studio.withDialog(
      QStringLiteral("Aliases"), [&] { studio.window().editAliases(); },
      [&](QDialog& dialog) {
        const auto add = [&] { click(studio, dialog, QStringLiteral("Add alias")); };
        add();
        keepBox(studio, QStringLiteral("refused-alias.png"), add);
        click(studio, dialog, QStringLiteral("Edit alias"));
        dialog.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly)->clear();
        keepBox(studio, QStringLiteral("refused-name.png"),
                [&] { click(studio, dialog, QStringLiteral("Save alias")); });
      });
}

void keepStartFailure(Studio& studio) {
  QFile file(QStringLiteral("macros.txt"));
  if (!file.open(QIODevice::WriteOnly) || file.write("no sense\n") < 0)
    return studio.fail(QStringLiteral("the macros cannot be written"));
  file.close();
  keepBox(studio, QStringLiteral("failure.png"), [&] { studio.startAnother(); });
}

}  // namespace kelmora::tools
