// What has to be corrected in AppKit once an application exists; before, its classes must not be
// touched, because they set themselves up for a display.
#pragma once

/// The modal loop and the tracking of the mouse see every event and every stop.
void CorrectEventWaits();

/// Interface files can be read, or be missing, and their bold font is bold.
void CorrectInterfaceFiles();

/// Buttons and labels look and answer as on a Mac.
void CorrectControls();

/// Scrollers look as on a Mac.
void CorrectScrollers();
