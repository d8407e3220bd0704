#pragma once

#include <QString>

#include "script/RunBudget.h"
#include "script/ScriptHost.h"

namespace kelmora::script {

/// Passes everything on to the real host, and charges each line to the run's
/// budget: for sending it, and for showing it in the pane later.
class MeteredHost : public ScriptHost {
 public:
  MeteredHost(ScriptHost& host, RunBudget& budget) : host_(host), budget_(budget) {}
  Q_DISABLE_COPY_MOVE(MeteredHost)

  void sendLine(const QString& line) override {
    budget_.spendLine(line.size());
    host_.sendLine(line);
  }
  void printError(const QString& text) override {
    budget_.spendLine(text.size());
    host_.printError(text);
  }
  void printInfo(const QString& text) override {
    budget_.spendLine(text.size());
    host_.printInfo(text);
  }
  void printText(const QString& text, const QString& colourName) override {
    budget_.spendLine(text.size());
    host_.printText(text, colourName);
  }
  [[nodiscard]] QObject& timerParent() override { return host_.timerParent(); }

 private:
  ScriptHost& host_;
  RunBudget& budget_;
};

}  // namespace kelmora::script
