#pragma once

#include "kestan/style/stylesource.h"
#include "tools/kestan/json.h"

#include <QString>

#include <vector>

namespace tool {

/// Where values of a look come from, in the words of the output.
struct Origin {
  QString from;  ///< "inline", "shared" or "styleMap", or what is there instead of a style.
  QString map;   ///< URL of a style map on the way; null where it's inline or there's none.
  QString style; ///< URL of the style; null where it's inline.

  QString ToText() const;
  JsonObject ToJson() const;
};

/// What is behind a look: one for each of the sources, and one more for a shared style that isn't
/// there, but would lie below the inline one.
std::vector<Origin> GetOrigins(const vorrel::kestan::AbstractFeature& feature,
                               const vorrel::kestan::StyleSources& sources);

} // namespace tool
