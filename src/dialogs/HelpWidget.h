#pragma once

#include <QDialog>

class QGridLayout;

/// The client's name, three links to outside help, and the licences of what
/// the client is made of. Not modal: the player can go on playing while it is open.
class HelpWidget : public QDialog {
  Q_OBJECT

 public:
  /// So many bytes of the licence file are read at most: many times the size of a
  /// real one, and still few enough to be shown without a wait.
  static constexpr qint64 largestLicenceText = qint64{1024} * 1024;

  /// Reads the licences from "licenses.txt" in the working directory, as Latin-1
  /// and up to the first byte of value 255. Without that file no licence is shown.
  /// A line of more than 4096 characters is shown as several.
  explicit HelpWidget(QWidget& parent);

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  // The only slot in the meta-object. Helpers are plain functions.
  void closeDialog();

 private:
  void addHead(QGridLayout& grid);
  void addLicences(QGridLayout& grid);
};
