#pragma once

#include "kestan/core/schemat.h"
#include "kestan/feature/planet.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PlanetSchema final : public SchemaT<Planet, NoInstancePolicy, NoDerivedPolicy> {
public:
  PlanetSchema();

  bool IsAbstract() const override { return false; }
};

extern template class SchemaT<Planet, NoInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
