#include "kestan/core/keptvalues.h"

#include "kestan/core/childmove.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vorrel::kestan {

namespace {

template <class T> void Prepend(mmvector<T>& list, mmvector<T>& front) {
  std::move(list.begin(), list.end(), std::back_inserter(front));
  list = std::move(front);
}

/// The text may lie in somebody else's buffer.
QString Detached(const QString& text) { return QString(text.constData(), text.size()); }

} // namespace

const KeptField* KeptValues::Find(const Field& field) const {
  const auto entry = std::find_if(fields_.begin(), fields_.end(),
                                  [&](const KeptField& kept) { return kept.field == &field; });
  return entry == fields_.end() ? nullptr : &*entry;
}

KeptField& KeptValues::Require(const Field& field) {
  if (const KeptField* present = Find(field))
    return const_cast<KeptField&>(*present);
  fields_.push_back({&field, {}, {}, QString(), {}});
  return fields_.back();
}

mmvector<KeptField> KeptValues::Take(const Field& field) {
  const auto first =
      std::stable_partition(fields_.begin(), fields_.end(), [&](const KeptField& kept) {
        return !field.IsSameMember(*kept.field);
      });
  mmvector<KeptField> taken(std::make_move_iterator(first), std::make_move_iterator(fields_.end()));
  fields_.erase(first, fields_.end());
  return taken;
}

void KeptValues::PutBack(mmvector<KeptField>& fields, const Field& field) {
  for (KeptField& former : fields) {
    // What stood in the place of the field itself has been displaced, or replaced.
    if (former.field == &field)
      former.text = QString();
    if (former.IsEmpty())
      continue;
    KeptField& kept = Require(*former.field);
    Prepend(kept.bare, former.bare);
    Prepend(kept.displaced, former.displaced);
    if (!former.text.isNull())
      kept.text = former.text;
    former.entries.insert(former.entries.end(), kept.entries.begin(), kept.entries.end());
    kept.entries = std::move(former.entries);
  }
}

bool KeptValues::Remove(const SchemaObject& object) {
  for (auto kept = fields_.begin(); kept != fields_.end(); ++kept) {
    const auto entry =
        std::find_if(kept->displaced.begin(), kept->displaced.end(),
                     [&](const KeptValue& value) { return value.object.get() == &object; });
    if (entry == kept->displaced.end())
      continue;
    kept->displaced.erase(entry);
    if (kept->IsEmpty())
      fields_.erase(kept);
    return true;
  }
  return false;
}

Displacement::Displacement(SchemaObject& object, const Field& field, bool isFurther,
                           const QString& attrs)
    : object_(object), field_(field) {
  if (object.HasKeptValues())
    kept_ = object.keptValues().Take(field);
  if (!isFurther)
    return;
  auto kept = std::find_if(kept_.begin(), kept_.end(),
                           [&](const KeptField& entry) { return entry.field == &field; });
  if (kept == kept_.end())
    kept = kept_.insert(kept_.end(), {&field, {}, {}, QString(), {}});
  KeptValue former{RefPtr<SchemaObject>(field.GetObject(object, -1)), QString(), attrs};
  if (!former.object) {
    former.attrs = object.TakeUnknownFieldAttrs(field);
    if (kept->text.isNull())
      field.GetForm(object, former.text, former.attrs);
    else
      former.text = std::move(kept->text);
  }
  child_ = former.object;
  kept->displaced.push_back(std::move(former));
}

Displacement::~Displacement() {
  // It has a home where the further child wasn't taken, or where an observer has moved it.
  if (child_ && (child_->GetHome() || child_->GetBit(kBitDeleting))) {
    for (KeptField& kept : kept_) {
      if (kept.field == &field_)
        kept.displaced.pop_back();
    }
    child_.reset();
  }
  if (kept_.empty() || object_.GetBit(kBitDeleting))
    return;
  KeptValues& kept = object_.keptValues();
  kept.PutBack(kept_, field_);
  if (kept.IsEmpty())
    object_.unknownData_->kept.reset();
  if (!child_)
    return;
  ChildMove move;
  move.Take(*child_);
  ChildMove::Enter(*child_, object_, -1);
  move.Tell();
}

void SchemaObject::KeepText(const Field& field, const QString& text) {
  keptValues().Require(field).text = text.isEmpty() ? QLatin1String("") : Detached(text);
}

void SchemaObject::KeepEntry(const Field& field, int index, const QString& text) {
  keptValues().Require(field).entries.emplace_back(index, Detached(text));
}

void SchemaObject::KeepEmptyElement(const Field& field, const QString& attrs) {
  keptValues().Require(field).bare.push_back(attrs);
}

const KeptField* SchemaObject::GetKeptField(const Field& field) const {
  return HasKeptValues() ? unknownData_->kept->Find(field) : nullptr;
}

bool SchemaObject::HasKeptValue(const Field& field) const {
  if (!HasKeptValues())
    return false;
  const mmvector<KeptField>& fields = unknownData_->kept->GetFields();
  return std::any_of(fields.begin(), fields.end(),
                     [&](const KeptField& kept) { return field.IsSameMember(*kept.field); });
}

mmvector<KeptField> SchemaObject::GetKeptFields(const Field& field) const {
  mmvector<KeptField> copies;
  if (HasKeptValues()) {
    const mmvector<KeptField>& fields = unknownData_->kept->GetFields();
    std::copy_if(fields.begin(), fields.end(), std::back_inserter(copies),
                 [&](const KeptField& kept) { return field.IsSameMember(*kept.field); });
  }
  return copies;
}

void SchemaObject::PutKeptFields(const Field& field, const mmvector<KeptField>& kept) {
  DropKeptValues(field);
  for (const KeptField& copy : kept)
    keptValues().Require(*copy.field) = copy;
}

bool SchemaObject::HasDisplacedOthers() const {
  const SchemaObject* const owner = GetHome();
  if (!owner || !owner->HasKeptValues())
    return false;
  const Field* const field = owner->FindObject(*this, nullptr);
  return field && owner->GetKeptField(*field);
}

void SchemaObject::DropKeptValues(const Field& field) {
  if (!HasKeptValues())
    return;
  const mmvector<KeptField> gone = unknownData_->kept->Take(field);
  if (unknownData_->kept->IsEmpty())
    unknownData_->kept.reset();
  ChildMove move;
  for (const KeptField& kept : gone) {
    for (const KeptValue& value : kept.displaced) {
      if (value.object)
        move.LetGo(value.object, *this);
    }
  }
  move.Tell();
}

bool SchemaObject::RemoveDisplaced(const SchemaObject& child) {
  if (!HasKeptValues() || !unknownData_->kept->Remove(child))
    return false;
  if (unknownData_->kept->IsEmpty())
    unknownData_->kept.reset();
  return true;
}

KeptValues& SchemaObject::keptValues() {
  UnknownData& data = unknownData();
  if (!data.kept)
    data.kept = std::make_unique<KeptValues>();
  return *data.kept;
}

} // namespace vorrel::kestan
