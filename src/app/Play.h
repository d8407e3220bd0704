#pragma once

#include <QCoreApplication>

#include "automation/core/LinePattern.h"
#include "automation/core/RecentLines.h"
#include "automation/core/TriggerTable.h"
#include "net/GameLink.h"
#include "net/LinkHost.h"
#include "script/AliasLookup.h"
#include "script/Interpreter.h"
#include "script/ScriptHost.h"
#include "terminal/core/OutputPipeline.h"

class OutputWidget;
class QObject;

namespace kelmora::app {

class Beeper;
struct Profile;

/// What play needs of the window, beside its pane.
class PlayHost {
 public:
  PlayHost() = default;
  Q_DISABLE_COPY_MOVE(PlayHost)

  /// One line of the server, up to its first NUL byte: if it is a prompt, the bars
  /// show it.
  virtual void parseVitals(const char* line) = 0;
  virtual void setActionEnabled(net::ConnectionAction action, bool enabled) = 0;
  virtual void focusInputBar() = 0;

 protected:
  ~PlayHost() = default;
};

/// The game in play. It owns the link to the server, the pipeline and the
/// interpreter, and joins them: what the server sends goes through the pipeline to
/// the pane, the bars and the triggers, and what scripts do goes to the server and
/// to the pane.
class Play final : private terminal::PipelineHost,
                   private net::LinkHost,
                   private script::ScriptHost,
                   private script::AliasLookup,
                   private automation::TriggerHost {
  Q_DECLARE_TR_FUNCTIONS(Play)

 public:
  /// The options have to be read already; the colours are still to be taken. Socket, timers and
  /// sound become children of the window. All four outlive this object.
  Play(Profile& profile, PlayHost& host, OutputWidget& pane, QObject& window);
  ~Play() override;

  [[nodiscard]] net::GameLink& link() { return link_; }
  [[nodiscard]] script::Interpreter& interpreter() { return interpreter_; }
  /// Local echo as it was at the start: an option that is switched on during play
  /// takes effect at the next start.
  [[nodiscard]] bool echoEnabled() const { return echoEnabled_; }

  /// A trigger's pattern for the line of the server that is at a place in a line of
  /// the pane; empty where there is none.
  [[nodiscard]] QString patternFor(const QString& shown, qsizetype place) const {
    return automation::patternFor(recentLines_.shownAt(shown, place));
  }

  /// Takes the sixteen colours of the options; the next text of the server begins in
  /// the reset colours.
  void takeColours();
  /// The next colour code of the server means a normal colour.
  void clearBold() { pipeline_.translator().clearBold(); }

 private:
  [[nodiscard]] const QByteArray& statusSpan() const;

  // PipelineHost
  void beep() override;
  void showServerText(terminal::ServerText text) override;
  void parseVitals(const char* line) override;
  void checkTriggers(const QByteArray& line) override;
  // LinkHost
  void takeServerBytes(const QByteArray& bytes) override;
  [[nodiscard]] qsizetype statusLineRoom() const override;
  void appendStatusLine(const QString& html) override;
  void moveCursorToEnd() override;
  void setActionEnabled(net::ConnectionAction action, bool enabled) override;
  void focusInputBar() override;
  // ScriptHost
  void sendLine(const QString& line) override;
  void printError(const QString& text) override;
  void printInfo(const QString& text) override;
  void printText(const QString& text, const QString& colourName) override;
  QObject& timerParent() override;
  // AliasLookup
  [[nodiscard]] const QStringList* commandsOf(const QString& name) const override;
  // TriggerHost
  void setVariable(const QString& name, const QString& value) override;
  void runActions(const QStringList& commands) override;

  Profile& profile_;
  PlayHost& host_;
  OutputWidget& pane_;
  QObject& window_;
  const bool echoEnabled_;
  automation::RecentLines recentLines_;
  terminal::OutputPipeline pipeline_;
  script::Interpreter interpreter_;
  net::GameLink link_;
  std::unique_ptr<Beeper> beeper_;
};

}  // namespace kelmora::app
