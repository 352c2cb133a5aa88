#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class Tour;
class TourPrimitiveSchema;
class TourPrimitiveVisitor;

/// One thing that happens in a tour.
class KESTAN_EXPORT TourPrimitive : public SchemaObject {
public:
  using ClassSchema = TourPrimitiveSchema;
  static const Schema& GetClassSchema();
  ~TourPrimitive() override;

  /// The owner, where that is a tour itself. Those in a playlist have that as their owner.
  Tour* GetParent() const;

  // Operations that primitives add, in the order of their slots.
  virtual void Accept(TourPrimitiveVisitor& visitor);
  virtual void ConstAccept(TourPrimitiveVisitor& visitor) const;
  /// In seconds.
  virtual double GetDuration() const { return duration_; }
  virtual void SetDuration(double seconds);

protected:
  TourPrimitive(const Schema& schema, const KmlId& id, const QString& baseUrl);

private:
  friend class TourPrimitiveSchema;

  double duration_ = 0.0;
};

} // namespace vorrel::kestan
