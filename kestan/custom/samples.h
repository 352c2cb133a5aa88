#pragma once

#include "kestan/custom/customfield.h"

#include <QString>

namespace vorrel::kestan {

/// The values of an array whose empty elements are gaps. What fills a gap is only to be asked for:
/// its entry goes on counting as empty.
class KESTAN_EXPORT Samples {
public:
  /// The value of an entry, in a gap the one that follows from its neighbours; null beyond the end.
  /// `holder` knows how far the entries lie apart, `type` is that of a declaration.
  QString GetValue(const SchemaObject& holder, CustomField::Type type, int i);
  void Clean(const SchemaObject& holder, CustomField::Type type);
  /// The values are other ones now.
  void Invalidate();

  static unsigned GetUndefinedOffset() { return OffsetOf(&Samples::undefined); }
  static unsigned GetValuesOffset() { return OffsetOf(&Samples::values); }

  mmvector<QString> values;
  mmvector<bool> undefined;

private:
  /// Beside the types of declarations.
  enum Kind { kUnclassified = -3, kNumbers = -2, kTexts = -1 };

  void Classify(CustomField::Type type);
  void Interpolate(const SchemaObject& holder, int i, int a, int b);

  int dataType_ = kUnclassified;
  bool clean_ = false;
};

} // namespace vorrel::kestan
