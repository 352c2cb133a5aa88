#pragma once

#include "kestan/host/export.h"
#include "kestan/host/hashmap.h"

#include <QString>

namespace vorrel::kestan {

/// Names one object: its id, and the URL of the document that the id lives in.
struct KESTAN_EXPORT KmlId {
  QString id;
  QString url;

  KmlId() = default;
  KmlId(const QString& idText, const QString& documentUrl) : id(idText), url(documentUrl) {}
  /// Splits a URL at its first "#": document in front of it, id behind it.
  explicit KmlId(const QString& text);

  bool operator==(const KmlId& other) const { return url == other.url && id == other.id; }
  bool operator!=(const KmlId& other) const { return !(*this == other); }
};

} // namespace vorrel::kestan

namespace vorrel {

/// Zero for an empty id, whatever the URL: such objects are in no hash.
template <> struct KESTAN_EXPORT hash<kestan::KmlId> {
  std::uint32_t operator()(const kestan::KmlId& key) const;
};

} // namespace vorrel
