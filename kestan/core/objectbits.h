#pragma once

namespace vorrel::kestan {

/// The 64 state bits of a `SchemaObject`. All classes share them, so that no two give one bit
/// two meanings.
enum BitID {
  kBitRootStyle = 0,                ///< A built-in style: its URL starts with "root://".
  kBitOpen = 1,                     ///< `open` of a feature.
  kBitVisibility = 2,               ///< The object's own wish to be visible.
  kBitInheritedVisibility = 3,      ///< Visible through the chain of owners.
  kBitPostCreated = 4,              ///< The creation notice has been given, or waits.
  kBitGeometryDirty = 5,            ///< Bounds of a geometry are out of date.
  kBitRingRole = 6,                 ///< A `LinearRing` that belongs to a `Polygon`.
  kBitEditActive = 7,               ///< An interactive edit holds the object.
  kBitExtrude = 8,                  ///< `extrude` of a geometry.
  kBitTessellate = 9,               ///< `tessellate` of a geometry.
  kBitUnknownFieldAttrs = 10,       ///< At least one field has preserved unknown attributes.
  kBitPlacemarkInit = 11,           ///< The object is a `Placemark`.
  kBitNoCreationNotify = 12,        ///< Made without a creation notice; it dies without one too.
  kBitDeferredCreate = 13,          ///< The creation notice waits in the deferred list.
  kBitTimedFeature = 14,            ///< In the registry of timed features.
  kBitForceVisible = 16,            ///< Shown whatever the inherited state.
  kBitNewSnippet = 17,              ///< The `snippet` field was changed at least once.
  kBitVisibleWithoutOwner = 18,     ///< An object without an owner can be inherited-visible.
  kBitNoFieldNotify = 19,           ///< Field changes only update the revision. Set by `BitGuard`.
  kBitHasLoadObserver = 20,         ///< A `LoadObserver` waits for a target of the object.
  kBitAltitudeModeExt = 21,         ///< The altitude mode came from the extension element.
  kBitBalloonVisibility = 22,       ///< `gx:balloonVisibility` of a feature.
  kBitHasInputHandler = 23,         ///< At least one input handler is set.
  kBitNotifySubField = 24,          ///< The object reports field changes to its owners.
  kBitPostCreateSafeDone = 25,      ///< The thread-safe creation observers have seen the object.
  kBitPostCreateDone = 26,          ///< All creation observers have seen it on the main thread.
  kBitLoadFailed = 27,              ///< A style or schema URL could not be resolved.
  kBitProcessingMode = 28,          ///< Low bit of the processing mode of a feature.
  kBitProcessingModeHigh = 29,      ///< High bit of the processing mode of a feature.
  kBitTrack = 30,                   ///< A `Track` or `MultiTrack`.
  kBitDeleting = 31,                ///< `NotifyPreDelete` has begun.
  kBitUnique = 32,                  ///< The id is unique on the home service; for clients.
  kBitHiddenByLod = 33,             ///< Hidden by the level of detail.
  kBitInheritedNotifySubField = 34, ///< An owner wants reports of field changes below it.
  kBitOrphaned = 35,                ///< The last reference is gone; the object is on its way out.
  kBitBeingRead = 36,               ///< The object's element is open.
  kBitInheritanceWaits = 37,        ///< What lies below hasn't been told all that it inherits.
  kBitBalloonNotice = 38,           ///< A notice of the feature's balloon waits.
  kBitWasRead = 39,                 ///< Made by a document: it says only what that said.
  kBitLinkContent = 40,             ///< Stood in the element of its network link: wasn't fetched.
  kBitMadeUpId = 41,                ///< The id is the library's own, and isn't written.
};

} // namespace vorrel::kestan
