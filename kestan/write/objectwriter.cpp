// The writing half of SchemaObject: every object goes out by its field table.

#include "kestan/core/keptvalues.h"
#include "kestan/core/schema.h"
#include "kestan/core/schemaobject.h"
#include "kestan/write/writestate.h"

#include <QDir>

#include <algorithm>

namespace vorrel::kestan {

namespace {

/// The attribute that was declared last stands first.
void WriteAttributes(const SchemaObject& object, WriteState& state) {
  const mmvector<Field*>& attributes = object.GetSchema().GetAttributes();
  std::for_each(attributes.rbegin(), attributes.rend(),
                [&](const Field* field) { object.WriteField(*field, state); });
  object.WriteUnknownAttrs(state);
}

} // namespace

QString SchemaObject::WriteKmlFile(const QString& path, unsigned flags,
                                   QStringList* unreadableFiles, QStringList* outsideFiles) const {
  const QString hint = flags & kWriteNoHint ? QString() : ComposeHintString();
  // Written back to where it came from, the object's relative references hold as they are.
  const bool keepRelativeUrls = QDir(path) == QDir(baseUrl_);
  WriteState state(path, hint, keepRelativeUrls);
  const QString error = state.Write(*this, path, flags);
  if (unreadableFiles)
    *unreadableFiles = state.GetUnreadableFiles();
  if (outsideFiles)
    *outsideFiles = state.GetOutsideFiles();
  return error;
}

QString SchemaObject::WriteKmlString(QByteArray& bytes, unsigned flags) const {
  const QString hint = flags & kWriteNoHint ? QString() : ComposeHintString();
  WriteState state(bytes, hint);
  return state.Write(*this, QStringLiteral("KmlFile"), flags);
}

void SchemaObject::WriteStylesAndSchemas(WriteState& state, const QString&) const {
  WriteKml(state);
}

void SchemaObject::WriteKml(WriteState& state) const {
  const mmvector<Field*>& fields = schema_->GetSerializedFields();
  const bool inlineText = fields.empty() || (fields.size() == 1 && !fields.front()->IsArray());
  const int depth = state.indent();
  WriteKmlStartTag(state, inlineText);
  if (inlineText && !fields.empty()) {
    state.CheckDepth();
    state.SetIndent(0);
  }
  WriteKmlFields(state);
  WriteKmlEndTag(state, inlineText);
  state.SetIndent(depth);
}

void SchemaObject::WriteKmlStartTag(WriteState& state, bool inlineText) const {
  state.WriteTagStart(*schema_);
  WriteAttributes(*this, state);
  state.out(inlineText ? ">" : ">\n");
  state.SetIndent(state.indent() + 1);
}

void SchemaObject::WriteKmlEndTag(WriteState& state, bool inlineText) const {
  state.SetIndent(state.indent() - 1);
  if (!inlineText)
    state.WriteIndent();
  state.WriteTagEnd(*schema_);
}

void SchemaObject::WriteKmlFields(WriteState& state) const {
  for (const Field* const field : schema_->GetSerializedFields())
    WriteField(*field, state);
  WriteUnknownFields(state);
}

void SchemaObject::WriteKmlFieldsSpecified(WriteState& state, unsigned mask) const {
  WriteKmlStartTag(state, false);
  for (const Field* field : schema_->GetSerializedFields()) {
    if ((field->GetMaskBit() & mask) || KeepsElement(*field))
      WriteField(*field, state);
  }
  WriteUnknownFields(state);
  WriteKmlEndTag(state, false);
}

void SchemaObject::WriteField(const Field& field, WriteState& state) const {
  if (HasKeptValues())
    WriteKept(field, state);
  else
    field.WriteKml(*this, state);
}

void SchemaObject::WriteKept(const Field& field, WriteState& state) const {
  WriteDisplaced(field, state);
  const KeptField* const kept = GetKeptField(field);
  if (kept && !kept->text.isNull())
    field.WriteKept(*this, {nullptr, kept->text, GetUnknownFieldAttrs(field)}, state);
  else
    field.WriteKml(*this, state);
}

void SchemaObject::WriteDisplaced(const Field& field, WriteState& state) const {
  const KeptField* const kept = GetKeptField(field);
  if (!kept)
    return;
  for (const QString& attrs : kept->bare)
    field.WriteKept(*this, {nullptr, QString(), attrs}, state);
  for (const KeptValue& value : kept->displaced)
    field.WriteKept(*this, value, state);
}

void SchemaObject::WriteUnknownAttrs(WriteState& state) const {
  if (unknownData_)
    state.WriteUnknownAttrs(unknownData_->attrs, unknownData_->namespaces);
}

void SchemaObject::WriteUnknownFieldAttrs(WriteState& state, const Field& field) const {
  if (!GetBit(kBitUnknownFieldAttrs))
    return;
  const QString attrs = GetUnknownFieldAttrs(field);
  if (!attrs.isNull())
    state.WriteUnknownAttrs(attrs, unknownData_->namespaces, field.GetType() != Field::kObject);
}

void SchemaObject::WriteUnknownFields(WriteState& state) const {
  if (!unknownData_ || unknownData_->fields.isEmpty())
    return;
  state.WriteIndent();
  state.WriteUnknownElements(unknownData_->fields, unknownData_->namespaces);
  state.out("\n");
}

} // namespace vorrel::kestan
