#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/core/watcher.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <vector>

namespace tool {

/// One difference between a tree as it was and as it is.
struct Change {
  enum Kind { kSet, kCreated, kDeleted };

  Kind kind;
  QString object; ///< "#" and the id, or the way from the nearest object with one.
  QString type;   ///< Its class.
  QString field;  ///< The one that was set; null for an object that came or went.
  QString former;
  QString value;
};

/// Remembers a tree, and tells what has changed in it since. Takes no references, so that what is
/// deleted goes.
class Changes {
public:
  explicit Changes(const vorrel::kestan::SchemaObject& root);

  /// In the order of the former tree, and then what is new. Of what came or went with a larger part
  /// only that is told.
  std::vector<Change> Find(const vorrel::kestan::SchemaObject& root) const;

private:
  struct Record {
    std::unique_ptr<vorrel::kestan::Watcher<vorrel::kestan::SchemaObject>> object;
    std::ptrdiff_t parent; ///< Place of its record; -1 for the root.
    QString name;
    QString type;
    std::vector<std::pair<const vorrel::kestan::Field*, QString>> values;
  };

  std::vector<Record> records_;
};

} // namespace tool
