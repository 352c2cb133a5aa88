#include "kestan/core/altitudemodeenumfield.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/enum.h"
#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

Enum& GetAltitudeModeEnum() {
  static Enum modes({{kClampToGround, QStringLiteral("clampToGround")},
                     {kRelativeToGround, QStringLiteral("relativeToGround")},
                     {kAbsolute, QStringLiteral("absolute")},
                     {kAbsoluteAboveGround, QStringLiteral("absoluteAboveGround")},
                     {kClampToSeaFloor, QStringLiteral("clampToSeaFloor")},
                     {kRelativeToSeaFloor, QStringLiteral("relativeToSeaFloor")}},
                    false);
  return modes;
}

AltitudeModeEnumField::AltitudeModeEnumField(Schema& schema, int defaultValue, unsigned offset,
                                             bool isExtension)
    : EnumField(schema, QStringLiteral("altitudeMode"), GetAltitudeModeEnum(), defaultValue, offset,
                kElement, isExtension ? kExtNamespace : kKmlNamespace),
      isExtension_(isExtension) {}

FromStringResult AltitudeModeEnumField::fromString(SchemaObject& object, const AttributeList* attrs,
                                                   const NamespaceList* namespaces,
                                                   const QString& text, int, Update* update) const {
  int mode = 0;
  if (!GetEnum().GetEnum(text, mode))
    return KeepUnknownName(object, attrs, namespaces, text, update);
  const DeletionDeferrer deferrer;
  const bool hadExtension = object.GetBit(kBitAltitudeModeExt);
  if (update) {
    if (!isExtension_ && hadExtension)
      return FromStringResult::kOk;
    return Store(object, mode, attrs, namespaces, update);
  }
  if (!isExtension_ && hadExtension) {
    KeepPlain(object, mode);
    if (attrs)
      object.SetUnknownFieldAttrs(*this, *attrs, namespaces);
    return FromStringResult::kOk;
  }
  const int former = get(object);
  if (isExtension_)
    object.SetBit(kBitAltitudeModeExt, true);
  Store(object, mode, attrs, namespaces, update);
  if (isExtension_ && !hadExtension)
    KeepPlain(object, former);
  return FromStringResult::kOk;
}

bool AltitudeModeEnumField::IsGiven(const SchemaObject& object) const {
  return !isExtension_ || object.GetBit(kBitAltitudeModeExt);
}

bool AltitudeModeEnumField::SetGiven(SchemaObject& object, bool isGiven) const {
  if (!isExtension_)
    return !object.GetBit(kBitAltitudeModeExt);
  object.SetBit(kBitAltitudeModeExt, isGiven);
  return true;
}

void AltitudeModeEnumField::GetForm(const SchemaObject& object, QString& text, QString&) const {
  // Beside the extension's, the plain element has said the default: all else is kept as text.
  const bool isBeside = !isExtension_ && object.GetBit(kBitAltitudeModeExt);
  text = GetEnum().getString(isBeside ? GetDefault() : get(object));
}

/// Keeps what the plain element says while the extension's counts. The default says nothing.
void AltitudeModeEnumField::KeepPlain(SchemaObject& object, int mode) const {
  if (mode == GetDefault())
    return;
  if (const Field* const plain = object.FindField(GetName(), Namespace::kKml, nullptr))
    object.KeepText(*plain, GetEnum().getString(mode));
}

} // namespace vorrel::kestan
