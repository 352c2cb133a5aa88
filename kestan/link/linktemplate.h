#pragma once

#include <QString>

namespace vorrel::kestan {

struct ViewParams;

/// What a link sends of the view unless it says otherwise.
inline constexpr char kDefaultViewFormat[] = "BBOX=[west],[south],[east],[north]";

/// Fills in what an `httpQuery` can ask for: `[clientVersion]`, `[kmlVersion]`, `[clientName]`,
/// `[language]`. Anything else in brackets stays as it is.
QString ExpandHttpQuery(const QString& text);

/// Fills in what a `viewFormat` can ask for, such as `[north]`, in degrees, or `[lookatLon]`.
/// `view` has the bounds to send. Anything else in brackets stays as it is.
QString ExpandViewFormat(const QString& text, const ViewParams& view);

/// Puts a query behind a URL that may have one, but in front of its fragment: what stands behind
/// that reaches no server.
QString AppendQuery(QString url, const QString& query);

} // namespace vorrel::kestan
