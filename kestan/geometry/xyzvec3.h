#pragma once

#include "kestan/core/schemaobject.h"
#include "kestan/host/vec3.h"

namespace vorrel::kestan {

class XYZVec3Schema;

/// Base of the elements that hold a number for each axis.
class KESTAN_EXPORT XYZVec3 : public SchemaObject {
public:
  using ClassSchema = XYZVec3Schema;
  static const Schema& GetClassSchema();

  const Vec3<double>& GetVec() const { return vec_; }
  void SetVec(const Vec3<double>& vec);

  unsigned GetFieldsSpecified() const override { return given_; }

protected:
  XYZVec3(const Schema& schema, const Vec3<double>& vec, const KmlId& id, const QString& baseUrl);

private:
  friend class XYZVec3Schema;

  Vec3<double> vec_;
  unsigned given_ = 0; ///< One bit a field.
};

} // namespace vorrel::kestan
