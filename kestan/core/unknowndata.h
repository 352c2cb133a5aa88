#pragma once

#include "kestan/host/export.h"
#include "kestan/host/memory.h"
#include "kestan/host/referent.h"
#include "kestan/host/refptr.h"

#include <QString>
#include <QVector>

#include <memory>
#include <utility>

namespace vorrel::kestan {

class Field;
class KeptValues;

/// Attributes as they stand in a start tag: names and values without escapes.
using AttributeList = mmvector<std::pair<QString, QString>>;

/// One namespace declaration that preserved content may need. Immutable; shared by all blocks
/// that were read in its scope.
class KESTAN_EXPORT UnknownNamespace final : public MemoryObject, public AtomicReferent {
public:
  UnknownNamespace(const QString& documentUrl, const QString& prefixText, const QString& uriText)
      : url(documentUrl), prefix(prefixText), uri(uriText) {}
  ~UnknownNamespace() override;

  const QString url;    ///< The document in which the declaration stood.
  const QString prefix; ///< Empty for a default namespace.
  const QString uri;
};

/// The declarations in scope at one place of a document. Copies share their storage, since a
/// document with much unknown content keeps the same list on many objects.
using NamespaceList = QVector<RefPtr<UnknownNamespace>>;

/// XML that no schema understands, kept so that it's written back. Objects create it on demand.
struct KESTAN_EXPORT UnknownData {
  UnknownData();
  /// A copy has no kept values, since the objects among them have one owner, and those of what it's
  /// assigned to stay.
  UnknownData(const UnknownData& other);
  UnknownData& operator=(const UnknownData& other);
  ~UnknownData();

  QString attrs;  ///< Ready XML: each item a blank, the name, `="`, the escaped value, `"`.
  QString fields; ///< Raw XML of the child elements.
  mmvector<std::pair<const Field*, QString>> fieldAttrs; ///< Per field, in the form of `attrs`.
  NamespaceList namespaces;         ///< Declarations that the texts above may need.
  std::unique_ptr<KeptValues> kept; ///< What fields were given beyond what they hold; mostly null.
};

namespace schemaobject_detail {

/// The attributes as ready XML text, values escaped; the null string for an empty list.
KESTAN_EXPORT QString GetAttrListString(const AttributeList& list);

} // namespace schemaobject_detail

} // namespace vorrel::kestan
