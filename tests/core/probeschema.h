#pragma once

#include "kestan/core/datetimefield.h"
#include "kestan/core/enumfield.h"
#include "kestan/core/normllafield.h"
#include "kestan/core/objarrayfield.h"
#include "kestan/core/objfield.h"
#include "kestan/core/schemat.h"
#include "kestan/core/simplearrayfield.h"
#include "kestan/core/simplelistfield.h"
#include "kestan/core/strfield.h"
#include "tests/core/probe.h"

namespace vorrel::kestan {

class ProbeSchema final : public SchemaT<Probe, NewInstancePolicy, NoDerivedPolicy> {
public:
  ProbeSchema();

  StrField label{*this, "label", OffsetOf(&Probe::label_), Field::kAttribute};
  SimpleField<int> count{*this, "count", OffsetOf(&Probe::count_), Field::kElement};
  SimpleField<unsigned> mask{*this, "mask", OffsetOf(&Probe::mask_), Field::kElement};
  SimpleField<unsigned short> port{*this, "port", OffsetOf(&Probe::port_), Field::kElement};
  SimpleField<long long> size{*this, "size", OffsetOf(&Probe::size_), Field::kElement};
  SimpleField<bool> flag{*this, "flag", OffsetOf(&Probe::flag_), Field::kElement};
  SimpleField<float> ratio{*this, "ratio", OffsetOf(&Probe::ratio_), Field::kElement};
  SimpleField<double> angle{*this, "angle", OffsetOf(&Probe::angle_), Field::kElement};
  SimpleField<QString> plain{*this, "plain", OffsetOf(&Probe::plain_), Field::kElement};
  SimpleField<Color32> color{*this, "tint", OffsetOf(&Probe::color_), Field::kElement};
  DateTimeField when{*this, "moment", OffsetOf(&Probe::when_), Field::kElement};
  SimpleField<Vec3<double>> axis{*this, "axis", OffsetOf(&Probe::axis_), Field::kElement};
  NormLLAField place{*this, "place", OffsetOf(&Probe::place_), Field::kElement};
  EnumField mode{*this, "mode", Modes(), 0, OffsetOf(&Probe::mode_), Field::kElement};
  EnumField sides{*this, "sides", Sides(), 0, OffsetOf(&Probe::sides_), Field::kElement};
  ObjField<Probe> child{*this, "child", *this, OffsetOf(&Probe::child_)};
  ObjArrayField<Probe> kids{*this, "", *this, OffsetOf(&Probe::kids_)};
  SimpleArrayField<int> ints{*this, "int", OffsetOf(&Probe::ints_), Field::kElement};
  SimpleListField<QString> words{*this, "words", OffsetOf(&Probe::words_), Field::kElement};
  SimpleListField<double> doubles{*this, "doubles", OffsetOf(&Probe::doubles_), Field::kElement};
  NormLLAArrayField track{*this, "fix", OffsetOf(&Probe::track_), Field::kElement};
  Vec3fArrayField turns{*this, "turn", OffsetOf(&Probe::turns_), Field::kElement};
  SimpleArrayField<QString> values{*this, "value", OffsetOf(&Probe::values_), Field::kElement};

private:
  static Enum& Modes();
  static Enum& Sides();
};

} // namespace vorrel::kestan
