#pragma once

#include "bench/plainfeature.h"
#include "bench/subject.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vorrel::kestan {
class AbstractFeature;
class AbstractLink;
class ObjectObserver;
class Region;
} // namespace vorrel::kestan

namespace bench {

/// What the look of a feature is made of.
enum class Look {
  kShared, ///< One style that all features share.
  kMerged, ///< An inline style, alike in all features, over a shared one.
  kOwn,    ///< An inline style over a shared one, different from the neighbour's.
  kMap,    ///< A style map that all features share.
};

const char* Name(Look look);

/// A document of features that are asked for their styles, and as many plain objects.
class StyledFeatures {
public:
  StyledFeatures(const Subject& subject, Look look, std::size_t count);

  std::size_t size() const { return features_.size(); }
  /// Asks all of them in one mode; the sum of the answers, which keeps the calls alive.
  std::uintptr_t Ask(int mode = 0) const;
  std::uintptr_t AskPlain(int mode = 0) const;
  /// Changes the shared style: what was merged with it has to be merged again.
  void ChangeSharedStyle();

private:
  Subject::Tree tree_;
  std::vector<vorrel::kestan::AbstractFeature*> features_;
  std::vector<std::unique_ptr<PlainFeature>> plain_;
  float width_ = 1.0F;
};

/// Who hears of a change.
enum class Audience {
  kNobody,
  kObserver,       ///< One observer on each feature.
  kOwners,         ///< Ten folders around the features, which nobody watches.
  kObservedOwners, ///< The same, with an observer on the outermost.
};

const char* Name(Audience audience);

/// A document of features that are edited.
class WatchedFeatures {
public:
  WatchedFeatures(const Subject& subject, Audience audience, std::size_t count);
  ~WatchedFeatures();

  std::size_t size() const { return features_.size(); }
  /// Sets one field of each feature to another value.
  void Change();
  /// Notices that the observers got so far.
  std::size_t GetNotices() const { return notices_; }

private:
  class Listener;

  Subject::Tree tree_;
  std::vector<vorrel::kestan::AbstractFeature*> features_;
  std::vector<std::unique_ptr<Listener>> listeners_;
  std::size_t notices_ = 0;
  bool open_ = false;
};

/// What a client finds from frame to frame.
enum class Sight {
  kStill,     ///< Every region as in the frame before.
  kMoving,    ///< Every region comes into sight and leaves it by turns.
  kReplacing, ///< The same, and each region stands in for a feature of its own.
};

const char* Name(Sight sight);

/// A document of features with regions, ten levels down.
class RegionFrames {
public:
  RegionFrames(const Subject& subject, Sight sight, std::size_t count);

  std::size_t size() const { return regions_.size(); }
  /// Updates each region for one frame.
  void Draw();

private:
  Subject::Tree tree_;
  std::vector<vorrel::kestan::Region*> regions_;
  const Sight sight_;
  bool inSight_ = true;
};

/// Links with templates in their queries, of which the view changes.
class ViewedLinks {
public:
  ViewedLinks(const Subject& subject, std::size_t count);

  std::size_t size() const { return links_.size(); }
  /// Moves the view a little, and asks each link for its URL; the sum of their lengths.
  std::size_t Ask();

private:
  Subject::Tree tree_;
  std::vector<vorrel::kestan::AbstractLink*> links_;
  double step_ = 0.0;
};

/// How a document's features and their styles stand to each other.
enum class References {
  kBackward,      ///< Each feature's own style stands in front of the features.
  kBackwardToOne, ///< All features refer to one style in front of them.
  kForward,       ///< Each feature's own style stands behind the features.
  kForwardToOne,  ///< All features refer to one style behind them.
};

std::string MakeReferences(References references, std::size_t count);

} // namespace bench
