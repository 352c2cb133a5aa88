#pragma once

#include "kestan/host/refptr.h"

#include <memory>

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
  static void Create() { s_instance_ = std::make_unique<BuiltInStyles>(); }
  static void Delete() { s_instance_.reset(); }
  /// Null while the library isn't initialised.
  static BuiltInStyles* Get() { return s_instance_.get(); }

  BuiltInStyles();
  ~BuiltInStyles();

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
  static std::unique_ptr<BuiltInStyles> s_instance_;
};

} // namespace vorrel::kestan
