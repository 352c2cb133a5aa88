#pragma once

#include "kestan/host/export.h"

namespace vorrel::kestan {

class Style;
class StyleMap;
class StyleSelector;

/// Does something that depends on the class of a selector: `selector.accept(visitor)` calls the
/// `visit` of that class.
///
/// A `visit` that isn't replaced climbs to that of the base class, as long as
/// `ShouldVisitBaseClass` allows it. No visit follows references.
class KESTAN_EXPORT StyleVisitor {
public:
  virtual ~StyleVisitor();

  virtual void visit(StyleSelector& selector);
  virtual void visit(StyleMap& map);
  virtual void visit(Style& style);
  /// Asked before a visit climbs.
  virtual bool ShouldVisitBaseClass(StyleSelector& selector);
};

} // namespace vorrel::kestan
