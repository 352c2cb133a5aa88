#pragma once

#include "kestan/host/export.h"
#include "kestan/host/memory.h"

#include <QString>

#include <utility>

namespace vorrel::kestan {

/// A table of named integers, or of named bits.
class KESTAN_EXPORT Enum {
public:
  using Table = mmvector<std::pair<int, QString>>;

  Enum(const Table& values, bool isBitmask) : isBitmask_(isBitmask), values_(values) {}

  /// Value of a name, by exact match. False, and `value` unchanged, for a name not in the table.
  bool GetSingleEnum(const QString& text, int& value) const;
  /// As above; for a bitmask the names are separated by white space, unknown ones are ignored,
  /// and the answer is always true.
  bool GetEnum(const QString& text, int& value) const;
  /// The name of a value, or an empty string. For a bitmask the names of all entries that `value`
  /// covers, joined by blanks.
  QString getString(int value) const;

private:
  bool isBitmask_;
  Table values_;
};

} // namespace vorrel::kestan
