#include "kestan/core/normllalistfield.h"

#include "kestan/core/deletiondeferrer.h"
#include "kestan/core/schemaobject.h"
#include "kestan/core/textfaults.h"
#include "kestan/host/convert.h"
#include "kestan/host/numberformat.h"
#include "kestan/host/parse.h"
#include "kestan/update/normllalistfieldedit.h" // what an update makes of a text

#include <algorithm>

namespace vorrel::kestan {

namespace {

/// The last number of a tuple, the altitude, may be missing.
constexpr int kOptionalAltitude = 1;
/// Scratch space beyond this many positions isn't kept for the next text.
constexpr std::size_t kKeptScratch = 1U << 16;

bool HasPolylineType(const AttributeList* attrs) {
  return attrs && std::any_of(attrs->begin(), attrs->end(), [](const auto& attr) {
           return attr.first == QLatin1String("type") && attr.second == QLatin1String("polyline");
         });
}

/// Calls `visit(position)` until it answers false.
template <class Visit> void ForEachPosition(const QString& text, bool polyline, Visit visit) {
  const ushort* at = math::Units(text);
  const ushort* const end = at + text.size();
  while (at && at < end) {
    Vec3<double> position{0.0, 0.0, 0.0};
    if (polyline) {
      at = math::ParseUtf16ToVec3(at, end, position, 2, 0);
      std::swap(position.x, position.y);
    } else {
      at = math::ParseUtf16ToVec3(at, end, position, 3, kOptionalAltitude);
    }
    if (at && !visit(convert::LLAToNorm(position)))
      return;
  }
}

bool HasPosition(const QString& text, const AttributeList* attrs) {
  bool isFound = false;
  ForEachPosition(text, HasPolylineType(attrs), [&](const Vec3<double>&) {
    isFound = true;
    return false;
  });
  return isFound;
}

} // namespace

FromStringResult NormLLAListField::fromString(SchemaObject& object, const AttributeList* attrs,
                                              const NamespaceList* namespaces, const QString& text,
                                              int, Update* update) const {
  const bool isMade = KeepsRest(object, update);
  if (update && (!isMade || HasPosition(text, attrs))) {
    if (!NormLLAListFieldEdit::CreateSecureEdit(*this, object, *update, text, attrs))
      return FromStringResult::kSecurityViolation;
    if (attrs && isMade)
      object.SetUnknownFieldAttrs(*this, *attrs, namespaces);
    return FromStringResult::kOk;
  }

  // How many positions a text holds is known only afterwards. A scratch that lives on gives the
  // member its exact size at the cost of one copy.
  static thread_local mmvector<Vec3<double>> scratch;
  scratch.clear();
  Parse(text, attrs, scratch);
  Array(object).assign(scratch.begin(), scratch.end());
  if (scratch.capacity() > kKeptScratch)
    mmvector<Vec3<double>>().swap(scratch);

  if (attrs && !attrs->empty())
    object.SetUnknownFieldAttrs(*this, *attrs, namespaces);
  const DeletionDeferrer deferrer;
  NotifyFieldChanged(object);
  if (Array(object).empty() && !text.isEmpty())
    object.KeepText(*this, text);
  return FromStringResult::kOk;
}

void NormLLAListField::Parse(const QString& text, const AttributeList* attrs,
                             mmvector<Vec3<double>>& positions) {
  ForEachPosition(text, HasPolylineType(attrs), [&](const Vec3<double>& position) {
    positions.push_back(position);
    return true;
  });
}

void NormLLAListField::SetPositions(SchemaObject& object,
                                    const mmvector<Vec3<double>>& positions) const {
  Array(object) = positions;
  NotifyFieldChanged(object);
}

void NormLLAListField::FindFaults(const SchemaObject&, const AttributeList* attrs,
                                  TextFaults& faults) const {
  if (HasPolylineType(attrs))
    faults.CheckTuples({2, 0, 2, true});
  else
    faults.CheckTuples({3, kOptionalAltitude, 2, true});
}

void NormLLAListField::GetForm(const SchemaObject& object, QString& text, QString& attrs) const {
  const bool isPolyline = IsPolyline(object, attrs);
  text.clear();
  for (const Vec3<double>& position : Array(object)) {
    char buffer[kMaxNormLLALength];
    const Vec3<double> written = isPolyline ? Vec3<double>{position.y, position.x, 0.0} : position;
    const int size = FormatNormLLA(written, ',', buffer) - (isPolyline ? 2 : 0);
    text += QString::fromLatin1(buffer, size) + QLatin1Char(' ');
  }
  text.chop(1);
}

bool NormLLAListField::IsPolyline(const SchemaObject& object, QString& attrs) const {
  const QLatin1String mark(" type=\"polyline\"");
  if (!attrs.contains(mark))
    return false;
  const mmvector<Vec3<double>>& positions = Array(object);
  if (std::all_of(positions.begin(), positions.end(),
                  [](const Vec3<double>& position) { return position.z == 0.0; }))
    return true;
  attrs.remove(mark);
  return false;
}

QString NormLLAListField::toString(const SchemaObject& object, int index) const {
  const mmvector<Vec3<double>>& array = Array(object);
  const bool inRange = index >= 0 && static_cast<std::size_t>(index) < array.size();
  char buffer[kMaxNormLLALength];
  const int size = FormatNormLLA(
      inRange ? array[static_cast<std::size_t>(index)] : Vec3<double>{0.0, 0.0, 0.0}, ',', buffer);
  return QString::fromLatin1(buffer, size);
}

} // namespace vorrel::kestan
