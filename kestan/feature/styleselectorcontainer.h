#pragma once

#include "kestan/feature/typedcontainer.h"

namespace vorrel::kestan {

class Document;
class StyleSelector;

/// The shared styles of a document.
using StyleSelectorContainer = TypedContainer<Document, StyleSelector>;

} // namespace vorrel::kestan
