#pragma once

#include <QHash>
#include <QList>
#include <QStringList>
#include <type_traits>
#include <utility>

namespace kelmora::automation {

/// A list of entries that finds the first entry with a key by an index, without a
/// walk along the list. Several entries may have the same key. `Key` is the member
/// of an entry that holds its key.
///
/// Positions are those in `entries()`. An operation on a position outside the table
/// does nothing.
template <typename Entry, auto Key>
class KeyedTable {
 public:
  using KeyType = std::remove_cvref_t<decltype(std::declval<Entry>().*Key)>;

  [[nodiscard]] const QList<Entry>& entries() const { return entries_; }
  [[nodiscard]] qsizetype size() const { return entries_.size(); }

  /// The commands of the first entry with that key; null where there is none. The
  /// pointer is valid until the table changes. Commands can change it, so whoever
  /// runs them takes a copy first.
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

  void setCommands(qsizetype position, const QStringList& commands) {
    if (contains(position))
      entries_[position].commands = commands;
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
  QHash<KeyType, qsizetype> first_;  // the position of the first entry with a key
};

}  // namespace kelmora::automation
