#include "kestan/feature/featurevisitor.h"

namespace vorrel::kestan {

FeatureVisitor::~FeatureVisitor() = default;

void FeatureVisitor::visit(AbstractFeature& feature) { ShouldVisitBaseClass(feature); }

bool FeatureVisitor::ShouldVisitBaseClass(AbstractFeature&) { return true; }

} // namespace vorrel::kestan
