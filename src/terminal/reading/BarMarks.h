#pragma once

#include <QWidget>
#include <vector>

class QScrollBar;

namespace kelmora::terminal {

/// Marks over the groove of a vertical scroll bar, which stays usable under them.
class BarMarks : public QWidget {
  Q_OBJECT

 public:
  /// A child of the bar.
  explicit BarMarks(QScrollBar& bar);

  /// Where the marks are, each as a share of the document's height from 0 to 1.
  void setPlaces(std::vector<double> places);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QRect groove() const;

  QScrollBar& bar_;
  std::vector<double> places_;
};

}  // namespace kelmora::terminal
