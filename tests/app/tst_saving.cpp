#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QNetworkProxy>
#include <QStyle>
#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#include <unistd.h>
#endif

#include "PlayWindow.h"
#include "support/Controls.h"
#include "support/DialogAnswers.h"
#include "support/FileText.h"
#include "support/ScratchMain.h"

namespace {

#ifdef Q_OS_LINUX
/// Notes which files of some folders are written or come by a new content, in
/// order.
class WriteWatch {
 public:
  WriteWatch() = default;
  ~WriteWatch() { ::close(events_); }
  Q_DISABLE_COPY_MOVE(WriteWatch)

  [[nodiscard]] bool watch(const QString& folder) {
    const QByteArray path = QFile::encodeName(folder);
    return ::inotify_add_watch(events_, path.constData(), IN_MODIFY | IN_MOVED_TO) >= 0;
  }
  /// Each name once, where it came first.
  [[nodiscard]] QStringList written() {
    QStringList names;
    alignas(inotify_event) char buffer[16384];
    for (ssize_t size = 0; (size = ::read(events_, buffer, sizeof buffer)) > 0;) {
      for (ssize_t at = 0; at < size;) {
        const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
        const QString name = QFile::decodeName(event->name);
        if (!names.contains(name))
          names << name;
        at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      }
    }
    return names;
  }

 private:
  int events_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};
#endif

/// Writes down in which order the window takes what was imported.
class RefreshWatch : public QObject {
 public:
  explicit RefreshWatch(PlayWindow& play) : play_(play) {
    play.window->installEventFilter(this);
    play.bar->installEventFilter(this);
    play.pane->installEventFilter(this);
    connect(play.window->findChild<QToolBar*>(), &QToolBar::iconSizeChanged, this,
            [this] { note("icons"); });
  }

  QStringList steps;
  /// What is looked at when the style changes.
  QString proxyThen;
  QColor colourThen;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::StyleChange && watched == play_.window.get()) {
      if (steps.isEmpty()) {
        proxyThen = QNetworkProxy::applicationProxy().hostName();
        play_.window->clientConnected();
        colourThen = play_.formatOf("Connected to host!").foreground().color();
      }
      note("style");
    }
    if (event->type() == QEvent::FontChange && watched == play_.bar &&
        play_.bar->font().pointSize() == 15)
      note("input font");
    if (event->type() == QEvent::FontChange && watched == play_.pane &&
        play_.pane->font().pointSize() == 13)
      note("output font");
    return false;
  }

 private:
  void note(const QString& step) {
    if (!steps.contains(step))
      steps << step;
  }

  PlayWindow& play_;
};

}  // namespace

/// What is written, in which order, and what an import sets going.
class TestSaving : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void variablesAreWrittenBeforeTheStore_data();
  void variablesAreWrittenBeforeTheStore();
  void theStoreIsWrittenThoughTheVariablesCannotBe_data();
  void theStoreIsWrittenThoughTheVariablesCannotBe();
  void anImportRefreshesInOrder();

 private:
  static void occasions();
  /// Closes the window, or opens the dialog and presses its Apply.
  static void save(const PlayWindow& play, const QString& title) {
    if (title.isEmpty()) {
      QVERIFY(play.window->close());
      return;
    }
    play.actions.at(title == "Proxy Settings" ? 6 : 5)->trigger();
    if (title == "Interface Settings")
      buttonOf(*play.dialogTitled("General Settings"), "Interface style")->click();
    buttonOf(*play.dialogTitled(title), "Apply")->click();
  }

  const QString styleAtStart_ = QApplication::style()->objectName();
};

void TestSaving::init() {
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  QFile::remove("variables.txt");
}

void TestSaving::cleanup() {
  QDir().rmdir("variables.txt");
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  QApplication::setStyle(styleAtStart_);
}

void TestSaving::occasions() {
  QTest::addColumn<QString>("title");
  QTest::newRow("as the window closes") << QString();
  QTest::newRow("as the general settings are applied") << "General Settings";
  QTest::newRow("as the proxy settings are applied") << "Proxy Settings";
  QTest::newRow("as the interface settings are applied") << "Interface Settings";
}

void TestSaving::variablesAreWrittenBeforeTheStore_data() {
  occasions();
}

void TestSaving::variablesAreWrittenBeforeTheStore() {
#ifdef Q_OS_LINUX
  QFETCH(const QString, title);
  PlayWindow play(5000);
  play.type("/set hp, 15");
  play.profile.settings.splitString = "//";
  const QFileInfo storeFile(play.store.place().iniFile);
  WriteWatch watch;
  QVERIFY(watch.watch(".") && watch.watch(storeFile.path()));
  save(play, title);
  QStringList written = watch.written();
  written.removeIf(
      [&](const QString& name) { return name != "variables.txt" && name != storeFile.fileName(); });
  QCOMPARE(written, (QStringList{"variables.txt", storeFile.fileName()}));
  QCOMPARE(contentsOf("variables.txt"), QByteArray("\nvariable hp \"15\"\n"));
#else
  QSKIP("nothing tells the order of two writes here");
#endif
}

void TestSaving::theStoreIsWrittenThoughTheVariablesCannotBe_data() {
  occasions();
}

void TestSaving::theStoreIsWrittenThoughTheVariablesCannotBe() {
  QFETCH(const QString, title);
  PlayWindow play(5000);
  QVERIFY(QFile::remove("variables.txt"));
  QVERIFY(QDir().mkdir("variables.txt"));
  play.type("/set hp, 15");
  play.profile.settings.proxyUserName = "Robin";
  const DialogAnswers nobodyIsTold;
  save(play, title);
  QCOMPARE(play.store.value("proxyUserName").toString(), QString("Robin"));
  QVERIFY(QFileInfo("variables.txt").isDir());
}

void TestSaving::anImportRefreshesInOrder() {
  PlayWindow play(5000);
  QString style = "Windows";
  if (style.compare(styleAtStart_, Qt::CaseInsensitive) == 0)
    style = "Fusion";
  writeFile("my.settings",
            "outFont Courier,13,-1,5,50,0,0,0,0,0\n"
            "inFont Courier,15,-1,5,50,0,0,0,0,0\n"
            "iconSize.width 24\niconSize.height 20\nwhite #112233\n"
            "interfaceStyle " +
                style.toLatin1() +
                "\nproxyHostName there.invalid\nproxyPortNumber 1080\n"
                "useProxyServer 1\n");
  const DialogAnswers answers{ExpectedDialog::file("my.settings")};
  const RefreshWatch watch(play);
  play.actions.at(4)->trigger();
  QCOMPARE(watch.steps, (QStringList{"style", "icons", "input font", "output font"}));
  QCOMPARE(watch.proxyThen, QString("there.invalid"));
  QCOMPARE(watch.colourThen, QColor("#112233"));
}

KELMORA_GUI_TEST_MAIN(TestSaving)
#include "tst_saving.moc"
