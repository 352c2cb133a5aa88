#include "kestan/host/convert.h"
#include "kestan/host/numberformat.h"
#include "kestan/host/parse.h"
#include "tests/host/rounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace vorrel;

namespace {

Vec3<double> Read(const std::string& text) {
  Vec3<double> lla;
  math::ParseUtf16ToVec3(QString::fromLatin1(text.data(), static_cast<int>(text.size())), lla, 3,
                         0);
  return convert::LLAToNorm(lla);
}

std::string Write(const Vec3<double>& norm, char separator = ',') {
  char buffer[kMaxNormLLALength];
  return std::string(buffer, static_cast<std::size_t>(FormatNormLLA(norm, separator, buffer)));
}

bool Same(const Vec3<double>& a, const Vec3<double>& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

/// A decimal with up to so many places and no zero behind them.
std::string RandomDecimal(std::mt19937_64& random, std::uint64_t whole, unsigned places) {
  std::string text = random() % 2 == 0 ? "" : "-";
  text += std::to_string(random() % whole);
  if (const auto count = random() % (places + 1); count > 0) {
    text += '.';
    for (auto i = count; i > 1; --i)
      text += static_cast<char>('0' + random() % 10);
    text += static_cast<char>('1' + random() % 9);
  }
  return text;
}

std::string Print(const char* format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

/// Writing what was read gives the same position and, from the first time on, the same text.
void ExpectStable(const std::string& text) {
  const Vec3<double> first = Read(text);
  const std::string written = Write(first);
  const Vec3<double> second = Read(written);
  ASSERT_TRUE(Same(first, second)) << text << " became " << written;
  ASSERT_EQ(written, Write(second)) << text;
}

} // namespace

TEST(CoordinateTest, WhatPeopleWriteComesBackDigitForDigit) {
  for (const char* text :
       {"0,0,0", "-0,0,0", "180,-90,8848.86", "-122.0822035425683,37.42228990140251,0",
        "90.1,45.3,100.1", "0.000000000001,-0.00001,0.000000001", "139.69171,35.6895,35786000.123",
        "-179.999999999999,89.999999999999,999999.123456789", "12.5,-7.25,-10994"})
    EXPECT_EQ(text, Write(Read(text)));

  std::mt19937_64 random(3);
  for (std::uint64_t i = Rounds(30000); i > 0; --i) {
    const std::string text = RandomDecimal(random, 180, 12) + "," + RandomDecimal(random, 90, 12) +
                             "," + RandomDecimal(random, 1000000, 9);
    ASSERT_EQ(text, Write(Read(text)));
  }
}

TEST(CoordinateTest, NothingDriftsWhateverWasWritten) {
  for (const char* text :
       {"1e308,1e308,1e308", "1e-310,-1e-320,5e-324", "1.7976931348623157e308,0,-1e400",
        "1.797693134862316e+308,4e-323,1.797693134862316e+308", "inf,nan,-inf", "1e22,1e23,1e-7",
        "9.999999999999999,99.99999999999999,999.9999999999999", "1,-inf,3"})
    ExpectStable(text);

  std::mt19937_64 random(4);
  std::uniform_real_distribution<double> degrees(-180.0, 180.0);
  std::uniform_real_distribution<double> power(-320.0, 308.0);
  for (std::uint64_t i = Rounds(4000); i > 0; --i) {
    for (const char* format : {"%.13g", "%.14g", "%.15g", "%.16g", "%.17g", "%.20g", "%.9f"})
      ExpectStable(Print(format, degrees(random)) + "," + Print(format, degrees(random) / 2) + "," +
                   Print(format, degrees(random) * 1e5));
    ExpectStable(Print("%.17g", std::pow(10.0, power(random))) + "," +
                 Print("%.17g", -std::pow(10.0, power(random))) + "," +
                 Print("%.16g", std::pow(10.0, power(random))));
  }
}

TEST(CoordinateTest, AnyStoredPositionIsStableOnceItWasWritten) {
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  for (std::uint64_t i = Rounds(30000); i > 0; --i) {
    const Vec3<double> norm(unit(random), unit(random), unit(random) * 10.0);
    const std::string written = Write(norm);
    ASSERT_EQ(written, Write(Read(written)));
    // The number and its text are the same.
    const Vec3<double> lla = convert::NormToLLA(norm);
    ASSERT_TRUE(Same(convert::LLAToNorm(lla), Read(written))) << written;
  }
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ("0,0,0", Write({infinity, std::nan(""), -infinity}));
}

TEST(CoordinateTest, TuplesAreFoundInWhateverPeopleWrite) {
  struct Case {
    const char* text;
    int components;
    int optional;
    std::vector<Vec3<double>> tuples;
  };
  const Case cases[] = {
      {"1,2,3 4,5,6", 3, 1, {{1, 2, 3}, {4, 5, 6}}},
      {"\n\t1,2\r\n3,4\n", 3, 1, {{1, 2, 0}, {3, 4, 0}}},
      {"1, 2, 3 4 ,5 , 6", 3, 1, {{1, 2, 3}, {4, 5, 6}}},
      {"1 2 3", 3, 0, {{1, 2, 3}}},
      {"1,2 3,4", 3, 0, {{1, 2, 0}, {3, 4, 0}}},
      {"1 2,3 4", 3, 0, {{1, 2, 3}, {4, 0, 0}}},
      {"1,2,\n3,4, \r\n 5,6,", 3, 1, {{1, 2, 0}, {3, 4, 0}, {5, 6, 0}}},
      {"1,2,\n3,4", 3, 0, {{1, 2, 0}, {3, 4, 0}}},
      {"1,\n2,3\n4,\n5", 3, 1, {{1, 2, 3}, {4, 5, 0}}},
      {"50,10;x 60,20", 2, 0, {{50, 0, 0}, {60, 20, 0}}},
      {"1,,3 4,5,", 3, 1, {{1, 0, 3}, {4, 5, 0}}},
      {"1,2,3,4,5 6,7,8", 3, 1, {{1, 2, 3}, {6, 7, 8}}},
      {"x,1 nan,nan,nan 1,2,3 inf", 3, 1, {{1, 2, 3}}},
      {"1,zz,3", 3, 1, {{1, 0, 3}}},
      {",,, ,,", 3, 1, {}},
      {"", 3, 1, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const QString text(c.text);
    const ushort* const end = text.utf16() + text.size();
    std::vector<Vec3<double>> tuples;
    Vec3<double> tuple;
    for (const ushort* at = text.utf16(); at != end;) {
      at = math::ParseUtf16ToVec3(at, end, tuple, c.components, c.optional);
      if (!at)
        break;
      tuples.push_back(tuple);
    }
    EXPECT_EQ(c.tuples.size(), tuples.size());
    EXPECT_TRUE(c.tuples == tuples);
  }
}
