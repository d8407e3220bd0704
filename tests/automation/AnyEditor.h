#pragma once

#include <functional>
#include <memory>

#include "EditorControls.h"
#include "automation/core/KeyNames.h"
#include "automation/editors/AliasWidget.h"
#include "automation/editors/MacroWidget.h"
#include "automation/editors/TriggerWidget.h"
#include "support/FileText.h"
#include "support/OwnFolder.h"

/// An entry of any of the three tables.
struct AnyEntry {
  QString label;
  QStringList commands;

  friend bool operator==(const AnyEntry&, const AnyEntry&) = default;
};

/// The words by which one editor differs from the others.
struct EditorWords {
  QString one;        ///< as on its buttons: "alias"
  QString many;       ///< as in its title, its icon and its file: "aliases"
  QString labelName;  ///< of its label field; empty where it has none
  QString labelWord;  ///< as its messages call a label
  QString placeholder;
  QString placeholderTaken;

  static QString capital(const QString& word) { return word.first(1).toUpper() + word.sliced(1); }

  [[nodiscard]] QString slot(const QString& verb) const { return verb + capital(one) + "()"; }
  [[nodiscard]] QString title(const QString& verb) const { return verb + u' ' + capital(one); }
  [[nodiscard]] QString file() const { return many + ".txt"; }
};

/// One of the three editors with its table, for rules that hold for more than one
/// of them. The labels of macros are single characters or names of keys.
class AnyEditor {
 public:
  static std::unique_ptr<AnyEditor> make(const QString& one);

  virtual ~AnyEditor() = default;

  [[nodiscard]] const EditorWords& words() const { return words_; }
  [[nodiscard]] virtual kelmora::automation::EditorWidget& dialog() = 0;
  [[nodiscard]] virtual QList<AnyEntry> entries() const = 0;
  virtual void append(const AnyEntry& entry) = 0;
  virtual void removeAt(qsizetype position) = 0;
  virtual void clear() = 0;

  /// Shows the editor of a table with these entries behind those that are there.
  void open(const QList<AnyEntry>& entries) {
    for (const AnyEntry& entry : entries)
      append(entry);
    dialog().showEditor();
    QVERIFY(QTest::qWaitForWindowActive(&dialog()));
  }

  /// What the file must hold after the entries were saved.
  [[nodiscard]] QByteArray fileText() const {
    if (words_.one == QLatin1String("macro"))
      return "";  // macros are never written
    QString text;
    for (const AnyEntry& entry : entries()) {
      text += QStringLiteral("\n%1 \"%2\"\n").arg(words_.one, entry.label);
      for (const QString& command : entry.commands)
        text += command + u'\n';
      text += QStringLiteral("/%1\n").arg(words_.one);
    }
    return text.toLatin1();
  }

 protected:
  explicit AnyEditor(EditorWords words) : words_(std::move(words)) {}

 private:
  EditorWords words_;
};

/// One editor with its table. The two functions turn an entry of this table into its
/// label, and AnyEntry into an entry of this table.
template <typename Widget, typename Table, typename Entry>
class EditorOf : public AnyEditor {
 public:
  EditorOf(EditorWords words, std::function<QString(const Entry&)> labelOf,
           std::function<Entry(const AnyEntry&)> entryOf)
      : AnyEditor(std::move(words)), labelOf_(std::move(labelOf)), entryOf_(std::move(entryOf)) {}

  kelmora::automation::EditorWidget& dialog() override { return widget_; }
  QList<AnyEntry> entries() const override {
    QList<AnyEntry> all;
    for (const Entry& entry : table_.entries())
      all << AnyEntry{labelOf_(entry), entry.commands};
    return all;
  }
  void append(const AnyEntry& entry) override { table_.append(entryOf_(entry)); }
  void removeAt(qsizetype position) override { table_.removeAt(position); }
  void clear() override { table_ = Table(); }

 private:
  std::function<QString(const Entry&)> labelOf_;
  std::function<Entry(const AnyEntry&)> entryOf_;
  Table table_;
  kelmora::automation::AutomationFiles files_;
  Widget widget_{table_, files_, nullptr};
};

inline std::unique_ptr<AnyEditor> AnyEditor::make(const QString& one) {
  using namespace kelmora::automation;
  if (one == QLatin1String("alias"))
    return std::make_unique<EditorOf<AliasWidget, AliasTable, AliasEntry>>(
        EditorWords{"alias", "aliases", "Alias", "alias name", "<Enter your alias here>",
                    "An alias already exists with that name."},
        [](const AliasEntry& entry) { return entry.name; },
        [](const AnyEntry& entry) {
          return AliasEntry{entry.label, entry.commands};
        });
  if (one == QLatin1String("trigger"))
    return std::make_unique<EditorOf<TriggerWidget, TriggerTable, TriggerEntry>>(
        EditorWords{"trigger", "triggers", "Pattern", "trigger pattern",
                    "<Enter your trigger pattern here>",
                    "A trigger has already been bound to that pattern."},
        [](const TriggerEntry& entry) { return entry.pattern; },
        [](const AnyEntry& entry) {
          return TriggerEntry{entry.label, entry.commands};
        });
  return std::make_unique<EditorOf<MacroWidget, MacroTable, MacroEntry>>(
      EditorWords{"macro", "macros", {}, {}, {}, {}},
      [](const MacroEntry& entry) { return keyCodeToName(entry.key); },
      [](const AnyEntry& entry) {
        const int key =
            entry.label.size() == 1 ? entry.label.at(0).unicode() : keyNameToCode(entry.label);
        return MacroEntry{key, entry.commands};
      });
}

/// Runs each test function once for each editor that initTestCase_data() names.
class EditorTest : public QObject {
 protected:
  /// What the editor's file holds until the editor writes it.
  static inline const QByteArray untouched = "untouched";

  // The controls that are enabled in each state, by the words of EditorControls.
  static inline const QString browsing = "edit list add delete close";
  static inline const QString browsingNothing = "list add delete close";
  [[nodiscard]] QString editing() {
    return controls_->label ? "commands label save cancel close" : "commands save cancel close";
  }

  static void addEditors(const QStringList& editors) {
    QTest::addColumn<QString>("editor");
    for (const QString& editor : editors)
      QTest::newRow(qPrintable(editor)) << editor;
  }

  void makeEditor() {
    QFETCH_GLOBAL(const QString, editor);
    folder_ = std::make_unique<OwnFolder>();
    QVERIFY(folder_->isValid());
    editor_ = AnyEditor::make(editor);
    QVERIFY(put(file(), untouched));
    controls_ = std::make_unique<EditorControls>(editor_->dialog(), editor);
    QVERIFY(controls_->complete());
  }
  void dropEditor() {
    controls_.reset();
    editor_.reset();
    folder_.reset();
  }

  [[nodiscard]] AnyEditor& editor() { return *editor_; }
  [[nodiscard]] const EditorWords& words() { return editor_->words(); }
  [[nodiscard]] EditorControls& controls() { return *controls_; }
  /// True also for the editor without a label field.
  [[nodiscard]] bool showsLabel(const QString& label) {
    return !controls_->label || controls_->label->text() == label;
  }
  [[nodiscard]] QString file() const { return editor_->words().file(); }
  [[nodiscard]] QByteArray fileBytes() const { return contentsOf(file()); }

 private:
  std::unique_ptr<OwnFolder> folder_;
  std::unique_ptr<AnyEditor> editor_;
  std::unique_ptr<EditorControls> controls_;
};
