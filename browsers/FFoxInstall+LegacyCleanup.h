#pragma once

#include "browsers/FFoxInstall.h"

/// What older versions of Firefox kept about extensions in a profile. Nothing is logged, and no
/// failure is reported: what cannot be read or written stays as it was. Firefox must not write the
/// registry at the same time.
@interface FFoxInstall (LegacyCleanup)

/// Removes extensions from a profile's registry, an RDF/XML document. For each identifier in turn:
/// every entry and every list item whose resource has the identifier in its name, and the
/// target-application record that the last of these entries refers to. Meant: of two references
/// the last counts. A registry that can be read is always written back, whole and at once, in its
/// own encoding; text of nothing but white space is not kept. External entities are never loaded.
/// The file is read and written once, and holds what one call for each identifier would leave.
/// @param identifiers  compared with their letter case; each may stand inside a longer name
/// @param path         the registry, "extensions.rdf" in the profile's folder
+ (void)removeExtensions:(NSArray*)identifiers fromRdfFile:(NSString*)path;

/// removeExtensions:fromRdfFile: of one; does nothing when it is empty.
+ (void)removeExtension:(NSString*)identifier fromRdfFile:(NSString*)path;

/// Removes the five files that Firefox makes anew from the registry and the extensions.
/// @param profile  the profile's folder
+ (void)clearFFoxCache:(NSString*)profile;

@end
