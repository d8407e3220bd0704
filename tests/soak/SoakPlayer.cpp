#include "SoakPlayer.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include "support/FileText.h"
#include "support/Settled.h"

namespace {

constexpr qint64 typingPeriod = 10;
constexpr qint64 connectionPeriod = 240;
constexpr qint64 resizePeriod = 400;
constexpr int firstDialogAction = 2;
constexpr int dialogActions = 9;

/// The visible dialog of the window, modal or not.
QDialog* openDialogOf(const PlayWindow& play) {
  for (QDialog* dialog : play.window->findChildren<QDialog*>())
    if (dialog->isVisible())
      return dialog;
  return nullptr;
}

/// False where the dialog has no such button, or it can't be pressed.
bool press(const QDialog& dialog, const QString& text) {
  for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
    if (button->text() != text || !button->isEnabled())
      continue;
    QTest::mouseClick(button, Qt::LeftButton);
    return true;
  }
  return false;
}

}  // namespace

void SoakPlayer::writeAutomation() {
  writeFile(QStringLiteral("triggers.txt"),
            "\ntrigger \"{*} tells you: {*}\"\n/set reply, {_trigOut1}\n/set from, {_trigOut0}\n"
            "tell {from} I heard {reply}\n/trigger\n"
            "\ntrigger \"{*} dragon lands\"\n/pause dragon, 100\nflee\n/trigger\n");
  writeFile(QStringLiteral("aliases.txt"),
            "\nalias \"go\"\nnorth\n/pause step, 150\nsouth\n/alias\n"
            "\nalias \"dance\"\n/repeat 3, wave\n/add dances, 1\n/echo {dances} dances\n/alias\n");
  writeFile(QStringLiteral("macros.txt"), "\nmacro Key_F5\nscore\n/macro\n");
}

SoakPlayer::SoakPlayer(PlayWindow& play, SoakServer& server) : play_(play), server_(server) {
  // Behind the timer's own turn: an answer may lead to another question, and a
  // timer that waits for its turn to end sees none.
  connect(
      &answers_, &QTimer::timeout, this, [this] { answerModal(); }, Qt::QueuedConnection);
  answers_.start(10);
  play_.window->connectToServer();
}

bool SoakPlayer::isCalm() {
  return QApplication::activeModalWidget() == nullptr;
}

void SoakPlayer::expect(bool fulfilled, const char* what) {
  if (fulfilled)
    return;
  ++failures_;
  qWarning("tick %lld: %s", static_cast<long long>(tick_), what);
}

void SoakPlayer::tick() {
  ++tick_;
  if (tick_ % typingPeriod == 0 && isCalm())
    typeSomething();
  if (tick_ % resizePeriod == 0)
    play_.window->resize(tick_ % (2 * resizePeriod) == 0 ? QSize(800, 800) : QSize(700, 640));
  switch (tick_ % dialogPeriod) {
    case 0:
      openDialog();
      break;
    case dialogPeriod / 4:
      useDialog();
      break;
    case dialogPeriod / 2:
      closeDialog();
      break;
    default:
      break;
  }
  changeConnection();
}

void SoakPlayer::typeSomething() {
  const QString number = QString::number(++typed_);
  switch (typed_ % 10) {
    case 0:
      QTest::keyClick(play_.bar, Qt::Key_Up);
      QTest::keyClick(play_.bar, Qt::Key_Up);
      QTest::keyClick(play_.bar, Qt::Key_Return);
      return;
    case 1:
      return play_.type("go");
    case 2:
      return play_.type("/pause t" + number + ", 120;rest " + number);
    case 3:
      return play_.type("/set n, " + number + ";/echo at {n}, FF8000");
    case 4:
      return play_.type("dance");
    case 5:
      return play_.type("/unpause nothing");
    case 6:
      play_.type("/pause u, 60000;never");
      return play_.type("/unpause u");
    case 7:
      QTest::keyClick(play_.bar, Qt::Key_F5);
      return;
    default:
      return play_.type("say " + number + ";look");
  }
}

// File dialogs run within the call; the others only appear.
void SoakPlayer::openDialog() {
  QFile::remove(QStringLiteral("session.html"));
  const auto action = static_cast<int>(firstDialogAction + dialogs_++ % dialogActions);
  play_.actions.at(action)->trigger();
}

void SoakPlayer::useDialog() {
  QDialog* dialog = openDialogOf(play_);
  if (!dialog)
    return;
  const QString title = dialog->windowTitle();
  if (title == "General Settings") {
    expect(press(*dialog, "Apply"), "the general settings cannot be applied");
    return;
  }
  for (const char* entry : {"macro", "alias", "trigger"})
    for (const char* verb : {"Add ", "Edit ", "Save ", "Delete "})
      if (title.startsWith(QLatin1String(entry), Qt::CaseInsensitive))
        expect(press(*dialog, QLatin1String(verb) + QLatin1String(entry)),
               "a button of an editor is missing");
}

void SoakPlayer::closeDialog() {
  if (QDialog* dialog = openDialogOf(play_))
    dialog->close();
}

void SoakPlayer::changeConnection() {
  const qint64 place = tick_ % connectionPeriod;
  if (place == connectionPeriod - 1) {
    // All of this time there was a connection, and the player typed.
    expect(server_.received() > receivedBefore_, "no line of the player's arrives");
    receivedBefore_ = server_.received();
    const QString mark = server_.markOf(40);
    expect(mark.isEmpty() || settled(*play_.pane).document()->toPlainText().contains(mark),
           "no line of the server's arrives");
  } else if (place == connectionPeriod / 2) {
    const qint64 way = endings_++ % 4;
    if (way == 3)
      play_.window->disconnectFromServer();
    else
      server_.end(static_cast<End>(way));
  } else if (place == connectionPeriod / 2 + 20) {
    expect(play_.actions.at(0)->isEnabled(), "Connect is not to be had");
    play_.window->connectToServer();
  }
}

void SoakPlayer::answerModal() {
  QWidget* modal = QApplication::activeModalWidget();
  if (auto* box = qobject_cast<QMessageBox*>(modal)) {
    QPushButton* yes = qobject_cast<QPushButton*>(box->button(QMessageBox::Yes));
    QTest::mouseClick(yes ? static_cast<QAbstractButton*>(yes) : box->button(QMessageBox::Ok),
                      Qt::LeftButton);
  } else if (auto* files = qobject_cast<QFileDialog*>(modal)) {
    const bool page = files->windowTitle().startsWith("Save Game");
    auto* name = files->findChild<QLineEdit*>("fileNameEdit");
    name->setText(QDir::current().absoluteFilePath(page ? "session.html" : "my.settings"));
    QTest::keyClick(name, Qt::Key_Return);
  } else if (modal && modal->windowTitle() == "Add Macro") {
    QTest::keyClick(modal->findChild<QLineEdit*>(), Qt::Key_F9);
    expect(press(*qobject_cast<QDialog*>(modal), "Okay"), "no key can be captured");
  }
}
