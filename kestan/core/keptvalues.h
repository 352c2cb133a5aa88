#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/memory.h"
#include "kestan/host/refptr.h"

#include <QString>

#include <utility>

namespace vorrel::kestan {

/// A value or a child that a later one of the same document has displaced from its field.
struct KeptValue {
  RefPtr<SchemaObject> object; ///< In no field, and with its owner all the same; null for a value.
  QString text;                ///< The value as it would be written, without escapes.
  QString attrs;               ///< Attributes of the field's element, as ready XML.
};

/// What a document gave to one field beyond what the field holds.
struct KeptField {
  bool IsEmpty() const {
    return bare.empty() && displaced.empty() && text.isNull() && entries.empty();
  }

  const Field* field;
  mmvector<QString> bare; ///< Attributes of elements for a child that held none. Written first.
  mmvector<KeptValue> displaced; ///< In the order of the document.
  QString text; ///< Gave the field no value, and stands in its place; null when none did.
  /// Texts that gave no value to entries of an array, by index, and stand in their places.
  mmvector<std::pair<int, QString>> entries;
};

/// What documents gave to the fields of one object beyond what these hold.
///
/// Of several values for one field the last one counts. The others are written directly ahead of
/// it, so that it's the last one again when the output is read; it's written itself whatever it is,
/// since without it the one before it would count. All goes when the field is set anew.
class KeptValues final : public MemoryObject {
public:
  bool IsEmpty() const { return fields_.empty(); }
  const mmvector<KeptField>& GetFields() const { return fields_; }
  const KeptField* Find(const Field& field) const;
  /// The entry of the field, which is made when there's none.
  KeptField& Require(const Field& field);

  /// Takes out what is kept for the field, and for other spellings of its member.
  mmvector<KeptField> Take(const Field& field);
  /// Puts entries that were taken for `field` in front of those that came since.
  void PutBack(mmvector<KeptField>& fields, const Field& field);
  /// Takes out a displaced object; false when it isn't here.
  bool Remove(const SchemaObject& object);

private:
  mmvector<KeptField> fields_; ///< None that is empty.
};

/// Lives while a document gives a field a value or a child. When the document had given it one
/// before, that one is displaced; and what was kept for the field stays kept. The object outlives
/// it.
class Displacement {
public:
  /// `attrs` are those of the element around the former child.
  Displacement(SchemaObject& object, const Field& field, bool isFurther,
               const QString& attrs = QString());
  Displacement(const Displacement&) = delete;
  Displacement& operator=(const Displacement&) = delete;
  ~Displacement();

private:
  SchemaObject& object_;
  const Field& field_;
  mmvector<KeptField> kept_;
  RefPtr<SchemaObject> child_; ///< The former one.
};

} // namespace vorrel::kestan
