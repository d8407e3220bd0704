// How the window is put together, in the order in which its parts need each
// other; what it does once it stands is in MainWidget.cpp.

#include <QAccessibleWidget>
#include <QAction>
#include <QGridLayout>
#include <QGuiApplication>
#include <QScreen>
#include <QTcpSocket>
#include <QToolBar>
#include <QToolButton>

#include "app/AutomationStart.h"
#include "app/MainWidget.h"
#include "app/Profile.h"
#include "app/ToolbarActions.h"
#include "automation/editors/AliasWidget.h"
#include "automation/editors/MacroWidget.h"
#include "automation/editors/TriggerWidget.h"
#include "dialogs/ConfigureWidget.h"
#include "dialogs/HelpWidget.h"
#include "dialogs/ProxyWidget.h"
#include "settings/UsableValues.h"
#include "terminal/view/InputWidget.h"
#include "terminal/view/OutputWidget.h"
#include "terminal/view/VitalsBars.h"

using namespace kelmora;
using namespace kelmora::app;

namespace {

constexpr int toolbarHeight = 70;

/// The bars need all of the height, whatever the icons do, and the window is
/// not to grow with them. The toolkit's tool bar drops its least size with
/// every change of its icon size.
void keepExtent(QToolBar& toolbar) {
  toolbar.setFixedHeight(toolbarHeight);
  toolbar.setMinimumWidth(1);
}

/// Screen readers look for a window by its role, and to the toolkit one without a
/// menu is only a surface.
QAccessibleInterface* windowForReaders(const QString& className, QObject* object) {
  if (className != QLatin1String("MainWidget"))
    return nullptr;
  return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Window);
}

void nameToolbar(QToolBar& toolbar) {
  toolbar.setAccessibleName(MainWidget::tr("Toolbar"));
  if (auto* more = toolbar.findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button")))
    more->setAccessibleName(MainWidget::tr("More buttons"));
}

}  // namespace

MainWidget::MainWidget(Profile& profile) : profile_(profile) {
  QAccessible::installFactory(windowForReaders);
  setWindowTitle(QStringLiteral("Kelmora - The Official Client"));
  setWindowIcon(QIcon(QStringLiteral(":/icons/mainicon.png")));
  loadStoredSettings();
  applySettings(settings::Occasion::Loaded);
  loadAutomationFiles(*this, profile_);
  applySettings(settings::Occasion::FilesLoaded);
  createWidgets();
  applySettings(settings::Occasion::WidgetsMade);
  createDialogs();
  layOutWidgets();
  connectSocket();
  focusInputBar();
}

MainWidget::~MainWidget() = default;

void MainWidget::loadStoredSettings() {
  const settings::WindowPlace place = profile_.store.load(profile_.settings);
  QSize largest(8192, 8192);
  QList<QRect> screens;
  for (const QScreen* screen : QGuiApplication::screens()) {
    screens.append(screen->geometry());
    largest = largest.expandedTo(screen->virtualSize());
  }
  const QSize size = settings::usableWindowSize(place.size, largest);
  resize(size);
  posAtStart_ = settings::usableWindowPos(place.pos, size, screens);
  move(posAtStart_);
}

void MainWidget::createWidgets() {
  toolbar_ = new QToolBar(this);
  nameToolbar(*toolbar_);
  inputBar_ = new InputWidget(*this, this);
  inputBar_->setAccessibleName(tr("Input bar"));
  outputPane_ = new OutputWidget(*inputBar_, this);
  outputPane_->setAccessibleName(tr("Game text"));
  QPalette palette = outputPane_->palette();
  palette.setBrush(QPalette::Active, QPalette::Base, Qt::black);
  palette.setBrush(QPalette::Inactive, QPalette::Base, Qt::black);
  outputPane_->setPalette(palette);
  PlayHost& host = *this;
  play_ = std::make_unique<Play>(profile_, host, *outputPane_, *this);
}

void MainWidget::createDialogs() {
  dialogs::SettingsHost& host = *this;
  configureDialog_ = new ConfigureWidget(*this, host, profile_.settings);
  proxyDialog_ = new ProxyWidget(*this, host, profile_.settings);
  helpDialog_ = new HelpWidget(*this);
  macroEditor_ = new MacroWidget(profile_.macros, profile_.files, this);
  triggerEditor_ = new TriggerWidget(profile_.triggers, profile_.files, this);
  aliasEditor_ = new AliasWidget(profile_.aliases, profile_.files, this);
  outputPane_->setTriggerMaker(
      {.patternFor = [this](const QString& line,
                            qsizetype place) { return play_->patternFor(line, place); },
       .make = [this](const QString& pattern) { triggerEditor_->showEditorFor(pattern); }});
  for (QDialog* dialog : findChildren<QDialog*>())
    dialog->installEventFilter(this);  // see eventFilter()
}

void MainWidget::layOutWidgets() {
  auto* grid = new QGridLayout(this);
  grid->addWidget(toolbar_, 0, 0);
  grid->addWidget(outputPane_, 1, 0);
  grid->addWidget(inputBar_, 2, 0);
  keepExtent(*toolbar_);
  connect(toolbar_, &QToolBar::iconSizeChanged, toolbar_, [this] { keepExtent(*toolbar_); });
  actions_ = addToolbarActions(*toolbar_);
  connectActions();
  vitalsBars_ = std::make_unique<terminal::VitalsBars>(*toolbar_);
}

void MainWidget::connectActions() {
  struct Row {
    ToolbarAction action;
    void (MainWidget::*slot)();
  };
  static constexpr std::array rows{
      Row{ToolbarAction::Connect, &MainWidget::connectToServer},
      Row{ToolbarAction::Disconnect, &MainWidget::disconnectFromServer},
      Row{ToolbarAction::SaveBuffer, &MainWidget::saveBuffer},
      Row{ToolbarAction::ExportSettings, &MainWidget::saveSettings},
      Row{ToolbarAction::ImportSettings, &MainWidget::loadSettings},
      Row{ToolbarAction::Configure, &MainWidget::configureSettings},
      Row{ToolbarAction::Proxy, &MainWidget::proxySettings},
      Row{ToolbarAction::Macros, &MainWidget::editMacros},
      Row{ToolbarAction::Aliases, &MainWidget::editAliases},
      Row{ToolbarAction::Triggers, &MainWidget::editTriggers},
      Row{ToolbarAction::Help, &MainWidget::showHelp},
  };
  static_assert(rows.size() == toolbarActionCount);
  for (const Row& row : rows)
    connect(actions_.at(static_cast<std::size_t>(row.action)), &QAction::triggered, this, row.slot);
}

void MainWidget::connectSocket() {
  const QTcpSocket* socket = &play_->link().socket();
  connect(socket, &QTcpSocket::errorOccurred, this, &MainWidget::displaySocketError);
  connect(socket, &QTcpSocket::readyRead, this, &MainWidget::readSocketData);
  connect(socket, &QTcpSocket::connected, this, &MainWidget::clientConnected);
  connect(socket, &QTcpSocket::disconnected, this, &MainWidget::clientDisconnected);
}
