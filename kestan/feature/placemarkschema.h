#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/feature/placemark.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PlacemarkSchema final
    : public SchemaT<Placemark, NewInstancePolicy, NewDerivedPolicy> {
public:
  PlacemarkSchema();

  ObjField<Geometry> geometry; // initialised by the constructor: its class lies above this folder
};

extern template class SchemaT<Placemark, NewInstancePolicy, NewDerivedPolicy>;

} // namespace vorrel::kestan
