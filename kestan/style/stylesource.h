#pragma once

#include "kestan/style/stylemap.h"

namespace vorrel::kestan {

class AbstractFeature;

/// One of the styles that a look is made of, and the way from a feature to it.
struct StyleSource {
  enum Kind {
    kGiven,   ///< The document holds or names it.
    kMissing, ///< It stands in for one that isn't there, or that nobody asked for.
    kLoop,    ///< It stands in, since the maps on the way lead back to themselves.
  };

  const Style* style = nullptr;
  /// Where the way begins: the feature's inline or its referenced selector; null where it has none
  /// that answers.
  const StyleSelector* selector = nullptr;
  /// Where the way ends: the pair that holds or names the style. Null where the selector is the
  /// style itself.
  const StyleMap::Pair* pair = nullptr;
  Kind kind = kMissing;
};

/// What a feature shows in one mode, and which styles say so: one of them, or one over another.
///
/// Holds good until a style changes. Thread: that of the feature.
class KESTAN_EXPORT StyleSources {
public:
  StyleSources(const AbstractFeature& feature, int mode);

  /// The uppermost first; there is at least one.
  const StyleSource* begin() const { return sources_; }
  const StyleSource* end() const { return sources_ + count_; }

  /// The feature's render style.
  const Style* GetStyle() const { return style_; }
  /// The sub-style that the field `part` of `Style` holds there; null where it's the default.
  const SchemaObject* GetSubStyle(const Field& part) const;
  /// Which of the styles gives the value of a field of that sub-style; null where none does, so
  /// that the field has its default.
  const StyleSource* Find(const Field& part, const Field& field) const;

private:
  friend class StyleMap;

  /// What comes of putting `over` on `under`, one of which may be null. Empty where neither has a
  /// style for the mode.
  StyleSources(const StyleSelector* over, const StyleSelector* under, int mode);

  void Add(const StyleSource& source);

  StyleSource sources_[2];
  int count_ = 0;
  const Style* style_ = nullptr;
};

} // namespace vorrel::kestan
