#pragma once

#include "kestan/core/schemaobject.h"

namespace vorrel::kestan {

class AbstractFeature;
class KmlSchema;
class NetworkLinkControl;
class TarrowLink;
class Theme;

/// The root of a KML file, which holds one feature, and what a server says to the network link that
/// fetched the file.
class KESTAN_EXPORT Kml final : public SchemaObject {
public:
  using ClassSchema = KmlSchema;
  static const Schema& GetClassSchema();
  Kml(const KmlId& id, const QString& baseUrl);
  ~Kml() override;

  TarrowLink* GetLink() const { return link_.get(); }
  NetworkLinkControl* GetControl() const { return control_.get(); }
  AbstractFeature* GetFeature() const { return feature_.get(); }
  Theme* GetTheme() const { return theme_.get(); }
  const QString& GetSource() const { return source_; }
  const QString& GetHint() const { return hint_; }

  /// A second feature, or a second theme, ends the parse that met it.
  void NotifyFieldChanged(const Field& field) override;
  /// What the root holds: its own element is the one that each written document has.
  void WriteKml(WriteState& state) const override;
  void WriteStylesAndSchemas(WriteState& state, const QString& path) const override;

private:
  friend class KmlSchema;

  RefPtr<TarrowLink> link_;
  RefPtr<NetworkLinkControl> control_;
  RefPtr<AbstractFeature> feature_;
  RefPtr<Theme> theme_;
  QString source_;
  QString hint_;
  bool seenFeature_ = false;
  bool seenTheme_ = false;
};

} // namespace vorrel::kestan
