#pragma once

#include "kestan/core/enumfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/strfield.h"
#include "kestan/overlay/imagepyramid.h"

namespace vorrel::kestan {

class KESTAN_EXPORT ImagePyramidSchema final
    : public SchemaT<ImagePyramid, NewInstancePolicy, NoDerivedPolicy> {
public:
  ImagePyramidSchema();

  SimpleField<int> tileSize{*this, "tileSize", OffsetOf(&ImagePyramid::tileSize_), Field::kElement};
  SimpleField<long long> maxWidth{*this, "maxWidth", OffsetOf(&ImagePyramid::maxWidth_),
                                  Field::kElement};
  SimpleField<long long> maxHeight{*this, "maxHeight", OffsetOf(&ImagePyramid::maxHeight_),
                                   Field::kElement};
  EnumField gridOrigin{*this,
                       "gridOrigin",
                       NewGridOriginEnum(),
                       ImagePyramid::kLowerLeft,
                       OffsetOf(&ImagePyramid::gridOrigin_),
                       Field::kElement};
  StrField existenceMapHref{*this, "existenceMapHref", OffsetOf(&ImagePyramid::existenceMapHref_),
                            Field::kElement};

private:
  static Enum& NewGridOriginEnum();
};

extern template class SchemaT<ImagePyramid, NewInstancePolicy, NoDerivedPolicy>;

} // namespace vorrel::kestan
