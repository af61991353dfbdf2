// Cuts a MOF text into tokens (DSP0004, A.3). Comments and blanks are dropped; strings and
// characters come with their escapes resolved, to UTF-8; numbers come as values.
#pragma once

#include "simulator/mof.h"

#include <string_view>

namespace velclp_sim {

struct MofToken {
    enum class Kind { end, word, alias, string, character, integer, real, pragma, symbol };

    Kind kind = Kind::end;
    MofPlace place;
    /// The word, the alias's name, the string, or the symbol's one character.
    std::string text;
    /// The number of an integer or a real.
    Value number;
};

class MofLexer {
public:
    MofLexer(std::string_view text, const std::string& file);

    /// The next token; `end` again and again at the end. Throws MofError.
    MofToken next();

private:
    bool atEnd(std::size_t ahead = 0) const { return at_ + ahead >= text_.size(); }
    char peek(std::size_t ahead = 0) const { return atEnd(ahead) ? '\0' : text_[at_ + ahead]; }
    char take();
    MofPlace here() const;
    void skipBlanks();
    void skipComment();
    MofToken word(MofToken token);
    MofToken number(MofToken token);
    MofToken quoted(MofToken token, char quote);
    void escape(std::string& out);

    std::string_view text_;
    std::size_t at_ = 0;
    std::shared_ptr<const std::string> file_;
    unsigned line_ = 1;
    unsigned column_ = 1;
};

} // namespace velclp_sim
