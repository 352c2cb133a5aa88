#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

class Geometry;
class MultiGeometry;

/// The members of a collection of shapes.
using GeometryContainer = TypedContainer<MultiGeometry, Geometry>;

} // namespace vorrel::kestan
