#include "terminal/speech/Announcer.h"

#include <QWidget>

namespace kelmora::terminal {

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

Announcer::~Announcer() = default;

void Announcer::say(const QString& text) {
  QAccessibleAnnouncementEvent event(&widget_, text);
  QAccessible::updateAccessibility(&event);
}

#else

namespace {

/// A text in the form of a notification that has just appeared. Screen readers on
/// Linux speak those wherever the focus is. They ask for the text only afterwards,
/// so each text has an object of its own.
class Notice : public QAccessibleInterface {
 public:
  Notice(QWidget& widget, const QString& text) : widget_(widget), text_(text) {}

  [[nodiscard]] bool isValid() const override { return true; }
  [[nodiscard]] QObject* object() const override { return nullptr; }
  [[nodiscard]] QWindow* window() const override { return widget_.window()->windowHandle(); }
  [[nodiscard]] QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(&widget_);
  }
  [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override {
    return nullptr;
  }
  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
    return -1;
  }
  [[nodiscard]] QString text(QAccessible::Text which) const override {
    return which == QAccessible::Name ? text_ : QString();
  }
  void setText(QAccessible::Text /*which*/, const QString& /*text*/) override {}
  [[nodiscard]] QRect rect() const override { return {}; }
  [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Notification; }
  [[nodiscard]] QAccessible::State state() const override { return {}; }

 private:
  QWidget& widget_;
  QString text_;
};

}  // namespace

Announcer::~Announcer() {
  for (const QAccessible::Id notice : notices_)
    QAccessible::deleteAccessibleInterface(notice);
}

void Announcer::say(const QString& text) {
  auto* const notice = new Notice(widget_, text);  // owned by the toolkit's register
  notices_.push_back(QAccessible::registerAccessibleInterface(notice));
  if (notices_.size() > keptTexts) {
    QAccessible::deleteAccessibleInterface(notices_.front());
    notices_.pop_front();
  }
  QAccessibleEvent event(notice, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&event);
}

#endif

}  // namespace kelmora::terminal
