#pragma once

#include "kestan/core/enumfield.h"

namespace vorrel::kestan {

/// What the altitude of a coordinate is measured from.
enum AltitudeMode {
  kClampToGround = 0,
  kRelativeToGround = 1,
  kAbsolute = 2,
  kAbsoluteAboveGround = 3,
  kClampToSeaFloor = 4,
  kRelativeToSeaFloor = 5,
};

/// The names of the altitude modes; made on first use.
KESTAN_EXPORT Enum& GetAltitudeModeEnum();

/// One of the two elements for the altitude mode. A class declares both on one member: the KML
/// form and the extension form, which wins wherever it stands in the document.
class KESTAN_EXPORT AltitudeModeEnumField final : public EnumField {
public:
  AltitudeModeEnumField(Schema& schema, int defaultValue, unsigned offset, bool isExtension);

  bool IsExtension() const { return isExtension_; }

  FromStringResult fromString(SchemaObject& object, const AttributeList* attrs,
                              const NamespaceList* namespaces, const QString& text, int index,
                              Update* update) const override;
  /// The extension's element counts where it's given, whatever the plain one says.
  bool IsGiven(const SchemaObject& object) const override;
  bool SetGiven(SchemaObject& object, bool isGiven) const override;
  void WriteKml(const SchemaObject& object, WriteState& state) const override;
  void WriteKmlString(const SchemaObject& object, WriteState& state) const override;
  void GetForm(const SchemaObject& object, QString& text, QString& attrs) const override;

private:
  void KeepPlain(SchemaObject& object, int mode) const;

  bool isExtension_;
};

} // namespace vorrel::kestan
