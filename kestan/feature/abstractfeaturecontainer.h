#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

class AbstractFeature;
class AbstractFolder;

/// The features of a folder.
using AbstractFeatureContainer = TypedContainer<AbstractFolder, AbstractFeature>;

} // namespace vorrel::kestan
