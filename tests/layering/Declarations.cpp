#include "layering/Declarations.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

/// Reads code from its beginning to its end.
class Reader {
 public:
  explicit Reader(const QString& code) : code_(code) {}

  QList<Declaration> read() {
    while (at_ < code_.size())
      readCharacter(code_[at_++]);
    end();
    return declarations_;
  }

 private:
  void readCharacter(QChar character) {
    if (character == u'{') {
      static const QRegularExpression space(QStringLiteral("^(?:inline )?namespace ?(.*)$"));
      const QRegularExpressionMatch name = space.match(text_.simplified());
      if (name.hasMatch()) {
        spaces_ << (name.captured(1).isEmpty() ? QStringLiteral("(unnamed)") : name.captured(1));
        text_.clear();
      } else {
        readBody();
      }
    } else if (character == u'}') {
      end();
      spaces_.removeLast();
    } else if (character == u';') {
      end();
    } else {
      text_ += character;
    }
  }

  void readBody() {
    const qsizetype from = at_;
    for (int depth = 1; depth > 0 && at_ < code_.size(); ++at_)
      depth += code_[at_] == u'{' ? 1 : code_[at_] == u'}' ? -1 : 0;
    body_ = body_.value_or(QString()) + code_.sliced(from, at_ - from - 1);
    // What follows the body of a class or a value up to its ";" belongs to it. The
    // body of a function ends it.
    static const QRegularExpression function(QStringLiteral(R"(\)[^=]*$)"));
    if (function.match(text_.simplified()).hasMatch())
      end();
    else
      text_ += u' ';
  }

  void end() {
    if (!text_.simplified().isEmpty())
      declarations_ << Declaration{spaces_.join(QStringLiteral("::")), text_.simplified(), body_};
    text_.clear();
    body_.reset();
  }

  const QString& code_;
  qsizetype at_ = 0;
  QStringList spaces_;
  QString text_;
  std::optional<QString> body_;
  QList<Declaration> declarations_;
};

}  // namespace

bool Declaration::isForward() const {
  static const QRegularExpression forward(QStringLiteral(
      R"(^(template ?<.*> ?)?(class|struct|union|enum( class)?) [\w:]+( : [\w:]+)?$)"));
  return !body && forward.match(text).hasMatch();
}

QString Declaration::className() const {
  static const QRegularExpression definition(QStringLiteral(R"(^(?:class|struct) (\w+)\b)"));
  return !body ? QString() : definition.match(text).captured(1);
}

QList<Declaration> declarationsIn(const QString& code) {
  return Reader(code).read();
}
