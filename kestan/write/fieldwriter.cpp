// The writing half of the field classes that aren't templates.

#include "kestan/core/altitudemodeenumfield.h"
#include "kestan/core/cdatafield.h"
#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/field.h"
#include "kestan/core/keptvalues.h"
#include "kestan/core/normllafield.h"
#include "kestan/core/normllalistfield.h"
#include "kestan/core/objarrayfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/objurlfield.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/screenvecfield.h"
#include "kestan/core/simplearrayfield.h"
#include "kestan/core/simplefield_impl.h"
#include "kestan/core/strfield.h"
#include "kestan/core/valuetext.h"
#include "kestan/host/convert.h"
#include "kestan/write/markuptext.h"
#include "kestan/write/outputurls.h"
#include "kestan/write/stylehoist.h"
#include "kestan/write/writestate.h"
#include "kestan/write/xmltext.h"

#include <algorithm>
#include <cstring>

namespace vorrel::kestan {

namespace {

/// " name=" and the opening quote.
void WriteAttributeStart(const Field& field, const SchemaObject& object, WriteState& state) {
  // The tag has the prefix of the extension, but none for KML itself.
  const bool needsPrefix = field.GetNamespace() != object.GetNamespace();
  const bool isKml = field.GetNamespace() == Namespace::kKml;
  const std::size_t dropped = needsPrefix || isKml ? 0 : std::strlen(kExtPrefixColon);
  const QByteArray& tag = field.GetTag();
  state.out(needsPrefix && isKml ? " kml:" : " ");
  state.stream().WriteRawBytes(tag.constData() + dropped,
                               static_cast<std::size_t>(tag.size()) - dropped);
  state.out("=\"");
}

} // namespace

void Field::WriteKmlString(const SchemaObject&, WriteState&) const {}

QString Field::GetPrefixedElem() const {
  return ns_ == Namespace::kKml ? name_ : QLatin1String(kExtPrefixColon) + name_;
}

QString Field::GetPrefixedAttr(const SchemaObject& object) const {
  if (ns_ == object.GetNamespace())
    return name_;
  return QLatin1String(ns_ == Namespace::kKml ? kKmlPrefixColon : kExtPrefixColon) + name_;
}

void Field::WriteUnknownFieldAttrs(WriteState& state, const SchemaObject& object) const {
  object.WriteUnknownFieldAttrs(state, *this);
}

void Field::WriteElementStart(const SchemaObject& object, WriteState& state) const {
  state.CheckDepth();
  state.WriteTagStart(tag_);
  WriteUnknownFieldAttrs(state, object);
  state.out(">");
}

void Field::WriteKept(const SchemaObject& object, const KeptValue& value, WriteState& state) const {
  if (type_ == kObject && name_.isEmpty()) {
    if (value.object)
      value.object->WriteKml(state);
    return;
  }
  if (type_ == kAttribute) {
    WriteAttributeStart(*this, object, state);
    const AttributeScope scope(state.stream());
    state.xml() << value.text;
    state.out("\"");
    return;
  }
  state.WriteTagStart(tag_);
  if (!value.attrs.isNull())
    state.WriteUnknownAttrs(value.attrs, object.GetUnknownData()->namespaces, type_ != kObject);
  if (type_ == kObject) {
    state.out(">\n");
    state.SetIndent(state.indent() + 1);
    if (value.object)
      value.object->WriteKml(state);
    state.SetIndent(state.indent() - 1);
    state.WriteIndent();
  } else {
    state.out(">");
    state.xml() << value.text;
  }
  WriteElementEnd(state);
}

void Field::WriteElementEnd(WriteState& state) const { state.WriteTagEnd(tag_); }

void Field::WriteEmptyElement(WriteState& state) const {
  state.WriteTagStart(tag_);
  state.out("/>\n");
}

void Field::WriteValue(const SchemaObject& object, WriteState& state, bool differs) const {
  const bool isGiven = (differs || !HasFlag(kHasDefault) || state.writeDefaults()) &&
                       !HasFlag(kNoWrite) && !IsUndefined(object);
  if (isGiven || (type_ == kElement && object.KeepsElement(*this)))
    WriteGivenValue(object, state);
}

void Field::WriteGivenValue(const SchemaObject& object, WriteState& state) const {
  if (type_ == kElement && name_.isEmpty()) {
    WriteKmlString(object, state);
  } else if (type_ == kElement) {
    WriteElementStart(object, state);
    WriteKmlString(object, state);
    WriteElementEnd(state);
  } else if (type_ == kAttribute) {
    WriteAttributeStart(*this, object, state);
    const AttributeScope scope(state.stream());
    WriteKmlString(object, state);
    state.out("\"");
  }
}

bool EnumField::IsUndefined(const SchemaObject& object) const {
  return toString(object, -1).isEmpty();
}

void EnumField::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  state.xml() << values_->getString(get(object));
}

void AltitudeModeEnumField::WriteKml(const SchemaObject& object, WriteState& state) const {
  const int mode = get(object);
  const bool isOwn = isExtension_ ? mode >= kAbsoluteAboveGround && mode <= kRelativeToSeaFloor
                                  : mode >= kClampToGround && mode <= kAbsoluteAboveGround;
  if (isOwn || object.KeepsElement(*this))
    EnumField::WriteKml(object, state);
}

void AltitudeModeEnumField::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  int mode = get(object);
  if (!isExtension_) {
    // The modes that only the extension has show as the nearest plain ones.
    if (mode == kAbsoluteAboveGround)
      mode = kAbsolute;
    else if (mode == kClampToSeaFloor)
      mode = kClampToGround;
    else if (mode == kRelativeToSeaFloor)
      mode = kRelativeToGround;
  }
  state.xml() << GetEnum().getString(mode);
}

void StrField::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  state.xml() << Member<QString>(object);
}

void IdField::WriteKml(const SchemaObject& object, WriteState& state) const {
  const QString id = state.GetObjectId(object);
  if (id.isEmpty())
    return;
  WriteAttributeStart(*this, object, state);
  const AttributeScope scope(state.stream());
  state.xml() << id;
  state.out("\"");
}

void HrefStrField::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  const QString& raw = Member<QString>(object, rawOffset_);
  if (raw.isNull())
    StrField::WriteKmlString(object, state);
  else
    WriteEscapedText(state.stream(), raw);
}

void ReferenceField::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  const QString& url = Member<QString>(object);
  const bool isReference = url.contains(QLatin1Char('#'));
  state.xml() << (isReference ? state.urls().GetReferenceUrl(object, url) : url);
}

void CdataField::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  WriteMarkupText(Member<QString>(object), object, state);
}

void NormLLAField::WriteKmlString(const SchemaObject& object, WriteState& state) const {
  Utf8OStream& stream = state.stream();
  char* const out = stream.Reserve(kMaxNormLLALength);
  stream.Commit(out + FormatNormLLA(Member<Vec3<double>>(object), ',', out));
}

void ScreenVecField::WriteKml(const SchemaObject& object, WriteState& state) const {
  const LegacyScreenVec& value = Member<LegacyScreenVec>(object);
  state.WriteTagStart(GetTag());
  state.stream() << GetAttributes(value);
  WriteUnknownFieldAttrs(state, object);
  state.out("/>\n");
}

QString ScreenVecField::GetAttributes(const LegacyScreenVec& value) {
  return QStringLiteral(" x=\"%1\" y=\"%2\" xunits=\"%3\" yunits=\"%4\"")
      .arg(ValueToString(value.x), ValueToString(value.y),
           LegacyScreenVec::UnitsToString(value.xunits),
           LegacyScreenVec::UnitsToString(value.yunits));
}

void ScreenVecField::GetForm(const SchemaObject& object, QString&, QString& attrs) const {
  attrs.prepend(GetAttributes(Member<LegacyScreenVec>(object)));
}

void NormLLAListField::WriteKml(const SchemaObject& object, WriteState& state) const {
  const mmvector<Vec3<double>>& positions = Array(object);
  // The older form has no altitudes: with any, its mark goes.
  QString attrs = object.GetUnknownFieldAttrs(*this);
  const bool isPolyline = IsPolyline(object, attrs);
  state.WriteTagStart(GetTag());
  if (!attrs.isNull())
    state.WriteUnknownAttrs(attrs, object.GetUnknownData()->namespaces, true);
  state.out(">\n");
  if (!positions.empty()) {
    state.SetIndent(state.indent() + 1);
    state.WriteIndent();
    state.SetIndent(state.indent() - 1);
    Utf8OStream& stream = state.stream();
    for (const Vec3<double>& position : positions) {
      char* out = stream.Reserve(kMaxNormLLALength + 1);
      if (isPolyline) {
        out += FormatNormLLA({position.y, position.x, 0.0}, ',', out);
        out -= 2; // the altitude
      } else {
        out += FormatNormLLA(position, ',', out);
      }
      *out++ = ' ';
      stream.Commit(out);
    }
    state.out("\n");
  }
  state.WriteIndent();
  WriteElementEnd(state);
}

void NormLLAArrayField::WriteEntry(const Vec3<double>& value, WriteState& state) const {
  Utf8OStream& stream = state.stream();
  char* const out = stream.Reserve(kMaxNormLLALength);
  stream.Commit(out + FormatNormLLA(value, ' ', out));
}

void Vec3fArrayField::WriteEntry(const Vec3<float>& value, WriteState& state) const {
  WriteValueText(state.stream(), static_cast<double>(value.x));
  state.out(" ");
  WriteValueText(state.stream(), static_cast<double>(value.y));
  state.out(" ");
  WriteValueText(state.stream(), static_cast<double>(value.z));
}

void ObjFieldBase::WriteKml(const SchemaObject& object, WriteState& state) const {
  const SchemaObject* const child = HasFlag(kNoWrite) ? nullptr : GetObject(object, -1);
  if (GetName().isEmpty()) {
    if (child && state.CheckDepth())
      child->WriteKml(state);
    return;
  }
  if (!child && !object.KeepsElement(*this))
    return;
  WriteElementStart(object, state);
  state.out("\n");
  state.SetIndent(state.indent() + 1);
  if (child && state.CheckDepth())
    child->WriteKml(state);
  state.SetIndent(state.indent() - 1);
  state.WriteIndent();
  WriteElementEnd(state);
}

void ObjArrayFieldBase::WriteKml(const SchemaObject& object, WriteState& state) const {
  constexpr int kAhead = 4; // elements lie anywhere in memory: asked for ahead of time
  const int count = HasFlag(kNoWrite) ? 0 : getCount(object);
  const bool hasElement = !GetName().isEmpty();
  if (count == 0 && !(hasElement && object.KeepsElement(*this)))
    return;
  if (hasElement) {
    WriteElementStart(object, state);
    state.out("\n");
    state.SetIndent(state.indent() + 1);
  }
  for (int i = 0; i < count; ++i) {
    const SchemaObject* const child = GetObject(object, i);
    if (i + kAhead < count)
      __builtin_prefetch(GetObject(object, i + kAhead));
    if (child && state.CheckDepth())
      child->WriteKml(state);
    if (!state.error().isEmpty())
      return; // the output is thrown away
  }
  if (hasElement) {
    state.SetIndent(state.indent() - 1);
    state.WriteIndent();
    WriteElementEnd(state);
  }
}

void ObjUrlFieldBase::WriteKml(const SchemaObject& object, WriteState& state) const {
  const QString& url = Member<QString>(object);
  const auto write = [&](SchemaObject* target) {
    state.WriteObjUrl(target, state.urls().GetReferenceUrl(object, url));
  };
  if (GetType() == kAttribute && !url.isEmpty()) {
    WriteAttributeStart(*this, object, state);
    const AttributeScope scope(state.stream());
    write(GetTarget(object));
    state.out("\"");
  } else if (GetType() == kElement) {
    // What has no name yet gets one in the output.
    SchemaObject* const target = GetTarget(object);
    const bool isNamed = !url.isEmpty() || (target && state.hoist().HasName(*target));
    if (!isNamed && !object.KeepsElement(*this))
      return;
    WriteElementStart(object, state);
    write(isNamed ? target : nullptr);
    WriteElementEnd(state);
  }
}

} // namespace vorrel::kestan
