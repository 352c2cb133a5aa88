#pragma once

#include "kestan/core/givenfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/spacetime/lod.h"

namespace vorrel::kestan {

class KESTAN_EXPORT LodSchema final : public SchemaT<Lod, NewInstancePolicy, NoDerivedPolicy> {
public:
  LodSchema();

  GivenField<float> minLodPixels{*this, "minLodPixels", OffsetOf(&Lod::minLodPixels_),
                                 OffsetOf(&Lod::given_)};
  GivenField<float> maxLodPixels{*this, "maxLodPixels", OffsetOf(&Lod::maxLodPixels_),
                                 OffsetOf(&Lod::given_)};
  GivenField<float> minFadeExtent{*this, "minFadeExtent", OffsetOf(&Lod::minFadeExtent_),
                                  OffsetOf(&Lod::given_)};
  GivenField<float> maxFadeExtent{*this, "maxFadeExtent", OffsetOf(&Lod::maxFadeExtent_),
                                  OffsetOf(&Lod::given_)};
  ReferenceField hrefToReplace{*this, "hrefToReplace", OffsetOf(&Lod::hrefToReplace_),
                               Field::kElement, Field::kExtNamespace};
};

extern template class SchemaT<Lod, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
