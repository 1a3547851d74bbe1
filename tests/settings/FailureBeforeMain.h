#pragma once

/// Gives the main bundle a version and makes every encoding of a property list fail.
/// @return true
bool MakeStoringFail();
