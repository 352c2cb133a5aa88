#include "kestan/custom/samples.h"

#include "kestan/core/arraygaps.h"
#include "kestan/core/convertfromstring.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace vorrel::kestan {

namespace {

/// The shortest text that reads back, as a plain decimal where that isn't long.
QString ToText(double value) {
  const double size = std::abs(value);
  const char form = size == 0.0 || (size > 1e-6 && size < 1e17) ? 'f' : 'g';
  return QString::number(value, form, QLocale::FloatingPointShortest);
}

} // namespace

QString Samples::GetValue(const SchemaObject& holder, CustomField::Type type, int i) {
  Clean(holder, type);
  return i >= 0 && static_cast<std::size_t>(i) < values.size() ? values[static_cast<std::size_t>(i)]
                                                               : QString();
}

void Samples::Clean(const SchemaObject& holder, CustomField::Type type) {
  Classify(type);
  if (undefined.empty())
    clean_ = true;
  const bool isNumeric = dataType_ == kNumbers ||
                         (dataType_ >= CustomField::kInt && dataType_ <= CustomField::kDouble);
  if (clean_ || !isNumeric)
    return;
  clean_ = CleanArray(undefined, static_cast<int>(values.size()),
                      [&](int i, int a, int b) { Interpolate(holder, i, a, b); });
}

void Samples::Invalidate() {
  clean_ = false;
  dataType_ = kUnclassified;
}

void Samples::Classify(CustomField::Type type) {
  if (type != CustomField::kNoType) {
    clean_ = clean_ && dataType_ == type;
    dataType_ = type;
    return;
  }
  if (dataType_ == kNumbers || dataType_ == kTexts)
    return;
  clean_ = false;
  dataType_ = kNumbers;
  for (std::size_t i = 0; i < values.size() && dataType_ == kNumbers; ++i) {
    double number = 0.0;
    const bool isGap = i < undefined.size() && undefined[i];
    if (!isGap && !ConvertFromString(values[i], number))
      dataType_ = kTexts;
  }
}

void Samples::Interpolate(const SchemaObject& holder, int i, int a, int b) {
  const auto value = [this](int place) -> QString& {
    return values[static_cast<std::size_t>(place)];
  };
  double from = 0.0;
  double to = 0.0;
  if (a >= i) {
    value(i) = value(a);
  } else if (b <= i) {
    value(i) = value(b);
  } else if (ConvertFromString(value(a), from) && ConvertFromString(value(b), to)) {
    const double t = holder.GetInterpolant(i, a, b);
    value(i) = ToText((1.0 - t) * from + t * to);
  }
}

} // namespace vorrel::kestan
