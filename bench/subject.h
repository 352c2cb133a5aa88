#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/refptr.h"

#include <QByteArray>

#include <string>

namespace bench {

/// The library, started for the life of this object, and the operations that are measured.
class Subject {
public:
  Subject();
  ~Subject();
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  using Tree = vorrel::RefPtr<vorrel::kestan::SchemaObject>;

  /// Reads a document into the full tree. Ends the program when it's refused.
  Tree Read(const std::string& text) const;
  /// The document's KML. Ends the program when it can't be written.
  QByteArray Write(const Tree& tree) const;
  Tree Clone(const Tree& tree) const;
  /// Number of objects from `tree` down.
  std::size_t Count(const Tree& tree) const;
};

} // namespace bench
