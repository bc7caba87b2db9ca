// Formats as text: what printf does, over typed words.
#pragma once

#include "scrivo/Format.h"

namespace scrivo {

class OutputBuffer;

/// Prints the format with `count` words. Throws Lumo::InternalException if they do not fit; what
/// stands before the slot in question is then printed already.
void printFormat(OutputBuffer& out, FormatText format, const AttrWord* words, unsigned count);

/// Puts a text with its colour around it; blanks alone have none.
void putColoured(OutputBuffer& out, std::string_view text, Colour colour);

} // namespace scrivo
