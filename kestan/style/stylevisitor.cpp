#include "kestan/style/stylevisitor.h"

#include "kestan/style/style.h"
#include "kestan/style/stylemap.h"

namespace vorrel::kestan {

StyleVisitor::~StyleVisitor() = default;

void StyleVisitor::visit(StyleSelector& selector) { ShouldVisitBaseClass(selector); }

void StyleVisitor::visit(StyleMap& map) {
  if (ShouldVisitBaseClass(map))
    visit(static_cast<StyleSelector&>(map));
}

void StyleVisitor::visit(Style& style) {
  if (ShouldVisitBaseClass(style))
    visit(static_cast<StyleSelector&>(style));
}

bool StyleVisitor::ShouldVisitBaseClass(StyleSelector&) { return true; }

} // namespace vorrel::kestan
