#pragma once

#include <QHash>
#include <QList>
#include <QStringList>
#include <type_traits>
#include <utility>

namespace kelmora::automation {

/// An ordered list of entries, duplicates and all, that finds the first entry
/// of a key without walking the list. `Key` is the entry's member looked for.
///
/// Positions are those of `entries()`; an operation on a position outside the
/// table does nothing.
template <typename Entry, auto Key>
class KeyedTable {
 public:
  using KeyType = std::remove_cvref_t<decltype(std::declval<Entry>().*Key)>;

  [[nodiscard]] const QList<Entry>& entries() const { return entries_; }
  [[nodiscard]] bool isEmpty() const { return entries_.isEmpty(); }
  [[nodiscard]] qsizetype size() const { return entries_.size(); }

  /// The commands of the first entry with that key; null when there is none.
  /// They belong to the table and are good until it changes: whoever runs them
  /// keeps a copy of the list.
  [[nodiscard]] const QStringList* commandsOf(const KeyType& key) const {
    const auto first = first_.constFind(key);
    return first == first_.cend() ? nullptr : &entries_.at(*first).commands;
  }

  void append(Entry entry) {
    index(entry, entries_.size());
    entries_.append(std::move(entry));
  }

  void removeAt(qsizetype position) {
    if (!contains(position))
      return;
    entries_.removeAt(position);
    reindex();
  }

  void setCommands(qsizetype position, QStringList commands) {
    if (contains(position))
      entries_[position].commands = std::move(commands);
  }

  void clear() {
    entries_.clear();
    first_.clear();
  }

 protected:
  KeyedTable() = default;

  void setKey(qsizetype position, KeyType key) {
    if (!contains(position))
      return;
    entries_[position].*Key = std::move(key);
    reindex();
  }

 private:
  [[nodiscard]] bool contains(qsizetype position) const {
    return position >= 0 && position < entries_.size();
  }

  void index(const Entry& entry, qsizetype position) {
    if (!first_.contains(entry.*Key))
      first_.insert(entry.*Key, position);
  }

  void reindex() {
    first_.clear();
    for (qsizetype position = 0; position < entries_.size(); ++position)
      index(entries_.at(position), position);
  }

  QList<Entry> entries_;
  QHash<KeyType, qsizetype> first_;
};

}  // namespace kelmora::automation
