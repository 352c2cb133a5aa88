#include "kestan/host/numberformat.h"
#include "kestan/host/parse.h"
#include "tests/host/rounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace vorrel;

namespace {

std::string Print(double value) {
  char buffer[kMaxNumberLength];
  return std::string(buffer, static_cast<std::size_t>(FormatDouble(value, buffer)));
}

std::string Print(float value) {
  char buffer[kMaxNumberLength];
  return std::string(buffer, static_cast<std::size_t>(FormatFloat(value, buffer)));
}

std::string PrintAsC(const char* format, double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, value);
  return buffer;
}

double FromBits(std::uint64_t bits) {
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

bool Parse(const std::string& text, double& value) {
  return math::ParseDouble(QString::fromLatin1(text.data(), static_cast<int>(text.size())), value);
}

const std::vector<double>& AwkwardNumbers() {
  static const std::vector<double> numbers = [] {
    // Ties, ends of the ranges with and without an exponent, and of those that doubles have.
    std::vector<double> all = {
        0.0,    90.1,     0.1,     1e-4, 9.9999999999999999e-5, 123456.5, 1234565, 0.5,   2.5,
        1e15,   999999.5, 9999995, 1e16, 9007199254740993.0,    1e17,     1e22,    1e23,  5e-324,
        8999999999999999.5, 2.2250738585072014e-308, std::numeric_limits<double>::max(),
        std::numeric_limits<double>::infinity()};
    for (int power = -30; power <= 30; ++power) {
      const double ten = std::pow(10.0, power);
      all.insert(all.end(), {ten, std::nextafter(ten, 0.0), std::nextafter(ten, 1e300),
                             std::ldexp(1.0, power), std::ldexp(3.0, 3 * power)});
    }
    const std::size_t count = all.size();
    for (std::size_t i = 0; i < count; ++i)
      all.push_back(-all[i]);
    return all;
  }();
  return numbers;
}

} // namespace

TEST(NumberTest, PrintsDoublesAndFloatsAsTheCLibraryDoes) {
  for (const double value : AwkwardNumbers()) {
    EXPECT_EQ(PrintAsC("%.16lg", value), Print(value));
    const auto narrow = static_cast<float>(value);
    EXPECT_EQ(PrintAsC("%g", static_cast<double>(narrow)), Print(narrow));
  }
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> exponent(-13.0, 18.0);
  for (std::uint64_t i = Rounds(30000); i > 0; --i) {
    const double anyBits = FromBits(random());
    ASSERT_EQ(PrintAsC("%.16lg", anyBits), Print(anyBits));
    const double usual = std::pow(10.0, exponent(random));
    ASSERT_EQ(PrintAsC("%.16lg", usual), Print(usual));
    // Halves at the last digit meet the rule for ties.
    const double tie =
        std::ldexp(static_cast<double>(random() >> 12), -static_cast<int>(random() % 52));
    ASSERT_EQ(PrintAsC("%.16lg", tie), Print(tie));
    const auto narrow = static_cast<float>(usual);
    ASSERT_EQ(PrintAsC("%g", static_cast<double>(narrow)), Print(narrow));
  }
}

TEST(NumberTest, ReadsTextToTheNearestDouble) {
  std::mt19937_64 random(2);
  const auto check = [](const std::string& text) {
    double value = -1.0;
    ASSERT_TRUE(Parse(text, value)) << text;
    const double expected = std::strtod(text.c_str(), nullptr);
    ASSERT_EQ(0, std::memcmp(&expected, &value, sizeof value)) << text;
  };
  for (const double value : AwkwardNumbers()) {
    if (!std::isfinite(value))
      continue;
    check(PrintAsC("%.17g", value));
    check(PrintAsC("%.40f", std::fmod(value, 1e20)));
  }
  for (std::uint64_t i = Rounds(20000); i > 0; --i) {
    std::string digits;
    for (auto count = 1 + random() % 22; count > 0; --count)
      digits += static_cast<char>('0' + random() % 10);
    std::string text = digits;
    text.insert(random() % (digits.size() + 1), ".");
    check(text);
    check("-" + digits + "e" + std::to_string(static_cast<int>(random() % 80) - 60));
    const double any = FromBits(random());
    if (std::isfinite(any))
      check(PrintAsC("%.17g", any));
  }
  // Just above a tie by the very last of a thousand digits.
  check(std::string("9007199254740993.").append(1000, '0').append("1"));
  check(std::string("0.").append(400, '0').append("12345678901234567890123e400"));
  check(std::string(500, '0').append("7").append(300, '0').append("e-300"));
}

TEST(NumberTest, TellsNumbersFromOtherText) {
  struct Case {
    const char* text;
    double value;
  };
  const Case cases[] = {
      {" 1.5\n", 1.5}, {"+2", 2.0}, {"-.5", -0.5}, {"3.", 3.0}, {"1E2", 100.0},
      {"1e-400", 0.0}, {"0e999999999999999999999", 0.0},
      {"1.797693134862316e+308", std::numeric_limits<double>::max()}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    double value = 77.0;
    EXPECT_TRUE(Parse(c.text, value));
    EXPECT_EQ(c.value, value);
  }
  for (const char* text : {"1e309", "1e99999999999999999999", "", " ", ".", "-", "1e", "1e+", "1 2",
                           "1,5", "0x10", "inf", "nan", "--1", "1.2.3"}) {
    SCOPED_TRACE(text);
    double value = 77.0;
    EXPECT_FALSE(Parse(text, value));
    EXPECT_EQ(77.0, value);
  }
  float narrow = 5.0F;
  EXPECT_FALSE(math::ParseFloat("1e39", narrow));
  EXPECT_EQ(5.0F, narrow);
  EXPECT_TRUE(math::ParseFloat("-0.25", narrow));
  EXPECT_EQ(-0.25F, narrow);
}
