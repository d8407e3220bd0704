// Reads what the code under test writes to its log.
#pragma once

#include <QLoggingCategory>
#include <QStringList>

/// Keeps what is written to one category of the log, which is switched on unless the
/// test is about the other case, until the end of the scope. Only one can be in use
/// at a time.
class LogLines {
 public:
  enum class Category { On, AsItIs };

  explicit LogLines(const char* category, Category state = Category::On) : category_(category) {
    if (state == Category::On)
      QLoggingCategory::setFilterRules(QLatin1String(category) + QStringLiteral("=true"));
    current_ = this;
    before_ = qInstallMessageHandler(&keep);
  }
  ~LogLines() {
    qInstallMessageHandler(before_);
    current_ = nullptr;
    QLoggingCategory::setFilterRules(QString());
  }
  Q_DISABLE_COPY_MOVE(LogLines)

  [[nodiscard]] const QStringList& lines() const { return lines_; }
  [[nodiscard]] QString text() const { return lines_.join(u'\n'); }

 private:
  static void keep(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (qstrcmp(context.category, current_->category_) == 0)
      current_->lines_ << message;
    else if (current_->before_)
      current_->before_(type, context, message);
  }

  static inline LogLines* current_ = nullptr;

  const char* category_;
  QtMessageHandler before_ = nullptr;
  QStringList lines_;
};
