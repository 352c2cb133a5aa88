#include "kestan/style/stylesource.h"

#include "kestan/feature/abstractfeature.h"
#include "kestan/style/style.h"

#include <algorithm>

namespace vorrel::kestan {

namespace {

StyleSource Select(const StyleSelector& selector, int mode) {
  if (const StyleMap* map = StyleMap::As(&selector))
    return map->Select(mode);
  return {static_cast<const Style*>(&selector), &selector, nullptr, StyleSource::kGiven};
}

/// True when the sub-style, which may be null, was given a value for the field.
bool Gives(const SchemaObject* subStyle, const Field& field) {
  return subStyle && (subStyle->GetFieldsSpecified() & field.GetMaskBit()) != 0;
}

} // namespace

StyleSources::StyleSources(const AbstractFeature& feature, int mode) {
  const StyleSelector* own = feature.GetInlineStyleSelector();
  const StyleSelector* shared = feature.GetReferencedStyleSelector();
  if (own && shared)
    *this = StyleSources(own, shared, mode);
  else if (own || shared)
    Add(Select(own ? *own : *shared, mode));
  style_ = feature.getRenderStyle(mode);
  if (count_ == 0)
    Add({style_, nullptr, nullptr, StyleSource::kMissing});
}

StyleSources::StyleSources(const StyleSelector* over, const StyleSelector* under, int mode) {
  // The result has the shape of one of the two: that of a map, and of the lower one of two maps.
  const StyleSelector* shape = !over || StyleMap::As(under) ? under : over;
  const StyleSelector* other = shape == over ? under : over;
  StyleSource first = Select(*shape, mode);
  if (first.kind == StyleSource::kLoop) {
    Add(first);
    return;
  }
  if (first.kind == StyleSource::kMissing)
    first = StyleSource(); // what the other one says does better than a stand-in
  const StyleSource second = other ? Select(*other, mode) : StyleSource();
  Add(shape == over ? first : second);
  Add(shape == over ? second : first);
}

void StyleSources::Add(const StyleSource& source) {
  if (source.style)
    sources_[count_++] = source;
}

const SchemaObject* StyleSources::GetSubStyle(const Field& part) const {
  return part.GetObject(*style_, -1);
}

const StyleSource* StyleSources::Find(const Field& part, const Field& field) const {
  if (!Gives(GetSubStyle(part), field))
    return nullptr;
  const bool isChild = field.GetObjSchema() && !field.IsArray();
  const auto source = std::find_if(begin(), end(), [&](const StyleSource& candidate) {
    const SchemaObject* subStyle = part.GetObject(*candidate.style, -1);
    return Gives(subStyle, field) && (!isChild || field.GetObject(*subStyle, -1));
  });
  return source == end() ? nullptr : source;
}

} // namespace vorrel::kestan
