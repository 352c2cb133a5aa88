#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

class LinearRing;
class Polygon;

/// The holes of a polygon.
using LinearRingContainer = TypedContainer<Polygon, LinearRing>;

} // namespace vorrel::kestan
