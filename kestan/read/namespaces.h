#pragma once

#include "kestan/core/namespace.h"
#include "kestan/host/export.h"

#include <QString>

namespace vorrel::kestan {

inline constexpr char kOgcNamespaceString[] = "http://www.opengis.net/kml/";
inline constexpr char kKmlNamespaceString[] = "http://www.vorrel.com/kml/";
inline constexpr char kOldKmlNamespaceString[] = "http://old.vorrel.com/kml/";
inline constexpr char kExtNamespaceString[] = "http://www.vorrel.com/kml/ext/";
inline constexpr char kAtomNamespaceString[] = "http://www.w3.org/2005/Atom";
inline constexpr char kXalNamespaceString[] = "urn:oasis:names:tc:ciq:xsdschema:xAL:";
inline constexpr char kWmsNamespaceString[] = "";
inline constexpr char kNullNamespaceString[] = "";
/// With a prefix behind it, what content is written in that uses the prefix without a declaration.
inline constexpr char kUndeclaredNamespaceString[] = "urn:undeclared:";

/// The namespace that a URI stands for; `kUnknown` when nothing fits.
///
/// The URIs of KML and of the extension are a base with a version behind it, which may lie
/// anywhere in the text; as in a pattern, "." in a base stands for any character. Without a
/// version, or with one that doesn't begin with 1 to 9, a URI isn't recognised. `major` receives
/// the leading digits 1 to 9, or -1 where the URI carries no version; `minor` receives -1. Either
/// may be null.
KESTAN_EXPORT Namespace NamespaceStringToEnum(const QString& uri, int* major, int* minor);

/// The URI with which a namespace is written; the null string for `kUnknown`.
KESTAN_EXPORT QString NamespaceEnumToString(Namespace ns);

/// True for the prefix, or the empty one of KML, that documents use for the namespace by custom.
KESTAN_EXPORT bool IsNamespaceStandard(const QString& prefix, Namespace ns);

/// The declarations that the root of each written document makes.
KESTAN_EXPORT QString GetStandardNamespacesString();

/// True for the prefixes that `GetStandardNamespacesString` declares.
KESTAN_EXPORT bool IsRootPrefix(const QString& prefix);

/// Makes documents readable that declare KML or the extension under another base.
///
/// `ns` is `kKml` or `kExt`, another value and an empty base are refused with false. Such a base is
/// tried after the built-in ones and needs a version behind it like those. Documents are written
/// with the built-in URIs all the same. Registering a base again changes nothing. For the whole
/// process; any thread, also while others parse.
KESTAN_EXPORT bool RegisterNamespaceBase(Namespace ns, const QString& base);

/// Forgets all registered bases.
KESTAN_EXPORT void UnregisterNamespaceBases();

} // namespace vorrel::kestan
