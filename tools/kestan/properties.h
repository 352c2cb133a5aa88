#pragma once

#include "kestan/style/stylesource.h"

#include <QString>

#include <cstddef>
#include <vector>

namespace tool {

/// One value of a look.
struct Property {
  QString name;          ///< The way through the sub-style, such as "IconStyle.Icon.href".
  QString value;         ///< As in KML; null for a child object that isn't there.
  std::ptrdiff_t source; ///< Place among the sources of the look; -1 for a default.
};

/// Lists what the styles of a look hold, as their classes' tables have it: all fields of each
/// sub-style, and what was given of the objects in them.
class PropertyLister {
public:
  std::vector<Property> List(const vorrel::kestan::StyleSources& sources);

private:
  const vorrel::kestan::SchemaObject& GetDefault(const vorrel::kestan::Schema& schema);
  void AddSubStyle(const vorrel::kestan::StyleSources& sources, const vorrel::kestan::Field& part);
  void AddField(const QString& path, const vorrel::kestan::SchemaObject& object,
                const vorrel::kestan::Field& field, std::ptrdiff_t source);
  void AddChild(const QString& path, const vorrel::kestan::SchemaObject& child,
                std::ptrdiff_t source);

  std::vector<Property> properties_;
  std::vector<vorrel::RefPtr<vorrel::kestan::SchemaObject>> defaults_; // one of each class
};

} // namespace tool
