#pragma once

#include "kestan/host/memory.h"
#include "kestan/read/errorhandler.h"

#include <QHash>
#include <QString>

namespace vorrel::kestan {

/// The ids that a document has given so far, and its references to some of its own.
class ReferenceCheck {
public:
  void Clear();

  /// The line where the id was given before; 0 for a new one.
  qint64 AddId(const QString& id, qint64 line);
  /// `report` is to be made when no object has the id in the end.
  void AddReference(const QString& id, ParseReport report);

  /// The reports of references that lead nowhere.
  mmvector<ParseReport> TakeDangling();

private:
  struct Reference {
    QString id;
    ParseReport report;
  };

  QHash<QString, qint64> ids_; ///< The line of each.
  mmvector<Reference> references_;
};

} // namespace vorrel::kestan
