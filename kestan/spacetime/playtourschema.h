#pragma once

#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/spacetime/playtour.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PlayTourSchema final
    : public SchemaT<PlayTour, NewInstancePolicy, NoDerivedPolicy> {
public:
  PlayTourSchema();

  ReferenceField href{*this, "href", OffsetOf(&PlayTour::href_), Field::kElement,
                      Field::kKmlNamespace};
};

extern template class SchemaT<PlayTour, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
