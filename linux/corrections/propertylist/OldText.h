#pragma once

#include <string_view>

/// Whether a text may be a property list in the old format: `{ key = value; }` or `( value, … )`.
/// Comments may stand before it. A text that opens more brackets than any list nests is refused:
/// the parser that it would be handed to recurses.
bool IsOldText(std::string_view text);
