// An object of the client as a screen reader sees it, over the accessibility bus.
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QList>
#include <QString>
#include <QVariant>
#include <optional>

/// An object is known by the connection of its program and by its path.
class Accessible {
 public:
  Accessible() = default;
  Accessible(QString program, QString path)
      : program_(std::move(program)), path_(std::move(path)) {}

  [[nodiscard]] QString program() const { return program_; }
  [[nodiscard]] QString path() const { return path_; }
  [[nodiscard]] bool isNull() const { return program_.isEmpty(); }

  [[nodiscard]] QString name() const;
  [[nodiscard]] QString role() const;
  /// Whether what is typed into it is hidden. The name of its role does not say it.
  [[nodiscard]] bool isPassword() const;
  [[nodiscard]] bool is(int state) const;
  [[nodiscard]] QList<Accessible> children() const;
  /// This and all below it, in the order in which a reader meets them.
  [[nodiscard]] QList<Accessible> all() const;
  [[nodiscard]] std::optional<Accessible> find(const QString& role, const QString& name) const;
  /// The names of those that label it.
  [[nodiscard]] QStringList labels() const;

  /// The only argument of the answer; invalid if there was none.
  QVariant call(const char* interface, const char* method,
                const QVariantList& arguments = {}) const;
  QVariantList callForAll(const char* interface, const char* method,
                          const QVariantList& arguments = {}) const;
  [[nodiscard]] QVariant property(const char* interface, const char* name) const;
  /// Does what a click on it does, and does not wait for what comes of it.
  void press() const;

  friend QDBusArgument& operator<<(QDBusArgument& argument, const Accessible& object);
  friend const QDBusArgument& operator>>(const QDBusArgument& argument, Accessible& object);

 private:
  QString program_;
  QString path_;
};
Q_DECLARE_METATYPE(Accessible)

/// Numbers of states on the bus.
namespace state {
constexpr int checked = 4;
constexpr int focusable = 11;
constexpr int showing = 25;
constexpr int visible = 30;
}  // namespace state

/// The accessibility bus of this session. Null text and false where there is none.
[[nodiscard]] QDBusConnection accessibilityBus();
