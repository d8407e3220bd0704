#pragma once

#include <QPalette>
#include <QSet>
#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>

#include "app/MainWidget.h"
#include "app/Profile.h"
#include "demo/DemoServer.h"

class InputWidget;
class QDialog;

namespace kelmora::tools {

/// A window on a demo world of its own, both in a state that is the same each time,
/// and a folder for pictures of them.
class Studio {
 public:
  /// The pictures tell the port. Where it is taken, a free one takes its place.
  Studio(const QString& folder, quint16 port);

  /// False once anything did not go as it should; the console has been told.
  [[nodiscard]] bool isSound() const { return sound_; }
  [[nodiscard]] const QSet<QString>& kept() const { return kept_; }

  [[nodiscard]] MainWidget& window() { return *window_; }
  [[nodiscard]] QString text() const;
  [[nodiscard]] InputWidget& bar();

  /// Connects and waits until the world asks for a name.
  void enter();
  /// Sends a line and waits for these words behind what the pane holds now.
  void say(const QString& line, const QString& answer);
  void awaitWords(const QString& answer, qsizetype from);
  /// Starts the client a second time and ends it at once.
  void startAnother();
  /// Does something that opens a dialog of this title, in English whatever language it
  /// speaks, and hands the dialog on.
  void withDialog(const QString& title, const std::function<void()>& open,
                  const std::function<void(QDialog&)>& act);
  /// Keeps a picture of the widget, and of a menu that is open over it.
  void keep(const QString& name, QWidget& widget, QWidget* menu = nullptr);
  void fail(const QString& what);

 private:
  QString folder_;
  QTemporaryDir own_;
  kelmora::demo::DemoServer world_;
  std::unique_ptr<kelmora::app::Profile> profile_;
  std::unique_ptr<MainWidget> window_;
  QSet<QString> kept_;
  bool sound_ = true;
};

/// The desktops that pictures may be made on.
[[nodiscard]] QPalette desktopPalette(bool dark);

}  // namespace kelmora::tools
