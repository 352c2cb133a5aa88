#include "kestan/core/enum.h"

#include <QStringList>

namespace vorrel::kestan {

bool Enum::GetSingleEnum(const QString& text, int& value) const {
  for (const auto& entry : values_) {
    if (entry.second == text) {
      value = entry.first;
      return true;
    }
  }
  return false;
}

bool Enum::GetEnum(const QString& text, int& value) const {
  if (!isBitmask_)
    return GetSingleEnum(text, value);
  value = 0;
  const QStringList names = text.simplified().split(QLatin1Char(' '));
  for (const QString& name : names) {
    int bit = 0;
    if (GetSingleEnum(name, bit))
      value |= bit;
  }
  return true;
}

QString Enum::getString(int value) const {
  QStringList names;
  for (const auto& entry : values_) {
    if (isBitmask_ ? (entry.first & value) == entry.first : entry.first == value) {
      if (!isBitmask_)
        return entry.second;
      names.append(entry.second);
    }
  }
  return names.join(QLatin1Char(' '));
}

} // namespace vorrel::kestan
