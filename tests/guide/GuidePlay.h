#pragma once

#include <memory>

#include "Wire.h"
#include "app/PlayWindow.h"
#include "demo/DemoServer.h"
#include "support/OwnFolder.h"
#include "tools/GuidePage.h"

using namespace kelmora::tools;

/// Plays the steps of a page in a real window on a demo world, by the same keys and
/// clicks as its reader.
class GuidePlay {
 public:
  GuidePlay();

  [[nodiscard]] bool isReady() const { return folder_.isValid() && window_ != nullptr; }
  /// Connects and gives a name.
  void enterAs(const QString& name);
  /// Fails the test where a step cannot be done, or shows something else.
  void play(const QList<GuideStep>& steps);

  [[nodiscard]] PlayWindow& window() { return *window_; }

 private:
  void playStep(const GuideStep& step);
  void act(const GuideStep& step);
  void type(const GuideStep& step);
  void restart(const QString& box);
  void see(const GuideStep& step);
  void doNotSee(const GuideStep& step);
  void find(const GuideStep& step) const;
  void seeGrey(const QString& key, bool grey) const;
  void seeDivided(bool divided) const;
  /// What the pane has shown since the step behind the last look at it.
  [[nodiscard]] QString shown() const { return window_->text().mid(mark_); }

  OwnFolder folder_;
  kelmora::demo::DemoServer server_;
  std::unique_ptr<Wire> wire_;
  SilentHost silentHost_;
  std::unique_ptr<PlayWindow> window_;
  qsizetype mark_ = 0;
  bool looked_ = true;
  QStringList typed_;  ///< since then
  QString cut_;        ///< where the network will cut
};
