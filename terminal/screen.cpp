#include "terminal/screen.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace screen {

namespace {

std::string step(int n, char forward, char back) {
    if (n == 0)
        return std::string();
    return "\033[" + std::to_string(std::abs(n)) + (n > 0 ? forward : back);
}

char visible(char c) {
    const unsigned char byte = static_cast<unsigned char>(c);
    return (byte < ' ' && c != '\n') || byte == 127 ? '?' : c;
}

} // namespace

std::string move(int columns, int rows) {
    return step(rows, 'B', 'A') + step(columns, 'C', 'D');
}

std::string moveTo(int from, int to, int width) {
    return move(to % width - from % width, to / width - from / width);
}

std::string clearBelow() {
    // Four bytes, the zero that ends the literal among them.
    return {'\033', '[', 'J', '\0'};
}

std::string wrapped(const std::string& text, int from, int width) {
    std::string out;
    std::size_t done = 0;
    while (done < text.size()) {
        const std::size_t room = static_cast<std::size_t>(width - from % width);
        const std::size_t length = std::min(room, text.size() - done);
        const auto begin = text.begin() + static_cast<std::ptrdiff_t>(done);
        std::transform(begin, begin + static_cast<std::ptrdiff_t>(length), std::back_inserter(out),
                       visible);
        if (length == room)
            out += '\n';
        done += length;
        from += static_cast<int>(length);
    }
    return out;
}

std::vector<std::string> pieces(const std::string& text, int width) {
    std::vector<std::string> result;
    std::size_t done = 0;
    do {
        result.push_back(text.substr(done, static_cast<std::size_t>(width)));
        done += result.back().size();
    } while (done < text.size());
    return result;
}

} // namespace screen
