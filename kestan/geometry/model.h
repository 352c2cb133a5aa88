#pragma once

#include "kestan/geometry/geometry.h"

namespace vorrel::kestan {

class ModelSchema;

/// A shape from a file of a 3D model. Without instances so far: documents keep the element as it
/// stands.
class KESTAN_EXPORT Model : public Geometry {
public:
  using ClassSchema = ModelSchema;
  static const Schema& GetClassSchema();
};

} // namespace vorrel::kestan
