#pragma once

#include "kestan/style/balloonstyle.h"
#include "kestan/style/iconstackstyle.h"
#include "kestan/style/iconstyle.h"
#include "kestan/style/labelstyle.h"
#include "kestan/style/linestyle.h"
#include "kestan/style/liststyle.h"
#include "kestan/style/polystyle.h"
#include "kestan/style/style.h"

namespace vorrel::kestan {

/// The target of a merge of two styles. Lives on the stack with all its sub-styles.
class FinalStyle final : public Style {
public:
  FinalStyle();
  ~FinalStyle() override;

  /// Becomes `base` with what `over` gives in its place. Has no sub-style that neither has.
  void MergeStyles(const Style& base, const Style& over);

private:
  template <class T>
  void Merge(RefPtr<T> Style::*member, T& target, const Style& base, const Style& over);

  LineStyle line_;
  LabelStyle label_;
  IconStyle icon_;
  IconStackStyle iconStack_;
  PolyStyle poly_;
  BalloonStyle balloon_;
  ListStyle list_;
};

} // namespace vorrel::kestan
