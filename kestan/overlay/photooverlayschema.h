#pragma once

#include "kestan/core/enum.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/geometry/point.h"
#include "kestan/overlay/imagepyramid.h"
#include "kestan/overlay/photooverlay.h"
#include "kestan/spacetime/viewvolume.h"

namespace vorrel::kestan {

class KESTAN_EXPORT PhotoOverlaySchema final
    : public SchemaT<PhotoOverlay, NewInstancePolicy, NoDerivedPolicy> {
private:
  Enum shapes_;

public:
  PhotoOverlaySchema();

  SimpleField<float> rotation{*this, "rotation", OffsetOf(&PhotoOverlay::rotation_),
                              Field::kElement};
  ObjField<ViewVolume> viewVolume{*this, QString(), ViewVolume::GetClassSchema(),
                                  OffsetOf(&PhotoOverlay::viewVolume_)};
  ObjField<ImagePyramid> imagePyramid{*this, QString(), ImagePyramid::GetClassSchema(),
                                      OffsetOf(&PhotoOverlay::imagePyramid_)};
  ObjField<Point> point{*this, QString(), Point::GetClassSchema(), OffsetOf(&PhotoOverlay::point_)};
  EnumField shape{
      *this,          "shape", shapes_, PhotoOverlay::kRectangle, OffsetOf(&PhotoOverlay::shape_),
      Field::kElement};

private:
  static Enum NewShapeEnum();
};

extern template class SchemaT<PhotoOverlay, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
