#include "kestan/host/resourcedictionary.h"

#include "kestan/host/hexencode.h"

namespace vorrel {

namespace {

QString Escaped(const QString& text) {
  QString escaped;
  for (const QChar c : text) {
    if (c.unicode() < 0x20 || c == QLatin1Char('%'))
      escaped += QString::fromLatin1(HexEncode(static_cast<unsigned char>(c.unicode())).data(), 3);
    else
      escaped += c;
  }
  return escaped;
}

} // namespace

void ResourceDictionary::Insert(const QString& name, const QString& object, const QString& value) {
  entries_[Key(name, object)] = value;
}

const QString* ResourceDictionary::Find(const QString& name, const QString& object) const {
  const auto found = entries_.find(Key(name, object));
  return found != entries_.end() ? &found->second : nullptr;
}

bool ResourceDictionary::Erase(const QString& name, const QString& object) {
  return entries_.erase(Key(name, object)) != 0;
}

ResourceDictionary ResourceDictionary::GetSimplifiedCopy(const QString& object) const {
  ResourceDictionary copy;
  for (const auto& [key, value] : entries_) {
    if (key.second.isEmpty())
      copy.entries_.emplace(Key(key.first, QString()), value);
    else if (key.second == object)
      copy.Insert(key.first, QString(), value);
  }
  return copy;
}

QString ResourceDictionary::ExportToString() const {
  QString text;
  for (const auto& [key, value] : entries_)
    text += Escaped(value) + QLatin1Char('\t') + Escaped(key.first) + QLatin1Char('\t') +
            Escaped(key.second) + QLatin1Char('\n');
  return text;
}

} // namespace vorrel
