#pragma once

/// The shortest text of a number that is stored divided by a scale.
namespace vorrel::coordinate {

/// How a kind of component is stored and how people write it.
struct Kind {
  double scale;        ///< what the written number is divided by
  double decimalUnit;  ///< 10^`decimals`
  double decimalLimit; ///< below this, a number with that many decimals has at most 15 digits
  int decimals;        ///< how many decimals people write at most
};

extern const Kind kDegrees;  ///< longitude and latitude
extern const Kind kAltitude; ///< metres

/// The written number of a stored one: the double that the text of `Write` stands for.
double Denormalize(double stored, const Kind& kind);

/// Writes the text of a stored number, and answers its end.
char* Write(double stored, const Kind& kind, char* out);

} // namespace vorrel::coordinate
