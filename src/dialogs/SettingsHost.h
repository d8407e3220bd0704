#pragma once

class QFont;
class QSize;

namespace kelmora::dialogs {

/// What the settings dialogs need of the window whose options they edit.
class SettingsHost {
 public:
  virtual ~SettingsHost() = default;

  /// New connections go through the proxy of the settings, or are direct ones if
  /// the settings say that none is to be used.
  virtual void installProxy() = 0;
  /// The sixteen colours changed: the next output starts with the new ones.
  virtual void buildColourSpans() = 0;
  virtual void setOutputFont(const QFont& font) = 0;
  virtual void setInputFont(const QFont& font) = 0;
  /// Pixels, as entered: each length is from 0 to 99.
  virtual void setToolbarIconSize(QSize size) = 0;
  /// Writes every option to the user's store.
  virtual void storeSettings() = 0;
};

}  // namespace kelmora::dialogs
