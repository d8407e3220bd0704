#pragma once

#include <QTimer>

#include "SoakServer.h"
#include "app/PlayWindow.h"

using namespace kelmora;
using namespace kelmora::app;

/// A player who never rests: types, runs scripts, opens one dialog after the
/// other and uses it, and loses the connection now and then.
class SoakPlayer : public QObject {
 public:
  /// Ticks between two dialogs; before each of them the window is calm.
  static constexpr qint64 dialogPeriod = 80;

  /// Writes the automation files of the session; to be called before there is
  /// a window.
  static void writeAutomation();

  SoakPlayer(PlayWindow& play, SoakServer& server);

  /// One step; a twentieth of a second at the pace of real play.
  void tick();
  /// No dialog is open, nor is one about to be answered.
  [[nodiscard]] static bool isCalm();
  /// How often something that had to happen did not.
  [[nodiscard]] int failures() const { return failures_; }

 private:
  void typeSomething();
  void openDialog();
  void useDialog();
  void closeDialog();
  void changeConnection();
  void answerModal();
  void expect(bool fulfilled, const char* what);

  PlayWindow& play_;
  SoakServer& server_;
  QTimer answers_;
  qint64 tick_ = 0;
  qint64 typed_ = 0;
  qint64 dialogs_ = 0;
  qint64 endings_ = 0;
  qint64 receivedBefore_ = 0;
  int failures_ = 0;
};
