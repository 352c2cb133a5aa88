#pragma once

#include <QByteArray>
#include <QStringList>

#include <functional>

namespace vorrel::kestan {

/// Answers a number below `count`.
using Choose = std::function<unsigned(unsigned count)>;

/// A document that binds a few prefixes, the standard ones among them, to a few URIs, again and
/// again: on the root, on features, on value elements and on unknown elements. Unknown elements and
/// attributes stand everywhere, and values that mention prefixes.
QByteArray MakeRebindingDocument(const Choose& choose);

/// What such a document says in names that no class knows: each with its URI, and with the URI of
/// the prefix that its value mentions. Sorted; empty when the document isn't well-formed.
QStringList GetForeignNames(const QByteArray& document);

} // namespace vorrel::kestan
