#pragma once

#include "kestan/core/unknowndata.h"
#include "kestan/host/memory.h"
#include "kestan/host/vec3.h"
#include "kestan/update/updateedit.h"

#include <QString>

namespace vorrel::kestan {

class NormLLAListField;

/// The edit of a coordinate list. Between two lists of different lengths the shorter one stands for
/// one of the length of the longer, by the nearest of its points; so all in between is as long as
/// the longer one. An empty list blends into nothing, and steps.
class NormLLAListFieldEdit final : public UpdateEdit {
public:
  /// False, and no edit, when the update isn't allowed to change the field.
  static bool CreateSecureEdit(const NormLLAListField& field, SchemaObject& object, Update& update,
                               const QString& text, const AttributeList* attrs);

  void SetInterpolatedValue(float fraction) const override;
  void SetFinalValue() const override;
  void SetInitialValue() const override;

private:
  using Positions = mmvector<Vec3<double>>;

  NormLLAListFieldEdit(const NormLLAListField& field, SchemaObject& object, Update& update,
                       const QString& text, const AttributeList* attrs);

  const NormLLAListField& GetListField() const;

  Positions initial_;
  Positions final_;
  std::size_t longest_;
  std::size_t shortest_;
  float initialStep_ = 0.0F;
  float finalStep_ = 0.0F;
  mutable Positions scratch_; ///< Its memory serves from frame to frame.
};

} // namespace vorrel::kestan
