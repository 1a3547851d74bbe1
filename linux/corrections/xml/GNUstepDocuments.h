#pragma once

/// While one lives, +[NSXMLDocument alloc] gives GNUstep's own document: for GNUstep's own readers,
/// which ask it for more than the program does.
class GNUstepDocuments {
  public:
    GNUstepDocuments() { ++alive; }
    ~GNUstepDocuments() { --alive; }
    GNUstepDocuments(const GNUstepDocuments&) = delete;
    GNUstepDocuments& operator=(const GNUstepDocuments&) = delete;

    static bool AreWanted() { return alive > 0; }

  private:
    static thread_local int alive;
};
