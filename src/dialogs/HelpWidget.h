#pragma once

#include <QDialog>

class QGridLayout;

/// The client's name, three links to outside help, and the licences of what
/// the client is made of. Not modal: the player can go on playing while it is open.
class HelpWidget : public QDialog {
  Q_OBJECT

 public:
  /// A licence file is read up to here, in bytes: many times the size of a
  /// real one, and still shown at once.
  static constexpr qint64 largestLicenceText = qint64{1024} * 1024;

  /// Reads "licenses.txt" in the working directory, as Latin-1 up to the first
  /// byte 255; without the file the box of licences stays empty. A line of
  /// more than 4096 characters is shown in several.
  explicit HelpWidget(QWidget& parent);

 public Q_SLOTS:  // NOLINT(readability-redundant-access-specifiers)
  // The meta-object's only slot.
  void closeDialog();

 private:
  void addHead(QGridLayout& grid);
  void addLicences(QGridLayout& grid);
};
