#pragma once

#include "kestan/core/reportcode.h"
#include "kestan/host/export.h"
#include "kestan/host/legacyscreenvec.h"
#include "kestan/host/memory.h"
#include "kestan/host/vec3.h"

#include <QString>

#include <functional>

namespace vorrel::kestan {

/// What the value that was read from a text doesn't hold of it.
///
/// Faults of one kind count together, since a text may hold millions of numbers.
class KESTAN_EXPORT TextFaults {
public:
  struct Fault {
    ReportCode code;
    int begin;    ///< Where the first one stands in the text; -1 for one of an attribute.
    QString part; ///< What stands there.
    int count;
  };

  explicit TextFaults(const QString& text) : text_(text) {}

  const QString& GetText() const { return text_; }
  const mmvector<Fault>& Get() const { return faults_; }
  bool IsEmpty() const { return faults_.empty(); }

  /// Notes a fault of the part from `begin` to `end`, white space around it left out.
  void Add(ReportCode code, const ushort* begin, const ushort* end);
  /// Of the whole text.
  void Add(ReportCode code);
  /// Of an attribute that the value is read from as well.
  void AddAttribute(ReportCode code, const QString& value);

  /// Looks at one value that stands in the text.
  template <class T> void CheckValue(const ushort* begin, const ushort* end);
  template <class T> void CheckValue() { CheckValue<T>(Begin(), End()); }

  /// Looks at the words of a text, of which `isKnown(word)` must hold.
  void CheckWords(const std::function<bool(const QString&)>& isKnown);

  /// How tuples of numbers stand in a text: as `math::ParseUtf16ToVec3` takes them.
  struct TupleForm {
    int components;
    int optional;
    int required; ///< With fewer of them a tuple isn't complete.
    bool isList;  ///< More than one tuple has room.
  };
  void CheckTuples(const TupleForm& form);

private:
  const ushort* Begin() const { return reinterpret_cast<const ushort*>(text_.constData()); }
  const ushort* End() const { return Begin() + text_.size(); }
  void Add(ReportCode code, int begin, const QString& part);
  void CheckTuple(const ushort* begin, const ushort* end, const TupleForm& form);

  const QString& text_;
  mmvector<Fault> faults_;
};

// Any text is a string, a screen position has none, and tuples are looked at by their components.
template <> void TextFaults::CheckValue<QString>(const ushort* begin, const ushort* end);
template <> void TextFaults::CheckValue<LegacyScreenVec>(const ushort* begin, const ushort* end);
template <> void TextFaults::CheckValue<Vec3<double>>(const ushort* begin, const ushort* end);
template <> void TextFaults::CheckValue<Vec3<float>>(const ushort* begin, const ushort* end);

} // namespace vorrel::kestan
