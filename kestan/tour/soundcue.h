#pragma once

#include "kestan/tour/tourprimitive.h"

namespace vorrel::kestan {

class SoundCueSchema;

/// A sound that begins to play.
class KESTAN_EXPORT SoundCue final : public TourPrimitive {
public:
  using ClassSchema = SoundCueSchema;
  static const Schema& GetClassSchema();
  SoundCue(const KmlId& id, const QString& baseUrl);
  ~SoundCue() override;

  const QString& GetHref() const { return href_; }
  void SetHref(const QString& href);
  QString GetAbsoluteUrl() const;
  /// Seconds from the turn of the cue to the sound.
  double GetDelayedStart() const { return delayedStart_; }
  void SetDelayedStart(double seconds);
  /// True for what a server has: it doesn't travel with the document.
  bool IsHTMLAddress(const QString& url) const;

  void Accept(TourPrimitiveVisitor& visitor) override;
  void ConstAccept(TourPrimitiveVisitor& visitor) const override;
  void WriteKml(WriteState& state) const override;

private:
  friend class SoundCueSchema;

  mutable QString href_; ///< While it's written, the name that it has in the output.
  double delayedStart_ = 0.0;
};

} // namespace vorrel::kestan
