#pragma once

#include "tests/support/kmltest.h"

namespace vorrel::kestan {

/// Tests that ask features for their looks.
class StyleTest : public KmlTest {
protected:
  /// Reads a document under a local URL, so that a write takes the shared styles along.
  RefPtr<SchemaObject> ReadLocal(const QString& text) { return ReadAt("/dir/doc.kml", text); }

  /// The feature of this name in or below `root`; null fails the test.
  static AbstractFeature* Find(const SchemaObject& root, const QString& name);

  /// What differs from the defaults, as "LineStyle.width=2" and so on, joined by blanks; the name
  /// of a style that stands in for a missing one.
  static QString Describe(const Style* style);
  static QString Look(const AbstractFeature& feature, int mode = 0) {
    return Describe(feature.getRenderStyle(mode));
  }
};

/// A document with the KML and extension namespaces.
QString InDocument(const QString& content);

} // namespace vorrel::kestan
