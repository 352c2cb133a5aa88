#include "kestan/core/altitudemodeenumfield.h"

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
    return FromStringResult::kUnknownEnumeration;
  if (isExtension_) {
    object.SetBit(kBitAltitudeModeExt, true);
  } else if (object.GetBit(kBitAltitudeModeExt)) {
    if (attrs && !attrs->empty())
      object.SetUnknownFieldAttrs(*this, *attrs, namespaces);
    return FromStringResult::kOk;
  }
  return Store(object, mode, attrs, namespaces, update);
}

} // namespace vorrel::kestan
