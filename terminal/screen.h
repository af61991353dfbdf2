// What goes out to the terminal so that the screen follows the text: pure functions from positions
// to bytes. A position counts columns from the start of the row that the prompt begins on.
#ifndef VELCLP_TERMINAL_SCREEN_H
#define VELCLP_TERMINAL_SCREEN_H

#include <string>
#include <vector>

namespace screen {

// Moves the cursor by rows down and columns right, negative for the other way; "" for none.
std::string move(int columns, int rows);

// Moves the cursor from one position to another in a window of `width` columns.
std::string moveTo(int from, int to, int width);

// Clears from the cursor to the end of the screen, with the null byte that goes out behind it.
std::string clearBelow();

// The text from position `from` on, cut at the window's edge: where a piece ends at the edge a
// "\n" takes the cursor into the next row. Control bytes are shown as "?", so that what is typed or
// pasted cannot drive the terminal and every byte takes its column.
std::string wrapped(const std::string& text, int from, int width);

// The pieces of at most `width` columns that a prompt is written in; at least one.
std::vector<std::string> pieces(const std::string& text, int width);

} // namespace screen

#endif
