#pragma once

#include "kestan/host/export.h"

#include <QString>

#include <limits>

namespace vorrel::kestan {

class AbstractLink;
class NetworkLink;

/// When a network link has to be fetched, and why, by what its document, its server and its user
/// have said.
///
/// A client keeps one for each link that it follows, in a `FetchPlan` or elsewhere, and tells it of
/// each fetch. It has no clock, no timer and no observer: times are seconds from the start of 1970,
/// as those of `AbstractLink::GetExpireTime`, and the client asks again after anything has changed.
///
/// What holds for all links:
/// - the first fetch waits until the link is visible or open, as `GetInitialRefreshMode` says;
/// - while a link can't be seen, time and view don't have it fetched;
/// - periods count from the beginning of a fetch. From one to the next pass at least the control's
///   `minRefreshPeriod`, and never less than `kShortestPeriod`, unless the fetch is forced;
/// - a refresh interval and a length of a session that aren't positive, or no numbers, are none;
/// - an expiry counts once, also one that has passed when it's announced;
/// - the session of a link begins with its first fetch. After the control's `maxSessionLength` the
///   link is left alone, until a user asks for it: that begins another session.
class KESTAN_EXPORT FetchSchedule {
public:
  enum Reason {
    kNotDue = 0,  ///< Not unless something changes.
    kFirst,       ///< It was never fetched.
    kForced,      ///< By `NetworkLink::ForceFetch`.
    kRequested,   ///< By `refresh()`.
    kChanged,     ///< It leads elsewhere, or asks for something else.
    kInterval,    ///< Its refresh interval has passed.
    kExpired,     ///< What the last fetch brought has expired.
    kViewStopped, ///< The view has rested long enough.
    kRegion,      ///< Its region has come into view.
    kSessionOver, ///< Nothing to fetch: the session ends.
  };

  /// The reason in a few words.
  static const char* GetText(Reason reason);

  static constexpr double kNever = std::numeric_limits<double>::infinity();

  struct Due {
    /// When, or since when, if the client is late: what has waited longest comes first.
    double time = kNever;
    Reason reason = kNotDue;
  };

  /// Seconds. Documents come from anywhere: none makes a client busy all the time.
  static constexpr double kShortestPeriod = 1.0;

  /// For a link that is known since `now`.
  explicit FetchSchedule(double now) : known_(now) {}

  /// What comes next for the link.
  Due GetNext(const NetworkLink& link) const;

  /// A fetch begins, whatever comes of it. It answers a `ForceFetch`, whose mark it takes off.
  void Begin(NetworkLink& link, double now);
  /// The view has changed. To be told to the link too: see `AbstractLink::setViewParams`.
  void MoveView(double now) { viewMoved_ = now; }
  /// The region of the link has come into view.
  void EnterRegion() { isInRegion_ = true; }
  /// The client has taken note of `kSessionOver`.
  void EndSession() { isOver_ = true; }

private:
  bool IsChanged(const AbstractLink& address) const;
  Due GetNextInSession(const NetworkLink& link, double earliest) const;

  double known_;
  double begun_ = kNever;     ///< The last fetch.
  double session_ = kNever;   ///< The first fetch of the session.
  double viewMoved_ = kNever; ///< The last time since that fetch.
  double expiry_ = -1.0;      ///< The expiry that counts no more.
  int refreshes_ = 0;         ///< Those that the last fetch has answered.
  bool isInRegion_ = false;
  bool isOver_ = false;
  QString href_;
  QString httpQuery_;
  QString viewFormat_;
};

} // namespace vorrel::kestan
