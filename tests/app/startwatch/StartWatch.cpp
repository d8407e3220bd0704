// A plugin that the toolkit loads into the program itself, as it stands: it
// looks on while the program starts, writes down what comes in which order, and
// ends it as the test says.

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QFontInfo>
#include <QGenericPlugin>
#include <QPointer>
#include <QSplashScreen>
#include <QTimer>
#include <QWindow>
#include <utility>

namespace {

QString word(bool is) {
  return is ? QStringLiteral("yes") : QStringLiteral("no");
}

const QString splashGone = QStringLiteral("splash gone");
const QString windowThere = QStringLiteral("window on the screen");

class StartWatch : public QObject {
 public:
  StartWatch() : report_(qEnvironmentVariable("KELMORA_START_REPORT")) {
    if (report_.open(QIODevice::WriteOnly))
      QCoreApplication::instance()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (describing_)
      return false;
    if (auto* splash = qobject_cast<QSplashScreen*>(watched))
      seeSplash(*splash, event->type());
    else if (watched->inherits("MainWidget"))
      seeWindow(*static_cast<QWidget*>(watched), event->type());
    else if (window_ && watched == window_->windowHandle() && event->type() == QEvent::Expose) {
      noteOnce(windowThere);
      endOnceStarted();
    }
    return false;
  }

 private:
  void note(const QString& line) {
    report_.write(line.toUtf8() + '\n');
    report_.flush();
  }
  /// False for a line that was noted before.
  bool noteOnce(const QString& line) {
    if (noted_.contains(line))
      return false;
    noted_ << line;
    note(line);
    return true;
  }

  void seeSplash(QSplashScreen& splash, QEvent::Type type) {
    splash_ = &splash;
    switch (type) {
      case QEvent::Show:
        noteOnce(QStringLiteral("splash shown"));
        sinceSplash_.start();
        break;
      case QEvent::Paint:
        noteOnce(QStringLiteral("splash painted"));
        break;
      case QEvent::FontChange:
        noteOnce(QStringLiteral("splash in the program's font"));
        break;
      case QEvent::Hide:
        noteOnce(splashGone);
        endOnceStarted();
        break;
      default:
        break;
    }
  }

  void seeWindow(QWidget& window, QEvent::Type type) {
    if (!window_) {
      window_ = &window;
      noteOnce(QStringLiteral("window begun"));
      if (sinceSplash_.isValid() && sinceSplash_.hasExpired(900))
        note(QStringLiteral("but late: %1 ms after the splash").arg(sinceSplash_.elapsed()));
      describe();
      connect(qApp, &QCoreApplication::aboutToQuit, this,
              [this] { note(QStringLiteral("loop ended")); });
      connect(&window, &QObject::destroyed, this, [this] { note(QStringLiteral("window gone")); });
    }
    if (type == QEvent::Show)
      noteOnce(QStringLiteral("window shown, with a parent: ") + word(window.parentWidget()));
  }

  /// Against a splash screen made by hand.
  void describe() {
    describing_ = true;
    const QFont font = QApplication::font();
    note(QStringLiteral("font: %1, %2 points, weight %3, italic: %4, found as %5")
             .arg(font.family())
             .arg(font.pointSize())
             .arg(int(font.weight()))
             .arg(word(font.italic()), QFontInfo(font).family()));
    const QString message = QStringLiteral("Kelmora Client v3.9b");
    QSplashScreen plain(QPixmap(QStringLiteral(":/icons/splash.png")));
    QSplashScreen expected(QPixmap(QStringLiteral(":/icons/splash.png")));
    expected.showMessage(message, Qt::AlignLeft, Qt::black);
    const QImage picture = splash_ ? splash_->grab().toImage() : QImage();
    note(QStringLiteral("splash with the message: %1, plain: %2, its text: %3, its flags: %4")
             .arg(word(picture == expected.grab().toImage()),
                  word(picture == plain.grab().toImage()), splash_ ? splash_->message() : QString(),
                  word(splash_ && splash_->windowFlags() == plain.windowFlags())));
    describing_ = false;
  }

  /// Newer releases let the splash go before the window is on the screen.
  void endOnceStarted() {
    if (noted_.contains(splashGone) && noted_.contains(windowThere) &&
        !std::exchange(ending_, true))
      QTimer::singleShot(0, this, [this] { end(); });
  }

  void end() {
    const QByteArray way = qgetenv("KELMORA_START_END");
    if (way.startsWith("exit ")) {
      QCoreApplication::exit(way.mid(5).toInt());
      return;
    }
    if (way == "tell its words") {
      for (const QAction* action : window_->findChildren<QAction*>())
        if (!action->shortcut().isEmpty())
          note(QStringLiteral("action: ") + action->text());
      note(QStringLiteral("the toolkit's button: ") +
           QCoreApplication::translate("QPlatformTheme", "Cancel"));
    }
    if (way == "close beside the help")
      for (QAction* action : window_->findChildren<QAction*>())
        if (action->text().startsWith(QLatin1String("Kelmora help")))
          action->trigger();
    window_->close();
  }

  QFile report_;
  QStringList noted_;
  QElapsedTimer sinceSplash_;
  QPointer<QSplashScreen> splash_;
  QPointer<QWidget> window_;
  bool describing_ = false;
  bool ending_ = false;
};

}  // namespace

class StartWatchPlugin : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "startwatch.json")

 public:
  QObject* create(const QString& /*name*/, const QString& /*options*/) override {
    return new StartWatch;
  }
};

#include "StartWatch.moc"
