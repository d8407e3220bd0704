#include "Studio.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QPainter>
#include <QSettings>
#include <chrono>
#include <cstdio>

#include "Hands.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"

namespace kelmora::tools {

namespace {

using namespace std::chrono_literals;

demo::DemoOptions quietWorld() {
  demo::DemoOptions options;
  options.chatter = demo::NpcChatter::Off;
  options.roundInterval = 400ms;  // longer than any picture takes
  options.seed = 5;
  return options;
}

/// What differs between systems is settled: the fonts and the style.
QString storeIn(const QTemporaryDir& folder, quint16 port) {
  QString file = folder.filePath(QStringLiteral("store.ini"));
  QSettings store(file, QSettings::IniFormat);
  store.beginGroup(QStringLiteral("Global Settings"));
  store.setValue(QStringLiteral("size"), QSize(800, 600));
  store.setValue(QStringLiteral("pos"), QPoint(0, 0));
  store.setValue(QStringLiteral("outfont"), QFont(QStringLiteral("Courier Prime"), 10).toString());
  store.setValue(QStringLiteral("infont"), QFont(QStringLiteral("Courier Prime"), 10).toString());
  store.setValue(QStringLiteral("interfaceStyle"), QStringLiteral("Fusion"));
  store.setValue(QStringLiteral("hostName"), QStringLiteral("localhost"));
  store.setValue(QStringLiteral("port"), port);
  store.setValue(QStringLiteral("playBeeps"), 0);
  return file;
}

}  // namespace

Studio::Studio(const QString& folder, quint16 port)
    : folder_(QDir(folder).absolutePath()), world_(quietWorld()) {
  QDir().mkpath(folder_);
  if (!world_.listen(port)) {
    std::fprintf(stderr, "kelmora-pictures: port %d is taken, so the pictures tell another\n",
                 port);
    if (!world_.listen(0)) {
      fail(world_.errorString());
      return;
    }
  }
  // The client keeps its automation files in the folder that it is started in.
  const QString licences = QDir::current().absoluteFilePath(QStringLiteral("licenses.txt"));
  QFile::copy(licences, own_.filePath(QStringLiteral("licenses.txt")));
  QDir::setCurrent(own_.path());
  profile_ =
      std::make_unique<app::Profile>(settings::StorePlace{.iniFile = storeIn(own_, world_.port())});
  window_ = std::make_unique<MainWidget>(*profile_);
  window_->show();
  window_->activateWindow();
  settle();
}

QString Studio::text() const {
  auto* pane = window_->findChild<OutputWidget*>();
  pane->settle();
  return pane->toPlainText();
}

InputWidget& Studio::bar() {
  return *window_->findChild<InputWidget*>();
}

void Studio::enter() {
  const qsizetype before = text().size();
  window_->connectToServer();
  awaitWords(QStringLiteral("By what name"), before);
}

void Studio::say(const QString& line, const QString& answer) {
  const qsizetype before = text().size();
  typeInto(bar(), line);
  press(bar(), Qt::Key_Return);
  awaitWords(answer, before);
}

void Studio::awaitWords(const QString& answer, qsizetype from) {
  if (!waitFor([&] { return text().mid(from).contains(answer); }))
    fail(QStringLiteral("the pane does not tell: ") + answer);
}

void Studio::startAnother() {
  app::Profile profile({.iniFile = own_.filePath(QStringLiteral("store.ini"))});
  const MainWidget another(profile);
}

void Studio::withDialog(const QString& title, const std::function<void()>& open,
                        const std::function<void(QDialog&)>& act) {
  open();
  for (QDialog* dialog : window_->findChildren<QDialog*>()) {
    if (!dialog->isVisible() || dialog->windowTitle() != wordsOf(*dialog, title))
      continue;
    settle();
    act(*dialog);
    dialog->close();
    settle();
    return;
  }
  fail(QStringLiteral("no dialog is called ") + title);
}

void Studio::keep(const QString& name, QWidget& widget, QWidget* menu) {
  settle();
  QPixmap picture = widget.grab();
  if (menu != nullptr) {
    // A menu may hang out of its window.
    const QRect place(widget.mapFromGlobal(menu->pos()), menu->size());
    QPixmap both(picture.deviceIndependentSize().toSize().expandedTo(
                     {place.right() + 1, place.bottom() + 1}) *
                 picture.devicePixelRatio());
    both.setDevicePixelRatio(picture.devicePixelRatio());
    both.fill(Qt::transparent);
    QPainter painter(&both);
    painter.drawPixmap(0, 0, picture);
    painter.drawPixmap(place.topLeft(), menu->grab());
    painter.end();
    picture = both;
  }
  if (!picture.save(folder_ + u'/' + name, "PNG"))
    fail(QStringLiteral("the picture cannot be written: ") + name);
  kept_.insert(name);
}

void Studio::fail(const QString& what) {
  std::fprintf(stderr, "kelmora-pictures: %s\n", qPrintable(what));
  sound_ = false;
}

QPalette desktopPalette(bool dark) {
  const auto of = [](const char* window, const char* base, const char* text, const char* button,
                     const char* link, const char* faint) {
    QPalette palette{QColor(button), QColor(window)};
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::BrightText}) {
      palette.setColor(role, QColor(text));
      palette.setColor(QPalette::Disabled, role, QColor(faint));
    }
    palette.setColor(QPalette::Base, QColor(base));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(window));
    palette.setColor(QPalette::AlternateBase, QColor(window));
    palette.setColor(QPalette::ToolTipBase, QColor(base));
    palette.setColor(QPalette::Highlight, QColor("#308cc6"));
    palette.setColor(QPalette::HighlightedText, QColor("#ffffff"));
    palette.setColor(QPalette::PlaceholderText, QColor(faint));
    palette.setColor(QPalette::Link, QColor(link));
    return palette;
  };
  return dark ? of("#2b2b2b", "#1e1e1e", "#f0f0f0", "#3a3a3a", "#6cb6ff", "#808080")
              : of("#efefef", "#ffffff", "#000000", "#efefef", "#0000ff", "#a0a0a0");
}

}  // namespace kelmora::tools
