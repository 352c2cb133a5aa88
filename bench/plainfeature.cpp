#include "bench/plainfeature.h"

namespace bench {

namespace {

class StoredStyle final : public PlainFeature {
public:
  explicit StoredStyle(const vorrel::kestan::Style* style) : style_(style) {}
  const vorrel::kestan::Style* GetStyle(int) const override { return style_; }

private:
  const vorrel::kestan::Style* style_;
};

} // namespace

std::unique_ptr<PlainFeature> MakePlainFeature(const vorrel::kestan::Style* style) {
  return std::make_unique<StoredStyle>(style);
}

} // namespace bench
