#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

class GeometryVisitor;
class GeometryVisitorConst;

/// Something that holds geometry, itself or below it, and hands visitors on to it.
class KESTAN_EXPORT IGeometryContainer {
public:
  virtual ~IGeometryContainer() = default;
  virtual void Accept(GeometryVisitorConst* visitor) const = 0;
  virtual void Accept(GeometryVisitor* visitor) = 0;
};

} // namespace vorrel::kestan
