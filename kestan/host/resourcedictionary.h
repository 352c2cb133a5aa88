#pragma once

#include "kestan/host/export.h"

#include <QString>

#include <map>
#include <utility>

namespace vorrel {

/// Names of resources by the name that a document uses and the object for which it does.
class KESTAN_EXPORT ResourceDictionary {
public:
  using Key = std::pair<QString, QString>;
  using Map = std::map<Key, QString>;

  bool IsEmpty() const { return entries_.empty(); }
  const Map& GetEntries() const { return entries_; }
  void Clear() { entries_.clear(); }
  /// A later value for the same key takes the place of the earlier one.
  void Insert(const QString& name, const QString& object, const QString& value);
  /// Null when there is no such entry.
  const QString* Find(const QString& name, const QString& object) const;
  /// Answers whether there was such an entry.
  bool Erase(const QString& name, const QString& object);

  /// What holds for one object: its own entries, and those for no object in particular, all under
  /// keys with a null second text.
  ResourceDictionary GetSimplifiedCopy(const QString& object) const;

  /// One line an entry, in the order of the keys: value, name and object with a tab between them;
  /// control characters and "%" are escaped as in URLs.
  QString ExportToString() const;

private:
  Map entries_;
};

} // namespace vorrel
