#pragma once

#include "kestan/core/watcher.h"
#include "kestan/feature/abstractfeature.h"

namespace vorrel::kestan {

/// Goes over a feature and all below it, parents before children, as a filter says.
///
/// The tree may change between two steps. When the present feature is gone, so is the way on: the
/// walk ends. Takes no lock, and allocates nothing. Thread: that of the features.
class KESTAN_EXPORT AbstractFeature::Iterator {
public:
  /// What a filter answers: a mask of these, or 0.
  enum Verdict : unsigned {
    kPassOver = 1,     ///< The feature isn't yielded.
    kSkipChildren = 2, ///< What is below it isn't looked at.
  };

  class KESTAN_EXPORT FilterOp {
  public:
    virtual ~FilterOp();
    /// Ahead of all else; `root`, which may be null, is where the walk begins.
    virtual void init(AbstractFeature* root);
    /// The verdict on a feature. The walk asks once for each that it comes to.
    virtual unsigned ProcessFeature(AbstractFeature* feature) = 0;
  };

  /// Yields everything.
  class KESTAN_EXPORT DefaultFilterOp final : public FilterOp {
  public:
    unsigned ProcessFeature(AbstractFeature* feature) override;
  };

  class KESTAN_EXPORT BasicFilter final : public FilterOp {
  public:
    enum Params : unsigned {
      kSameDocument = 1,       ///< Nothing of another document than the root.
      kHonourHideChildren = 2, ///< Nothing below a folder that its style shows as a leaf.
      kStopAtNetworkLinks = 4, ///< Nothing below a network link.
      kLeavesOnly = 8,         ///< No folder but those that are empty or not entered.
    };

    explicit BasicFilter(unsigned params) : params_(params) {}
    void init(AbstractFeature* root) override;
    unsigned ProcessFeature(AbstractFeature* feature) override;

  private:
    unsigned params_;
    QString url_;
  };

  /// Shared by all who want everything.
  static DefaultFilterOp s_default_no_filter;

  /// Stands at the first feature to yield, the root unless the filter refuses it. The filter has to
  /// outlive the iterator. A null root yields nothing.
  explicit Iterator(AbstractFeature* root, FilterOp& filter = s_default_no_filter);

  /// The present feature; null at the end, and once the feature is gone.
  AbstractFeature* GetFeature() const { return current_.get(); }
  /// How far it is below the root.
  int GetDepth() const { return depth_; }
  void next();

private:
  void Judge();
  void NextFeature();

  FilterOp& filter_;
  Watcher<AbstractFeature> current_;
  const AbstractFeature* root_; ///< To be compared only: it may be gone.
  int depth_ = 0;
  unsigned verdict_ = 0;
};

} // namespace vorrel::kestan
