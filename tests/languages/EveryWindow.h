// All windows that the client shows, open at once, and the words on them.
#pragma once

#include <QDialog>
#include <QList>
#include <memory>

#include "app/MainWidget.h"
#include "app/Profile.h"
#include "support/FileText.h"
#include "support/OwnStore.h"

class OutputWidget;

/// The main window, with its pane divided and the bar to find words, and every dialog
/// that it can open, each with an entry to show.
class EveryWindow {
 public:
  EveryWindow();

  [[nodiscard]] MainWidget& main() const { return *window_; }
  [[nodiscard]] OutputWidget& pane() const;
  [[nodiscard]] QList<QDialog*> dialogs() const { return window_->findChildren<QDialog*>(); }
  /// The only dialog of that class.
  template <typename Dialog>
  [[nodiscard]] Dialog& dialog() const {
    return *window_->findChild<Dialog*>();
  }
  /// Adds an entry in each editor that is not taken, and deletes one. The boxes that
  /// follow: for a key, an information and a question, then twice two informations and
  /// a question.
  void makeMistakesInEditors() const;
  /// The settings store, as it stands in its file.
  [[nodiscard]] QByteArray storeText() const { return contentsOf(store_.place().iniFile); }
  [[nodiscard]] kelmora::app::Profile& profile() { return profile_; }

 private:
  OwnStore store_;
  kelmora::app::Profile profile_{store_.place()};
  std::unique_ptr<MainWidget> window_;
};

/// One text of a window, and where it stands.
struct ShownText {
  QString place;  ///< the class of the widget and its property: "QLabel.text"
  QString text;
};

/// The texts of the window, of all in it and of its actions, with those of other
/// windows left out. Empty ones are left out as well.
[[nodiscard]] QList<ShownText> textsOf(const QWidget& window);
