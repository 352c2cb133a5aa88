#pragma once

#include "kestan/core/schemaobject.h"

#include <QString>

namespace vorrel::kestan {

/// Compares two trees by class, id, fields, preserved unknown content and children. Answers where
/// they differ first, as a path from the root with both values; empty when they are equal.
/// References are equal that lead to the same place, or to local files of the same contents.
QString FindDifference(const SchemaObject& a, const SchemaObject& b);

} // namespace vorrel::kestan
