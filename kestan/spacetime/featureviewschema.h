#pragma once

#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/spacetime/featureview.h"

namespace vorrel::kestan {

/// Without the fields of other views.
class KESTAN_EXPORT FeatureViewSchema final
    : public SchemaT<FeatureView, NoInstancePolicy, NoDerivedPolicy> {
public:
  FeatureViewSchema();

  ObjField<SchemaObject> feature;
};

class KESTAN_EXPORT TourViewSchema final
    : public SchemaT<TourView, NewInstancePolicy, NoDerivedPolicy> {
public:
  TourViewSchema();
};

class KESTAN_EXPORT PhotoOverlayViewSchema final
    : public SchemaT<PhotoOverlayView, NewInstancePolicy, NoDerivedPolicy> {
public:
  PhotoOverlayViewSchema();
};

class KESTAN_EXPORT BoundingBoxViewSchema final
    : public SchemaT<BoundingBoxView, NewInstancePolicy, NoDerivedPolicy> {
public:
  BoundingBoxViewSchema();
};

extern template class SchemaT<FeatureView, NoInstancePolicy, NoDerivedPolicy>;
extern template class SchemaT<TourView, NewInstancePolicy, NoDerivedPolicy>;
extern template class SchemaT<PhotoOverlayView, NewInstancePolicy, NoDerivedPolicy>;
extern template class SchemaT<BoundingBoxView, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
