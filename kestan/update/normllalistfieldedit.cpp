#include "kestan/update/normllalistfieldedit.h"

#include "kestan/core/fieldrest.h"
#include "kestan/core/normllalistfield.h"
#include "kestan/core/schemaobject.h"

#include <algorithm>
#include <cmath>

namespace vorrel::kestan {

namespace {

float GetStep(std::size_t count, std::size_t longest) {
  return count == 0 || longest < 2
             ? 0.0F
             : static_cast<float>(count - 1) / static_cast<float>(longest - 1);
}

} // namespace

bool NormLLAListFieldEdit::CreateSecureEdit(const NormLLAListField& field, SchemaObject& object,
                                            Update& update, const QString& text,
                                            const AttributeList* attrs) {
  if (!CheckUpdateSecurity(field, object, update))
    return false;
  if (!object.GetBit(kBitDeleting))
    new NormLLAListFieldEdit(field, object, update, text, attrs); // the update's from now on
  return true;
}

NormLLAListFieldEdit::NormLLAListFieldEdit(const NormLLAListField& field, SchemaObject& object,
                                           Update& update, const QString& text,
                                           const AttributeList* attrs)
    : UpdateEdit(object, update, field), initial_(field.GetPositions(object)) {
  NormLLAListField::Parse(text, attrs, final_);
  longest_ = std::max(initial_.size(), final_.size());
  shortest_ = std::min(initial_.size(), final_.size());
  initialStep_ = GetStep(initial_.size(), longest_);
  finalStep_ = GetStep(final_.size(), longest_);
}

const NormLLAListField& NormLLAListFieldEdit::GetListField() const {
  return static_cast<const NormLLAListField&>(GetField());
}

void NormLLAListFieldEdit::SetInterpolatedValue(float fraction) const {
  if (fraction >= 1.0F) {
    SetFinalValue();
    return;
  }
  if (shortest_ == 0 || fraction <= 0.0F) {
    SetInitialValue();
    return;
  }
  const auto t = static_cast<double>(fraction);
  const auto getPlace = [](float step, std::size_t i, std::size_t count) {
    // Of very long lists a float can't tell each place; none lies behind the end.
    const float place = std::floor(step * static_cast<float>(i) + 0.5F);
    return std::min(static_cast<std::size_t>(place), count - 1);
  };
  scratch_.resize(longest_);
  for (std::size_t i = 0; i < longest_; ++i) {
    const Vec3<double>& a = initial_[getPlace(initialStep_, i, initial_.size())];
    const Vec3<double>& b = final_[getPlace(finalStep_, i, final_.size())];
    scratch_[i] = {a.x * (1.0 - t) + b.x * t, a.y * (1.0 - t) + b.y * t, a.z * (1.0 - t) + b.z * t};
  }
  GetListField().SetPositions(GetObject(), scratch_);
}

void NormLLAListFieldEdit::SetFinalValue() const {
  GetListField().SetPositions(GetObject(), final_);
}

void NormLLAListFieldEdit::SetInitialValue() const {
  const FieldRestoration restoration(GetObject(), GetField(), GetRest());
  GetListField().SetPositions(GetObject(), initial_);
}

} // namespace vorrel::kestan
