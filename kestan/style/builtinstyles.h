#pragma once

#include "kestan/host/refptr.h"

namespace vorrel::kestan {

class BalloonStyle;
class IconStackStyle;
class IconStyle;
class ListStyle;
class PolyStyle;
class Style;
class StyleMap;

/// The shared styles that stand in where a document says nothing. They live from the library's
/// start to its stop.
struct BuiltInStyles {
  BuiltInStyles();
  ~BuiltInStyles();

  /// Null while the library isn't initialised.
  static BuiltInStyles* Get() { return s_instance_; }

  RefPtr<IconStyle> iconStyle;
  RefPtr<IconStackStyle> iconStackStyle;
  RefPtr<PolyStyle> polyStyle;
  RefPtr<ListStyle> listStyle;
  RefPtr<BalloonStyle> balloonStyle;
  RefPtr<Style> defaultStyle; ///< A client may put its own in this place.
  RefPtr<Style> fetchingStyle;
  RefPtr<Style> failedStyle;
  RefPtr<Style> highlightStyle;
  RefPtr<StyleMap> defaultStyleMap;

private:
  static BuiltInStyles* s_instance_;
};

} // namespace vorrel::kestan
